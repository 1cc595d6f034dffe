// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/SettingsView.h"

#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/Style.h"
#include "Views/Settings/GeneralTab.h"
#include "Views/Settings/RepositoriesTab.h"
#include "Views/Settings/RepositoryActions.h"
#include "Views/Settings/TabStrip.h"
#include "Views/Settings/WatchedFolderActions.h"
#include "Views/Settings/WatchedFoldersTab.h"

#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace velquarin {

namespace {

constexpr double contentWidth = 450;
constexpr double contentHeight = 380;
constexpr double paddingOfTabs = 4;

}  // namespace

SettingsView::SettingsView(const SettingsServices &services, QWidget *parent)
    : QWidget(parent)
    , m_services(services)
    , m_repositoryActions(std::make_unique<RepositoryActions>(services.settings, services.streakManager,
                                                              services.gitService, services.folderChooser, *this))
    , m_folderActions(std::make_unique<WatchedFolderActions>(services.settings, services.streakManager,
                                                             services.folderChooser, *this))
    , m_rebuilding([this] { rebuild(); })
{
    setAccessibleRole(*this, QAccessible::Window);
    setObjectName(QStringLiteral("settings"));
    setWindowTitle(tr("Settings"));
    setAccessibleName(tr("Settings"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    build();
}

// The tabs look at the actions to the last.
SettingsView::~SettingsView()
{
    delete std::exchange(m_pages, nullptr);
}

void SettingsView::build()
{
    m_rebuilding.noteFont();
    setFixedSize(style::points(contentWidth), style::points(contentHeight));
    m_strip = new TabStrip(this);
    m_pages = new QStackedWidget(this);
    auto *const column = static_cast<QVBoxLayout *>(layout());
    column->addSpacing(style::points(paddingOfTabs));
    column->addWidget(m_strip, 0, Qt::AlignHCenter);
    column->addSpacing(style::points(paddingOfTabs));
    column->addWidget(new Divider(Qt::Horizontal, this));
    column->addWidget(m_pages);

    addTab(tr("&Repositories"), QStringLiteral("folder"),
           new RepositoriesTab(m_services.settings, *m_repositoryActions, m_pages));
    addTab(tr("&Auto-Discover"), QStringLiteral("eye"),
           new WatchedFoldersTab(m_services.settings, m_services.streakManager, m_services.clock, m_services.readLocale,
                                 *m_folderActions, m_pages));
    addTab(tr("&General"), QStringLiteral("gear"),
           new GeneralTab(m_services.settings, m_services.streakManager, m_services.launchAtLogin, m_pages));
    connect(m_strip, &TabStrip::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
}

void SettingsView::addTab(const QString &title, const QString &symbol, QWidget *content)
{
    m_strip->addTab(title, symbol);
    m_pages->addWidget(content);
}

// The user stays at the same tab.
void SettingsView::rebuild()
{
    const auto tab = m_strip->currentIndex();
    discardContent(*layout());
    build();
    m_strip->setCurrentIndex(tab);
}

void SettingsView::turnBy(int tabs)
{
    m_strip->setCurrentIndex((m_strip->currentIndex() + tabs + m_strip->count()) % m_strip->count());
}

void SettingsView::keyPressEvent(QKeyEvent *event)
{
    const bool isControl = event->modifiers().testFlag(Qt::ControlModifier);
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else if (isControl && (event->key() == Qt::Key_PageDown || event->key() == Qt::Key_Tab))
        turnBy(1);
    else if (isControl && (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_Backtab))
        turnBy(-1);
    else
        QWidget::keyPressEvent(event);
}

// Nothing has the focus at first: Qt would ring the first tab before anybody has touched a key.
void SettingsView::showEvent(QShowEvent *event)
{
    if (!event->spontaneous()) {
        m_strip->setCurrentIndex(0);
        setFocus(Qt::PopupFocusReason);
    }
    QWidget::showEvent(event);
}

void SettingsView::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        m_repositoryActions->forgetMessage();
        m_folderActions->forgetMessage();
    }
    QWidget::hideEvent(event);
}

void SettingsView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    m_rebuilding.follow(*event);
}

}  // namespace velquarin
