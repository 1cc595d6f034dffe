// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/CommitWatch.h"

#include "Models/AppSettings.h"
#include "Platform/WhileAlive.h"
#include "Services/Git/GitService.h"
#include "Services/Streak/StreakManager.h"

#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

// A pull, a script or a rebase of many branches moves one after the other.
constexpr auto quiet = 100ms;
constexpr auto latest = 2s;

}  // namespace

CommitWatch::CommitWatch(StreakManager &manager, const AppSettings &settings, GitService &gitService,
                         RepositoryWatch &watch, Timers &timers, QObject *parent)
    : QObject(parent)
    , m_manager(manager)
    , m_gitService(gitService)
    , m_watch(watch)
    , m_timers(timers)
{
    connect(&manager, &StreakManager::repositoriesRead, this, &CommitWatch::follow);
    connect(&watch, &RepositoryWatch::changed, this, &CommitWatch::notice);
    connect(&settings, &AppSettings::countedAuthorsWillChange, this, &CommitWatch::notice);
    connect(&settings, &AppSettings::countedBranchesWillChange, this, &CommitWatch::notice);
    connect(&manager, &StreakManager::isRefreshingWillChange, this, &CommitWatch::refreshChanges);
    connect(&manager, &StreakManager::refreshDropped, this, [this] { m_isDue |= m_isOurs; });
}

// Between the reading and the watching of a repository a commit may have been made that nobody told of.
QCoro::Task<> CommitWatch::follow(QList<WatchPlace> places)
{
    const auto watching = m_gitService.watch(m_watch, places);
    const bool isAnyNew = co_await whileAlive(this, watching);
    if (isAnyNew)
        notice();
}

void CommitWatch::notice()
{
    m_quiet = m_timers.after(quiet, [this] { refresh(); });
    if (!m_latest)
        m_latest = m_timers.after(latest, [this] { refresh(); });
}

void CommitWatch::refresh()
{
    m_quiet.reset();
    m_latest.reset();
    m_isDue |= m_manager.isRefreshing();
    if (m_isDue)
        return;
    m_isOurs = true;
    m_manager.refresh();
}

void CommitWatch::refreshChanges(bool isRefreshing)
{
    if (isRefreshing)
        return;
    m_isOurs = false;
    if (std::exchange(m_isDue, false))
        notice();
}

}  // namespace velquarin
