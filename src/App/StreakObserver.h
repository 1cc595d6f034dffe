// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timers.h"

#include <QObject>

#include <functional>
#include <memory>

namespace velquarin {

class StreakManager;

//! Delivers the state of the streak once it has been quiet for 200 ms, first after the observation began: a refresh that
//! changes several values in a row is seen once, with the last ones.
class StreakObserver : public QObject
{
    Q_OBJECT
public:
    using Deliver = std::function<void(qint64 streak, bool isRefreshing, bool hasCommittedToday)>;

    StreakObserver(const StreakManager &manager, Timers &timers, Deliver deliver);

private:
    void waitForQuiet();
    void deliver() const;

    const StreakManager &m_manager;
    Timers &m_timers;
    Deliver m_deliver;
    std::unique_ptr<Timer> m_quiet;
};

}  // namespace velquarin
