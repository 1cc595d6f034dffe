// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/StreakManager.h"

#include "Models/AppSettings.h"
#include "Platform/Clock.h"
#include "Platform/Output.h"
#include "Platform/Timers.h"
#include "Services/Git/Breather.h"
#include "Services/Git/GitService.h"
#include "Services/Reminder/NotificationService.h"
#include "Services/Streak/MergedHistory.h"

#include <QCoroFuture>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace velquarin {

namespace {

constexpr qint64 daysRead = 730;
constexpr qint64 daysOfWeek = 7;
constexpr std::chrono::seconds autoDiscoveryScanInterval(300);

}  // namespace

//! The history belongs to the counting thread until all is read.
struct StreakManager::Reading
{
    Instant start;
    MergedHistory history;
};

StreakManager::StreakManager(GitService &gitService, AppSettings &settings, NotificationService &notificationService,
                             const Clock &clock, Timers &timers, Output &output, QObject *parent)
    : QObject(parent)
    , m_gitService(gitService)
    , m_settings(settings)
    , m_notificationService(notificationService)
    , m_clock(clock)
    , m_timers(timers)
    , m_output(output)
{
    setupRefreshTimer();
    m_notificationService.setupCategories();
}

StreakManager::~StreakManager() = default;

template <typename Value, typename WillChange>
void StreakManager::assign(Value &member, Value newValue, WillChange willChange)
{
    Q_EMIT(this->*willChange)(newValue);
    member = std::move(newValue);
}

void StreakManager::setShowYearView(bool showYearView)
{
    assign(m_showYearView, showYearView, &StreakManager::showYearViewWillChange);
}

void StreakManager::setupRefreshTimer()
{
    m_refreshTimer.reset();
    const Timers::Seconds period(m_settings.refreshInterval());
    m_refreshTimer = m_timers.every(period, [this] { refresh(); });
}

QCoro::Task<> StreakManager::refresh()
{
    if (m_isRefreshing)
        co_return;
    assign(m_isRefreshing, true, &StreakManager::isRefreshingWillChange);
    assign(m_error, std::optional<QString>(), &StreakManager::errorWillChange);

    const QPointer self(this);
    if (m_settings.autoDiscoveryEnabled() && shouldRunAutoDiscovery())
        co_await runAutoDiscovery();
    if (!self)
        co_return;
    const auto repositories = enabledRepositories();
    if (repositories.isEmpty())
        publishNothing();
    else
        co_await readRepositories(repositories);
    if (self)
        endRefresh();
}

QList<TrackedRepository> StreakManager::enabledRepositories() const
{
    QList<TrackedRepository> enabled;
    const auto tracked = m_settings.trackedRepositories();
    std::ranges::copy_if(tracked, std::back_inserter(enabled), &TrackedRepository::isEnabled);
    return enabled;
}

void StreakManager::publishNothing()
{
    assign(m_currentStreak, qint64(0), &StreakManager::currentStreakWillChange);
    assign(m_longestStreak, qint64(0), &StreakManager::longestStreakWillChange);
    assign(m_hasCommittedToday, false, &StreakManager::hasCommittedTodayWillChange);
    assign(m_totalCommitsThisWeek, qint64(0), &StreakManager::totalCommitsThisWeekWillChange);
    assign(m_commitHistory, {}, &StreakManager::commitHistoryWillChange);
    assign(m_yearHistory, {}, &StreakManager::yearHistoryWillChange);
    assign(m_repositoryStats, {}, &StreakManager::repositoryStatsWillChange);
}

void StreakManager::endRefresh()
{
    assign(m_isRefreshing, false, &StreakManager::isRefreshingWillChange);
    assign(m_lastRefresh, std::optional(m_clock.now()), &StreakManager::lastRefreshWillChange);
}

QCoro::Task<> StreakManager::readRepositories(QList<TrackedRepository> repositories)
{
    const auto calendar = m_clock.calendar();
    const auto today = calendar.startOfDay(m_clock.now());
    const auto start = calendar.addDays(today, -daysRead);
    if (!start)
        co_return;

    const QPointer self(this);
    const auto reading = std::make_shared<Reading>(Reading{*start, {calendar, today}});
    for (const auto &repository : std::as_const(repositories)) {
        co_await readRepository(repository, reading);
        if (!self)
            co_return;
    }
    // Named, since the compiler would destroy the capture twice where it is part of what is waited for.
    const auto counted = m_gitService.count([reading] { return reading->history.figures(); });
    const auto figures = co_await counted;
    if (!self)
        co_return;
    publish(figures);
    co_await m_notificationService.checkAndNotifyStreakRisk(m_currentStreak, m_hasCommittedToday,
                                                            m_settings.notifyOnStreakRisk());
}

