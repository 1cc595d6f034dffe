// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/AppDelegate.h"

#include "App/Shared.h"
#include "App/StatusItemPlan.h"
#include "App/StreakObserver.h"
#include "Platform/StatusItem.h"

#include <utility>

namespace velquarin {

AppDelegate::AppDelegate(Shared &shared, Desktop desktop)
    : m_timers(shared.platform().timers)
    , m_desktop(std::move(desktop))
    , m_streakManager(std::make_unique<StreakManager>(shared.gitService(), shared.appSettings(),
                                                      shared.notificationService(), shared.platform().clock,
                                                      shared.platform().timers, shared.platform().output))
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    setupMenuBar();
    setupStreakObserver();
    m_streakManager->refresh();
}

void AppDelegate::setupMenuBar()
{
    m_statusItem = m_desktop.makeStatusItem();
    updateMenuBarDisplay(0, true, false);
    m_statusItem->setMenu({{tr("Refresh"), QStringLiteral("r"), [this] { refreshData(); }},
                           {},
                           {tr("Quit Velquarin"), QStringLiteral("q"), [this] { quitApp(); }}});
    connect(m_statusItem.get(), &StatusItem::activated, this, &AppDelegate::handleClick);
}

void AppDelegate::setupStreakObserver()
{
    m_streakObserver = std::make_unique<StreakObserver>(
        *m_streakManager, m_timers, [this](qint64 streak, bool isRefreshing, bool hasCommittedToday) {
            updateMenuBarDisplay(streak, isRefreshing, hasCommittedToday);
        });
}

void AppDelegate::updateMenuBarDisplay(qint64 streak, bool isRefreshing, bool hasCommittedToday)
{
    m_statusItem->setAppearance(statusItemAppearance(streak, isRefreshing, hasCommittedToday));
}

// Until there is a dashboard, the menu is all there is to open.
void AppDelegate::handleClick(QPoint position, const QString & /*activationToken*/)
{
    m_statusItem->popUpMenu(position);
}

void AppDelegate::openDashboard(const QString & /*activationToken*/)
{
    if (m_statusItem)
        m_statusItem->popUpMenu({});
}

void AppDelegate::refreshData()
{
    m_streakManager->refresh();
}

void AppDelegate::quitApp()
{
    m_desktop.terminate();
}

}  // namespace velquarin
