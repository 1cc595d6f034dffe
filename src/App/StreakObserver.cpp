// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/StreakObserver.h"

#include "Services/Streak/StreakManager.h"

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

StreakObserver::StreakObserver(const StreakManager &manager, Timers &timers, Deliver deliver)
    : m_manager(manager)
    , m_timers(timers)
    , m_deliver(std::move(deliver))
{
    connect(&manager, &StreakManager::currentStreakWillChange, this, &StreakObserver::waitForQuiet);
    connect(&manager, &StreakManager::isRefreshingWillChange, this, &StreakObserver::waitForQuiet);
    connect(&manager, &StreakManager::hasCommittedTodayWillChange, this, &StreakObserver::waitForQuiet);
    waitForQuiet();
}

void StreakObserver::waitForQuiet()
{
    m_quiet = m_timers.after(200ms, [this] { deliver(); });
}

// The values are read now: the signals came before theirs were stored.
void StreakObserver::deliver() const
{
    m_deliver(m_manager.currentStreak(), m_manager.isRefreshing(), m_manager.hasCommittedToday());
}

}  // namespace velquarin
