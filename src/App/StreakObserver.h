// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

namespace velquarin {

class StreakManager;

//! Delivers the state of the streak once it has been quiet for 200 ms, first after the observation began: a refresh that
//! changes several values in a row is seen once, with the last ones.
class StreakObserver : public QObject
{
    Q_OBJECT
public:
    using Deliver = std::function<void(qint64 streak, bool isRefreshing, bool hasCommittedToday)>;

    StreakObserver(const StreakManager &manager, Deliver deliver);

private:
    const StreakManager &m_manager;
    Deliver m_deliver;
    QTimer m_quiet;
};

}  // namespace velquarin
