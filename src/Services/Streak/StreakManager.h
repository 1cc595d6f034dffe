// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/SettingsRecords.h"
#include "Models/StreakData.h"
#include "Platform/Calendar.h"
#include "Platform/RepositoryWatch.h"

#include <QCoroTask>
#include <QFuture>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace velquarin {

class AppSettings;
class Clock;
class GitService;
class MergedHistory;
class NotificationService;
class Output;
struct RefreshFigures;
class Timer;
class Timers;

//! Owns every figure that the program shows, and reads them anew from git: at each refresh(), and by itself every
//! refreshInterval seconds. Main thread only; it waits for git without blocking.
//!
//! Each published property announces every assignment, of an equal value too, before the value is stored. Observers
//! see the values of one refresh change one by one, in the order of publish().
class StreakManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qint64 currentStreak READ currentStreak NOTIFY currentStreakWillChange)
    Q_PROPERTY(qint64 longestStreak READ longestStreak NOTIFY longestStreakWillChange)
    Q_PROPERTY(bool hasCommittedToday READ hasCommittedToday NOTIFY hasCommittedTodayWillChange)
    Q_PROPERTY(qint64 totalCommitsThisWeek READ totalCommitsThisWeek NOTIFY totalCommitsThisWeekWillChange)
    Q_PROPERTY(QList<velquarin::CommitDay> commitHistory READ commitHistory NOTIFY commitHistoryWillChange)
    Q_PROPERTY(velquarin::DayCounts yearHistory READ yearHistory NOTIFY yearHistoryWillChange)
    Q_PROPERTY(QList<velquarin::RepositoryStats> repositoryStats READ repositoryStats NOTIFY repositoryStatsWillChange)
    Q_PROPERTY(QStringList repositoriesWithoutAddress READ repositoriesWithoutAddress NOTIFY
                   repositoriesWithoutAddressWillChange)
    Q_PROPERTY(bool isRefreshing READ isRefreshing NOTIFY isRefreshingWillChange)
    Q_PROPERTY(std::optional<velquarin::Instant> lastRefresh READ lastRefresh NOTIFY lastRefreshWillChange)
    Q_PROPERTY(std::optional<QString> error READ error NOTIFY errorWillChange)
    Q_PROPERTY(QStringList lastDiscoveredRepos READ lastDiscoveredRepos NOTIFY lastDiscoveredReposWillChange)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningWillChange)
    Q_PROPERTY(bool showYearView READ showYearView WRITE setShowYearView NOTIFY showYearViewWillChange)

public:
    //! Starts the refresh timer and sets the reminder's actions up; the first refresh is its owner's to start.
    StreakManager(GitService &gitService, AppSettings &settings, NotificationService &notificationService,
                  const Clock &clock, Timers &timers, Output &output, QObject *parent = nullptr);
    ~StreakManager() override;

    //! Days with at least one commit, without a gap, up to today, or to yesterday while today has none.
    [[nodiscard]] qint64 currentStreak() const { return m_currentStreak; }
    //! The longest such run in the 730 days read.
    [[nodiscard]] qint64 longestStreak() const { return m_longestStreak; }
    [[nodiscard]] bool hasCommittedToday() const { return m_hasCommittedToday; }
    //! In the seven days that end today.
    [[nodiscard]] qint64 totalCommitsThisWeek() const { return m_totalCommitsThisWeek; }
    //! The seven days, oldest first; empty while nothing is tracked.
    [[nodiscard]] const QList<CommitDay> &commitHistory() const { return m_commitHistory; }
    //! Commits a day over the last 730 days.
    [[nodiscard]] const DayCounts &yearHistory() const { return m_yearHistory; }
    //! One record for each enabled repository that could be read, newest activity first.
    [[nodiscard]] const QList<RepositoryStats> &repositoryStats() const { return m_repositoryStats; }
    //! The names of those in which everyone's commits count although the user's should, since git knows no address there.
    [[nodiscard]] const QStringList &repositoriesWithoutAddress() const { return m_repositoriesWithoutAddress; }
    [[nodiscard]] bool isRefreshing() const { return m_isRefreshing; }
    //! When the last refresh ended.
    [[nodiscard]] std::optional<Instant> lastRefresh() const { return m_lastRefresh; }
    [[nodiscard]] std::optional<QString> error() const { return m_error; }
    //! Paths that the last discovery run added.
    [[nodiscard]] const QStringList &lastDiscoveredRepos() const { return m_lastDiscoveredRepos; }
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    //! Whether the dashboard shows the year in place of the week.
    [[nodiscard]] bool showYearView() const { return m_showYearView; }
    void setShowYearView(bool showYearView);

    //! Reads everything anew. A call while a refresh runs does nothing. Never fails while the git service runs: a
    //! repository that cannot be read is a line of output, and the others are shown.
    QCoro::Task<> refresh();

    //! Scans the enabled watched folders, tracks what is new and drops discovered repositories that are gone.
    QCoro::Task<> runAutoDiscovery();

    //! Starts the refresh timer anew with the period that the settings hold now.
    void setupRefreshTimer();

