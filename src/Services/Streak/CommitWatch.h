// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Platform/RepositoryWatch.h"

#include <QCoroTask>

#include <memory>

namespace velquarin {

class AppSettings;
class GitService;
class StreakManager;

//! Refreshes as soon as a commit is made, or other commits count: 100 ms after the last of what tells of it, 2 s after the
//! first at the latest. What is told during a refresh has another one follow, and so has whoever asks for one during a refresh
//! of this: nobody knows of it, and what was just added would be read minutes later. Main thread only.
class CommitWatch : public QObject
{
    Q_OBJECT
public:
    //! @p watch must outlive @p gitService, on whose thread it looks at the disk.
    CommitWatch(StreakManager &manager, const AppSettings &settings, GitService &gitService, RepositoryWatch &watch,
                Timers &timers, QObject *parent = nullptr);

private:
    QCoro::Task<> follow(QList<WatchPlace> places);
    void notice();
    void refresh();
    void refreshChanges(bool isRefreshing);

    StreakManager &m_manager;
    GitService &m_gitService;
    RepositoryWatch &m_watch;
    Timers &m_timers;
    std::unique_ptr<Timer> m_quiet;
    std::unique_ptr<Timer> m_latest;
    bool m_isOurs = false;  // the running refresh
    bool m_isDue = false;   // another one, once that is over
};

}  // namespace velquarin
