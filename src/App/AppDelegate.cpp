// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/AppDelegate.h"

#include "App/Shared.h"
#include "App/StatusItemPlan.h"
#include "Platform/StatusItem.h"
#include "Views/Dashboard/MenuBarView.h"
#include "Views/Dashboard/Popover.h"
#include "Views/Settings/SettingsView.h"

#include <utility>

namespace velquarin {

AppDelegate::AppDelegate(Shared &shared, Desktop desktop)
    : m_shared(shared)
    , m_desktop(std::move(desktop))
    , m_streakManager(std::make_unique<StreakManager>(shared.gitService(), shared.appSettings(),
                                                      shared.notificationService(), shared.platform().clock,
                                                      shared.platform().timers, shared.platform().output))
    , m_commitWatch(std::make_unique<CommitWatch>(*m_streakManager, shared.appSettings(), shared.gitService(),
                                                  shared.platform().repositoryWatch, shared.platform().timers))
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    setupMenuBar();
    setupStreakObserver();
    setupHangObserver();
    m_streakManager->refresh();
}

void AppDelegate::setupMenuBar()
{
    m_statusItem = m_desktop.makeStatusItem();
    m_statusItem->setAppearance(syncingAppearance());
    m_statusItem->setMenu({{tr("Refresh"), QStringLiteral("r"), [this] { refreshData(); }},
                           {},
                           {tr("Quit Velquarin"), QStringLiteral("q"), [this] { quitApp(); }}});
    connect(m_statusItem.get(), &StatusItem::activated, this, &AppDelegate::handleClick);
    connect(m_statusItem.get(), &StatusItem::openRequested, this,
            [this](QPoint position, const QString &token) { popover().openNear(position, token); });
}

// Made when it is wanted first: until then the program is spared fonts, dates and a good deal of memory.
Popover &AppDelegate::popover()
{
    if (!m_popover)
        setupPopover();
    return *m_popover;
}

void AppDelegate::setupPopover()
{
    const auto &platform = m_shared.platform();
    m_popover = std::make_unique<Popover>(new MenuBarView(*m_streakManager, platform.clock, platform.timers,
                                                          platform.fileViewer, [this] { openSettings(); }),
                                          m_desktop.windowSystem);
    connect(m_statusItem.get(), &StatusItem::menuOpened, m_popover.get(), &Popover::giveWayToMenu);
    connect(m_statusItem.get(), &StatusItem::ownMenuOpens, m_popover.get(), &Popover::hide);
    // Once the click itself is over: a second one within it would be lost.
    connect(m_popover.get(), &Popover::rightClickKept, this, m_desktop.repeatRightClick, Qt::QueuedConnection);
}

void AppDelegate::setupStreakObserver()
{
    m_streakObserver = std::make_unique<StreakObserver>(
        *m_streakManager, m_shared.platform().timers, [this](qint64 streak, bool isRefreshing, bool hasCommittedToday) {
            updateMenuBarDisplay(streak, isRefreshing, hasCommittedToday);
        });
}

// Outside a refresh nothing waits that the item shows; one that begins later waits as well.
void AppDelegate::setupHangObserver()
{
    m_hangObserver = std::make_unique<HangObserver>(
        m_shared.gitService(), m_shared.platform().timers, [this](const std::optional<QString> &path) {
            m_hangingRepository = path;
            if (m_streakManager->isRefreshing())
                updateMenuBarDisplay(m_streakManager->currentStreak(), true, m_streakManager->hasCommittedToday());
        });
}

void AppDelegate::updateMenuBarDisplay(qint64 streak, bool isRefreshing, bool hasCommittedToday)
{
    const bool isWaiting = isRefreshing && m_hangingRepository;
    m_statusItem->setAppearance(isWaiting ? waitingAppearance(*m_hangingRepository)
                                          : statusItemAppearance(streak, isRefreshing, hasCommittedToday,
                                                                 m_streakManager->repositoriesWithoutAddress()));
}

// A right click never comes here: the host shows the menu by itself, or asks the item for it.
void AppDelegate::handleClick(QPoint position, const QString &activationToken)
{
    togglePopover(position, activationToken);
}

void AppDelegate::togglePopover(QPoint position, const QString &activationToken)
{
    popover().toggle(position, activationToken);
}

void AppDelegate::openDashboard(const QString &activationToken)
{
    if (m_statusItem)
        popover().open(activationToken);
}

// Settings that were put away come back. The dashboard goes first, which would take their clicks and keys on X11.
void AppDelegate::openSettings()
{
    if (m_popover)
        m_popover->hide();
    if (!m_settings)
        m_settings = std::make_unique<SettingsView>(settingsServices());
    m_settings->showNormal();
    m_settings->raise();
    m_settings->activateWindow();
}

SettingsServices AppDelegate::settingsServices()
{
    return {m_shared.appSettings(),
            *m_streakManager,
            m_shared.launchAtLogin(),
            m_shared.gitService(),
            m_shared.platform().folderChooser,
            m_shared.platform().clock,
            environmentLocale};
}

void AppDelegate::refreshData()
{
    m_streakManager->refresh();
}

void AppDelegate::quitApp() const
{
    m_desktop.terminate();
}

}  // namespace velquarin
