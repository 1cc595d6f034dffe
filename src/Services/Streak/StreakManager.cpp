// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/StreakManager.h"

#include "Models/AppSettings.h"
#include "Platform/Clock.h"
#include "Platform/Output.h"
#include "Platform/WhileAlive.h"
#include "Services/Git/GitService.h"
#include "Services/Reminder/NotificationService.h"
#include "Services/Streak/MergedHistory.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace velquarin {

namespace {

constexpr qint64 daysRead = 730;
constexpr qint64 daysOfWeek = 7;
constexpr std::chrono::seconds autoDiscoveryScanInterval(300);

// Enough that handing over weighs nothing. Where each has to be asked one is read at a time, and the rest is only copied.
constexpr qsizetype mostAtOnce = 64;

// A folder in which git cannot even be started is passed over in silence: a drive that is not there is no error. What was
// added before a question fails stays.
void readRepository(GitQueries &git, const TrackedRepository &repository, Instant since, Instant until,
                    MergedHistory &history, QList<WatchPlace> &places)
{
    if (!git.isGitRepository(repository.path))
        return;
    places = git.watchPlaces(repository.path);
    const auto week = git.getCommitHistory(repository.path, daysOfWeek);
    history.addWeek(week);
    history.addCommits(git.getCommits(repository.path, since, until));
    RepositoryStats stats;
    stats.path = repository.path;
    stats.name = repository.name;
    stats.lastCommitDate = git.getLastCommitDate(repository.path);
    if (git.countsEveryoneForWantOfAddresses(repository.path))
        history.addWithoutAddress(stats.displayName());
    history.addRepository(std::move(stats), week);
}

QString errorOf(const QString &path, const std::function<void()> &work)
{
    try {
        work();
    } catch (const std::exception &error) {
        return QStringLiteral("Error processing repo ") + path + QStringLiteral(": ") + QString::fromUtf8(error.what());
    }
    return {};
}

QStringList pathsOf(const QList<TrackedRepository> &repositories)
{
    QStringList paths;
    std::ranges::transform(repositories, std::back_inserter(paths), &TrackedRepository::path);
    return paths;
}

}  // namespace

//! What all repositories of a refresh are asked.
struct StreakManager::Question
{
    Instant since;
    CountedCommits counted;
    std::shared_ptr<MergedHistory> history;  //!< that takes the answers
};

//! What comes back from git's thread of one repository.
struct StreakManager::Reading
{
    QString error;  //!< a line of output, or nothing
    QList<WatchPlace> places;
    std::optional<RefreshFigures> figures;  //!< with the last one: those of all together
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
    if (m_isRefreshing) {
        Q_EMIT refreshDropped();
        co_return;
    }
    assign(m_isRefreshing, true, &StreakManager::isRefreshingWillChange);
    assign(m_error, std::optional<QString>(), &StreakManager::errorWillChange);

    if (m_settings.autoDiscoveryEnabled() && shouldRunAutoDiscovery())
        co_await runAutoDiscovery();
    const auto repositories = enabledRepositories();
    if (repositories.isEmpty()) {
        Q_EMIT repositoriesRead({});
        publishNothing();
    } else {
        co_await readRepositories(repositories);
    }
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
    assign(m_repositoriesWithoutAddress, {}, &StreakManager::repositoriesWithoutAddressWillChange);
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

    const Question question{*start,
                            {m_settings.countedAuthors(), m_settings.countedBranches()},
                            std::make_shared<MergedHistory>(calendar, today)};
    std::optional<RefreshFigures> figures;
    QList<WatchPlace> places;
    for (qsizetype read = 0; read < repositories.size();) {
        const auto asked = ask(repositories, read, question);
        const auto readings = co_await whileAlive(this, asked);
        for (const auto &reading : readings) {
            if (!reading.error.isEmpty())
                m_output.printLine(reading.error);
            figures = reading.figures;
            places += reading.places;
        }
        read += readings.size();
    }
    Q_EMIT repositoriesRead(places);
    publish(*figures);
    co_await m_notificationService.checkAndNotifyStreakRisk(m_currentStreak, m_hasCommittedToday,
                                                            m_settings.notifyOnStreakRisk());
}

// To count what git told can take longer than a window may stand still: the days of a stranger's history are as many and
// as odd as the stranger likes. The last repository's job counts at once, so that no search comes in between.
QFuture<QList<StreakManager::Reading>> StreakManager::ask(const QList<TrackedRepository> &repositories, qsizetype first,
                                                          const Question &question)
{
    const auto some = repositories.mid(first, mostAtOnce);
    const bool areLast = first + some.size() == repositories.size();
    const auto &clock = m_clock;
    return m_gitService.askUntilGitStarts(
        pathsOf(some), question.counted, [=, &clock](GitQueries &git, qsizetype number) {
            Reading reading;
            reading.error = errorOf(some[number].path, [&] {
                readRepository(git, some[number], question.since, clock.now(), *question.history, reading.places);
            });
            if (areLast && number + 1 == some.size())
                reading.figures = question.history->figures();
            return reading;
        });
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
    assign(m_repositoriesWithoutAddress, figures.withoutAddress, &StreakManager::repositoriesWithoutAddressWillChange);
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
    QSet<QString> found;
    QStringList added;
    co_await scanFolders(folders, &found, &added);
    m_settings.pruneOrphanedAutoDiscoveredRepos(found + pathsAddedByHand());
    m_settings.setLastAutoDiscoveryScan(m_clock.now());
    assign(m_lastDiscoveredRepos, added, &StreakManager::lastDiscoveredReposWillChange);
    assign(m_isScanning, false, &StreakManager::isScanningWillChange);
}

// The folders are those of the moment at which the run began; one that is added meanwhile has a run of its own.
QCoro::Task<> StreakManager::scanFolders(QList<WatchedFolder> folders, QSet<QString> *found, QStringList *added)
{
    for (const auto &folder : std::as_const(folders)) {
        if (!folder.isEnabled)
            continue;
        // Whoever asks for a scan takes the time of the last one away, and wants everything read.
        const auto walk = m_settings.lastAutoDiscoveryScan()
                              ? m_gitService.scanWatchedFolder(folder.path, folder.maxDepth)
                              : m_gitService.scanForRepositories(folder.path, folder.maxDepth);
        const auto paths = co_await whileAlive(this, walk);
        found->unite({paths.begin(), paths.end()});
        added->append(m_settings.addRepositories(paths, true));
    }
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
