// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/StreakObserver.h"

#include "Services/StreakManager.h"

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

StreakObserver::StreakObserver(const StreakManager &manager, Deliver deliver)
    : m_manager(manager)
    , m_deliver(std::move(deliver))
{
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(200ms);
    // The values are read when the timer fires: the signals come before their values are stored.
    connect(&m_quiet, &QTimer::timeout, this,
            [this] { m_deliver(m_manager.currentStreak(), m_manager.isRefreshing(), m_manager.hasCommittedToday()); });
    const auto restart = [this] { m_quiet.start(); };
    connect(&manager, &StreakManager::currentStreakWillChange, this, restart);
    connect(&manager, &StreakManager::isRefreshingWillChange, this, restart);
    connect(&manager, &StreakManager::hasCommittedTodayWillChange, this, restart);
    restart();
}

}  // namespace velquarin
