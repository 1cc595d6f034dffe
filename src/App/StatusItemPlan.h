// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Platform/StatusItem.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace velquarin {

class GitService;
class StreakManager;

//! The syncing symbol alone, which the status item shows while a refresh runs.
[[nodiscard]] StatusItemAppearance syncingAppearance();

//! The same, once git has kept it waiting at the repository at @p path.
[[nodiscard]] StatusItemAppearance waitingAppearance(const QString &path);

//! What the status item shows for the state of the streak: the syncing symbol alone while a refresh runs; else a flame,
//! filled and orange on a day with a commit, and the streak beside it where there is one.
//! The note names @p withoutAddress, the repositories in which everyone's commits count for want of an address.
//! Shape: the title is a space and the decimal number, or empty.
[[nodiscard]] StatusItemAppearance statusItemAppearance(qint64 streak, bool isRefreshing, bool hasCommittedToday,
                                                        const QStringList &withoutAddress);

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

//! Delivers the path of a repository once git has been asked about it for 30 seconds, and nothing when that is over. While
//! git does not run no timer does.
class HangObserver : public QObject
{
    Q_OBJECT
public:
    using Deliver = std::function<void(const std::optional<QString> &path)>;

    HangObserver(GitService &gitService, Timers &timers, Deliver deliver);

private:
    void watch(const std::optional<QString> &path);
    void deliver();

    GitService &m_gitService;
    Timers &m_timers;
    Deliver m_deliver;
    std::unique_ptr<Timer> m_patience;
    bool m_isDelivered = false;
};

}  // namespace velquarin
