// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/WatchedFoldersTab.h"

#include "Models/AppSettings.h"
#include "Platform/Clock.h"
#include "Platform/DateTexts.h"
#include "Platform/PathNames.h"
#include "Services/Streak/StreakManager.h"
#include "Views/Controls/PlainButton.h"
#include "Views/Controls/ProgressLine.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/RecordRow.h"
#include "Views/Settings/RowList.h"
#include "Views/Settings/TabParts.h"
#include "Views/Settings/WatchedFolderActions.h"

#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace velquarin {

namespace {

constexpr qsizetype discoveredShown = 3;
constexpr double smallGap = 4;

TextLook quiet()
{
    return textLook(style::TypeStyle::Caption, style::Ink::Secondary);
}

}  // namespace

WatchedFoldersTab::WatchedFoldersTab(AppSettings &settings, StreakManager &streakManager, const Clock &clock,
                                     std::function<QByteArray()> readLocale, WatchedFolderActions &actions,
                                     QWidget *parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_streakManager(streakManager)
    , m_clock(clock)
    , m_readLocale(std::move(readLocale))
    , m_actions(actions)
    , m_rendering([this] { render(); })
{
    setObjectName(QStringLiteral("watchedFoldersTab"));
    build();
    observe();
    m_rendering.now();
}

// Made in the order in which they stand, which is the order of Tab and of a screen reader.
void WatchedFoldersTab::build()
{
    auto *const column = new TabColumn(this);
    addHeader();
    column->addWidget(makeText(quiet(), tr("Automatically find and track git repositories in these folders"), this));
    addList();
    addButtons();
    m_lastScan = new Text(quiet(), this);
    column->addWidget(m_lastScan);
    addDiscovered();
    m_message = makeMessage(this);
    column->addWidget(m_message);
}

void WatchedFoldersTab::addHeader()
{
    auto *const row = addRowTo(*this);
    row->addWidget(makeText(textLook(style::TypeStyle::Headline, style::Ink::Primary), tr("Watched Folders"), this));
    row->addStretch();
    m_isAutomatic = new Switch(tr("Auto-discover re&pos"), Switch::Size::Small, this);
    row->addItem(new OutsetItem(m_isAutomatic, Switch::outset()));
    connect(m_isAutomatic, &Switch::toggled, this, [this](bool isOn) {
        if (isOn != m_settings.autoDiscoveryEnabled())
            m_settings.setAutoDiscoveryEnabled(isOn);
    });
}

void WatchedFoldersTab::addList()
{
    m_empty = new EmptyPanel({QStringLiteral("folder.badge.gearshape"), tr("No Watched Folders"),
                              tr("Add folders to automatically discover new git repositories"), tr("Add Folder")},
                             this);
    connect(m_empty->button(), &QPushButton::clicked, &m_actions, &WatchedFolderActions::addWatchedFolder);
    const auto fillRow = [this](ListRow &row, int index) {
        static_cast<WatchedFolderRow &>(row).setFolder(m_shown.at(index));
    };
    m_list = new RowList([this](QWidget *parent) { return makeRow(parent); }, fillRow, this);
    m_list->setTitle(tr("Watched Folders"));
    auto *const column = static_cast<QBoxLayout *>(layout());
    column->addWidget(m_empty);
    column->addWidget(m_list);
}

void WatchedFoldersTab::addButtons()
{
    auto *const row = addRowTo(*this);
    m_add = makeButton(tr("A&dd Folder"), QStringLiteral("plus"), this);
    m_progress = new ProgressLine(smallGap, this);
    m_progress->setText(tr("Scanning..."));
    m_scan = makeButton(tr("&Scan Now"), {}, this);
    row->addWidget(m_add);
    row->addStretch();
    row->addWidget(m_progress);
    row->addWidget(m_scan);
    connect(m_add, &QPushButton::clicked, &m_actions, &WatchedFolderActions::addWatchedFolder);
    connect(m_scan, &QPushButton::clicked, &m_actions, &WatchedFolderActions::scanNow);
}

void WatchedFoldersTab::addDiscovered()
{
    m_discovered = new QWidget(this);
    layout()->addWidget(m_discovered);
    auto *const column = new QVBoxLayout(m_discovered);
    column->setContentsMargins({});
    column->setSpacing(style::points(smallGap));
    column->addWidget(makeText(quiet(), tr("Recently discovered:"), m_discovered));
    for (qsizetype line = 0; line < discoveredShown; ++line) {
        m_discoveredLines.append(new Text(textLook(style::TypeStyle::Caption, style::Accent::Green), m_discovered));
        m_discoveredLines.last()->allowCutting();
        column->addWidget(m_discoveredLines.last());
    }
    m_more = new Text(quiet(), m_discovered);
    column->addWidget(m_more);
}

ListRow *WatchedFoldersTab::makeRow(QWidget *parent)
{
    auto *const row = new WatchedFolderRow(parent);
    connect(row, &WatchedFolderRow::enablingRequested, this, [this](QUuid id, bool isEnabled) {
        change(id, [isEnabled](WatchedFolder &folder) { folder.isEnabled = isEnabled; });
    });
    connect(row, &WatchedFolderRow::depthRequested, this, [this](QUuid id, qint64 maxDepth) {
        change(id, [maxDepth](WatchedFolder &folder) { folder.maxDepth = maxDepth; });
    });
    connect(row, &WatchedFolderRow::removalRequested, this, &WatchedFoldersTab::remove);
    return row;
}

void WatchedFoldersTab::observe()
{
    const auto renderSoon = [this] { m_rendering.soon(); };
    connect(&m_settings, &AppSettings::watchedFoldersWillChange, this, renderSoon);
    connect(&m_settings, &AppSettings::autoDiscoveryEnabledWillChange, this, renderSoon);
    connect(&m_settings, &AppSettings::lastAutoDiscoveryScanWillChange, this, renderSoon);
    connect(&m_streakManager, &StreakManager::isScanningWillChange, this, renderSoon);
    connect(&m_streakManager, &StreakManager::lastDiscoveredReposWillChange, this, renderSoon);
    connect(&m_actions, &WatchedFolderActions::changed, this, renderSoon);
}

void WatchedFoldersTab::render()
{
    m_isAutomatic->setChecked(m_settings.autoDiscoveryEnabled());
    m_shown = m_settings.watchedFolders();
    showRecords(*m_list, *m_empty, idsOf(m_shown), *m_add);
    renderScan();
    renderDiscovered();
    showLine(*m_message, m_actions.validationError().value_or(QString()));
}

// The time of day alone, of an earlier day too. The focus of a button that goes stays near it: Qt would take it to the
// tabs.
void WatchedFoldersTab::renderScan()
{
    const bool isScanning = m_streakManager.isScanning();
    if (isScanning && window()->focusWidget() == m_scan)
        m_add->setFocus(Qt::OtherFocusReason);
    m_progress->setVisible(isScanning);
    m_scan->setVisible(!isScanning && !m_shown.isEmpty());
    const auto last = m_settings.lastAutoDiscoveryScan();
    const auto time = last ? DateTexts(m_readLocale(), m_clock.calendar()).shortTime(*last) : QString();
    showLine(*m_lastScan, last ? tr("Last scan: %1").arg(time) : QString());
}

void WatchedFoldersTab::renderDiscovered()
{
    const auto paths = m_streakManager.lastDiscoveredRepos();
    for (qsizetype line = 0; line < discoveredShown; ++line) {
        const auto name = line < paths.size() ? QStringLiteral("+ ") + lastPathComponent(paths.at(line)) : QString();
        showLine(*m_discoveredLines.at(line), name);
    }
    const auto more = paths.size() - discoveredShown;
    showLine(*m_more, more > 0 ? tr("...and %1 more").arg(more) : QString());
    m_discovered->setVisible(!paths.isEmpty());
}

// Written into the record as it is now, whatever else has changed in the list since it was shown.
void WatchedFoldersTab::change(QUuid id, const std::function<void(WatchedFolder &)> &edit)
{
    auto folders = m_settings.watchedFolders();
    const auto found = std::ranges::find(folders, id, &WatchedFolder::id);
    if (found == folders.end())
        return;
    edit(*found);
    m_settings.setWatchedFolders(std::move(folders));
}

void WatchedFoldersTab::remove(QUuid id)
{
    const auto folders = m_settings.watchedFolders();
    const auto found = std::ranges::find(folders, id, &WatchedFolder::id);
    if (found != folders.end())
        m_settings.removeWatchedFolder(*found);
}

}  // namespace velquarin
