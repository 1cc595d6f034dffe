// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RepositoriesTab.h"

#include "Models/AppSettings.h"
#include "Views/Controls/ProgressLine.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/RecordRow.h"
#include "Views/Settings/RepositoryActions.h"
#include "Views/Settings/RowList.h"
#include "Views/Settings/TabParts.h"

#include <QBoxLayout>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace velquarin {

RepositoriesTab::RepositoriesTab(AppSettings &settings, RepositoryActions &actions, QWidget *parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_actions(actions)
    , m_rendering([this] { render(); })
{
    setObjectName(QStringLiteral("repositoriesTab"));
    build();
    observe();
    m_rendering.now();
}

// Made in the order in which they stand, which is the order of Tab and of a screen reader.
void RepositoriesTab::build()
{
    auto *const column = new TabColumn(this);
    addHeader();
    addList();
    addButtons();
    m_progress = new ProgressLine(style::defaultSpacing, this);
    m_message = makeMessage(this);
    column->addWidget(m_progress, 0, Qt::AlignLeft);
    column->addWidget(m_message);
}

void RepositoriesTab::addHeader()
{
    auto *const row = addRowTo(*this);
    const auto look = textLook(style::TypeStyle::Headline, style::Ink::Primary);
    row->addWidget(makeText(look, tr("Tracked Repositories"), this));
    row->addStretch();
    m_count = new Text(textLook(style::TypeStyle::Caption, style::Ink::Secondary), this);
    m_count->setLine(lineOf(look));
    row->addWidget(m_count);
}

void RepositoriesTab::addList()
{
    m_empty = new EmptyPanel({QStringLiteral("folder.badge.plus"), tr("No Repositories"),
                              tr("Add git repositories to track your commit streak"), tr("Add Repository")},
                             this);
    connect(m_empty->button(), &QPushButton::clicked, &m_actions, &RepositoryActions::addRepository);
    const auto fillRow = [this](ListRow &row, int index) {
        static_cast<RepositoryRow &>(row).setRepository(m_shown.at(index));
    };
    m_list = new RowList([this](QWidget *parent) { return makeRow(parent); }, fillRow, this);
    m_list->setTitle(tr("Tracked Repositories"));
    auto *const column = static_cast<QBoxLayout *>(layout());
    column->addWidget(m_empty);
    column->addWidget(m_list);
}

void RepositoriesTab::addButtons()
{
    auto *const row = addRowTo(*this);
    m_add = makeButton(tr("A&dd Repository"), QStringLiteral("plus"), this);
    m_scan = makeButton(tr("&Scan Folder"), QStringLiteral("folder.badge.gearshape"), this);
    m_scan->setObjectName(QStringLiteral("scanFolder"));
    m_refresh = makeButton(tr("Re&fresh Now"), {}, this);
    row->addWidget(m_add);
    row->addWidget(m_scan);
    row->addStretch();
    row->addWidget(m_refresh);
    connect(m_add, &QPushButton::clicked, &m_actions, &RepositoryActions::addRepository);
    connect(m_scan, &QPushButton::clicked, &m_actions, &RepositoryActions::scanFolder);
    connect(m_refresh, &QPushButton::clicked, &m_actions, &RepositoryActions::refreshNow);
}

ListRow *RepositoriesTab::makeRow(QWidget *parent) const
{
    auto *const row = new RepositoryRow(parent);
    connect(row, &RepositoryRow::enablingRequested, this, &RepositoriesTab::enable);
    connect(row, &RepositoryRow::removalRequested, this, &RepositoriesTab::remove);
    return row;
}

void RepositoriesTab::observe()
{
    const auto renderSoon = [this] { m_rendering.soon(); };
    connect(&m_settings, &AppSettings::trackedRepositoriesWillChange, this, renderSoon);
    connect(&m_actions, &RepositoryActions::changed, this, renderSoon);
}

void RepositoriesTab::render()
{
    m_shown = m_settings.trackedRepositories();
    showRecords(*m_list, *m_empty, idsOf(m_shown), *m_add);
    m_count->setText(tr("%1 repos").arg(m_shown.size()));
    m_refresh->setVisible(!m_shown.isEmpty());
    renderMessages();
}

void RepositoriesTab::renderMessages()
{
    // A button that is disabled would hand the keyboard's focus on to "Refresh Now".
    if (m_actions.isScanning() && m_scan->hasFocus())
        m_add->setFocus(Qt::OtherFocusReason);
    m_scan->setEnabled(!m_actions.isScanning());
    m_progress->setText(m_actions.scanProgress().value_or(QString()));
    m_progress->setVisible(m_actions.isScanning() && m_actions.scanProgress().has_value());
    showLine(*m_message, m_actions.validationError().value_or(QString()));
}

// Written into the record as it is now, whatever else has changed in the list since it was shown.
void RepositoriesTab::enable(QUuid id, bool isEnabled)
{
    auto repositories = m_settings.trackedRepositories();
    const auto found = std::ranges::find(repositories, id, &TrackedRepository::id);
    if (found == repositories.end())
        return;
    found->isEnabled = isEnabled;
    m_settings.setTrackedRepositories(std::move(repositories));
}

void RepositoriesTab::remove(QUuid id)
{
    const auto repositories = m_settings.trackedRepositories();
    const auto found = std::ranges::find(repositories, id, &TrackedRepository::id);
    if (found != repositories.end())
        m_settings.removeRepository(*found);
}

}  // namespace velquarin