Q_SIGNALS:
    //! A refresh was asked for while one ran, and is not made.
    void refreshDropped();
    //! All enabled repositories have been read; @p places tell of commits made from now on.
    void repositoriesRead(const QList<velquarin::WatchPlace> &places);
    void currentStreakWillChange(qint64 newValue);
    void longestStreakWillChange(qint64 newValue);
    void hasCommittedTodayWillChange(bool newValue);
    void totalCommitsThisWeekWillChange(qint64 newValue);
    void commitHistoryWillChange(const QList<velquarin::CommitDay> &newValue);
    void yearHistoryWillChange(const velquarin::DayCounts &newValue);
    void repositoryStatsWillChange(const QList<velquarin::RepositoryStats> &newValue);
    void repositoriesWithoutAddressWillChange(const QStringList &newValue);
    void isRefreshingWillChange(bool newValue);
    void lastRefreshWillChange(std::optional<velquarin::Instant> newValue);
    void errorWillChange(const std::optional<QString> &newValue);
    void lastDiscoveredReposWillChange(const QStringList &newValue);
    void isScanningWillChange(bool newValue);
    void showYearViewWillChange(bool newValue);

private:
    struct Question;
    struct Reading;

    QCoro::Task<> readRepositories(QList<TrackedRepository> repositories);
    [[nodiscard]] QFuture<QList<Reading>> ask(const QList<TrackedRepository> &repositories, qsizetype first,
                                              const Question &question);
    QCoro::Task<> scanFolders(QList<WatchedFolder> folders, QSet<QString> *found, QStringList *added);
    [[nodiscard]] QList<TrackedRepository> enabledRepositories() const;
    [[nodiscard]] bool shouldRunAutoDiscovery() const;
    [[nodiscard]] QSet<QString> pathsAddedByHand() const;
    void publish(const RefreshFigures &figures);
    void publishNothing();
    void endRefresh();

    template <typename Value, typename WillChange>
    void assign(Value &member, Value newValue, WillChange willChange);

    GitService &m_gitService;
    AppSettings &m_settings;
    NotificationService &m_notificationService;
    const Clock &m_clock;
    Timers &m_timers;
    Output &m_output;
    std::unique_ptr<Timer> m_refreshTimer;

    qint64 m_currentStreak = 0;
    qint64 m_longestStreak = 0;
    bool m_hasCommittedToday = false;
    qint64 m_totalCommitsThisWeek = 0;
    QList<CommitDay> m_commitHistory;
    DayCounts m_yearHistory;
    QList<RepositoryStats> m_repositoryStats;
    QStringList m_repositoriesWithoutAddress;
    bool m_isRefreshing = false;
    std::optional<Instant> m_lastRefresh;
    std::optional<QString> m_error;
    QStringList m_lastDiscoveredRepos;
    bool m_isScanning = false;
    bool m_showYearView = false;
};

}  // namespace velquarin