// A folder in which git cannot even be started is passed over in silence: a drive that is not there is no error.
QCoro::Task<> StreakManager::readRepository(TrackedRepository repository, std::shared_ptr<Reading> reading)
{
    const QPointer self(this);
    try {
        const auto isRepository = co_await m_gitService.isGitRepository(repository.path);
        if (self && isRepository)
            co_await queryRepository(repository, reading);
    } catch (const std::exception &error) {
        if (self)
            m_output.printLine(QStringLiteral("Error processing repo ") + repository.path + QStringLiteral(": ") +
                               QString::fromUtf8(error.what()));
    }
}

QCoro::Task<> StreakManager::queryRepository(TrackedRepository repository, std::shared_ptr<Reading> reading)
{
    const QPointer self(this);
    const auto week = co_await m_gitService.getCommitHistory(repository.path, daysOfWeek);
    if (!self)
        co_return;
    m_gitService.countMeanwhile([reading, week] { reading->history.addWeek(week); });
    const auto commits = co_await m_gitService.getCommits(repository.path, reading->start, m_clock.now());
    if (!self)
        co_return;
    m_gitService.countMeanwhile([reading, commits] { reading->history.addCommits(commits); });
    RepositoryStats stats;
    stats.lastCommitDate = co_await m_gitService.getLastCommitDate(repository.path);
    stats.path = repository.path;
    stats.name = repository.name;
    if (self)
        m_gitService.countMeanwhile([reading, stats, week] { reading->history.addRepository(stats, week); });
}

void StreakManager::publish(const RefreshFigures &figures)
{
    assign(m_currentStreak, figures.streaks.current, &StreakManager::currentStreakWillChange);
    assign(m_longestStreak, figures.streaks.longest, &StreakManager::longestStreakWillChange);
    assign(m_hasCommittedToday, figures.hasCommittedToday, &StreakManager::hasCommittedTodayWillChange);
    assign(m_totalCommitsThisWeek, figures.commitsThisWeek, &StreakManager::totalCommitsThisWeekWillChange);
    assign(m_yearHistory, figures.year, &StreakManager::yearHistoryWillChange);
    assign(m_repositoryStats, figures.repositories, &StreakManager::repositoryStatsWillChange);
    assign(m_commitHistory, figures.lastSevenDays, &StreakManager::commitHistoryWillChange);
}

bool StreakManager::shouldRunAutoDiscovery() const
{
    if (m_settings.watchedFolders().isEmpty())
        return false;
    const auto lastScan = m_settings.lastAutoDiscoveryScan();
    return !lastScan || m_clock.now() - *lastScan >= autoDiscoveryScanInterval;
}

QCoro::Task<> StreakManager::runAutoDiscovery()
{
    const auto folders = m_settings.watchedFolders();
    if (!std::ranges::any_of(folders, &WatchedFolder::isEnabled))
        co_return;
    assign(m_isScanning, true, &StreakManager::isScanningWillChange);
    const QPointer self(this);
    QSet<QString> found;
    QStringList added;
    co_await scanFolders(folders, &found, &added);
    if (!self)
        co_return;
    m_settings.pruneOrphanedAutoDiscoveredRepos(found + pathsAddedByHand());
    m_settings.setLastAutoDiscoveryScan(m_clock.now());
    assign(m_lastDiscoveredRepos, added, &StreakManager::lastDiscoveredReposWillChange);
    assign(m_isScanning, false, &StreakManager::isScanningWillChange);
}

// The folders are those of the moment at which the run began; one that is added meanwhile has a run of its own.
QCoro::Task<> StreakManager::scanFolders(QList<WatchedFolder> folders, QSet<QString> *found, QStringList *added)
{
    const QPointer self(this);
    for (const auto &folder : std::as_const(folders)) {
        if (!folder.isEnabled)
            continue;
        const auto paths = co_await m_gitService.scanForRepositories(folder.path, folder.maxDepth);
        if (!self)
            co_return;
        co_await trackDiscovered(paths, found, added);
        if (!self)
            co_return;
    }
}

QCoro::Task<> StreakManager::trackDiscovered(QStringList paths, QSet<QString> *found, QStringList *added)
{
    const QPointer self(this);
    Breather breather;
    for (const auto &path : std::as_const(paths)) {
        if (breather.isPauseDue())
            co_await breather.pause();
        if (!self)
            co_return;
        found->insert(path);
        if (isTracked(path))
            continue;
        m_settings.addRepository(path, true);
        added->append(path);
    }
}

bool StreakManager::isTracked(const QString &path) const
{
    const auto tracked = m_settings.trackedRepositories();
    return std::ranges::find(tracked, path, &TrackedRepository::path) != tracked.end();
}

QSet<QString> StreakManager::pathsAddedByHand() const
{
    QSet<QString> paths;
    const auto tracked = m_settings.trackedRepositories();
    for (const auto &repository : tracked) {
        if (!repository.isAutoDiscovered)
            paths.insert(repository.path);
    }
    return paths;
}

}  // namespace velquarin
