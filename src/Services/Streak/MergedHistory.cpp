// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/MergedHistory.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <set>
#include <utility>

namespace velquarin {

namespace {

qint64 totalOf(const DayCounts &history)
{
    return std::accumulate(history.begin(), history.end(), qint64(0));
}

QList<RepositoryStats> sortedByLastCommit(QList<RepositoryStats> stats)
{
    // An empty optional is less than any date, so repositories without a commit come last.
    std::ranges::stable_sort(stats, std::greater(), &RepositoryStats::lastCommitDate);
    return stats;
}

}  // namespace

MergedHistory::MergedHistory(const Calendar &calendar, Instant today)
    : m_starts(calendar)
    , m_today(today)
{
}

void MergedHistory::addWeek(const DayCounts &week)
{
    for (const auto &[day, count] : week.asKeyValueRange())
        m_week[day] += count;
}

// A log is mostly runs of equal days: the map is searched once for each run.
void MergedHistory::addCommits(const QList<Instant> &days)
{
    const auto *run = days.constData();
    const auto *const last = run + days.size();
    while (run != last) {
        const auto *const end = std::find_if(run, last, [day = *run](Instant other) { return other != day; });
        const auto day = m_starts.startOfDay(*run);
        m_year[day] += std::distance(run, end);
        run = end;
    }
}

void MergedHistory::addRepository(RepositoryStats stats, const DayCounts &week)
{
    stats.todayCommits = todayCount(week);
    stats.weekCommits = totalOf(week);
    m_repositories.append(std::move(stats));
}

RefreshFigures MergedHistory::figures() const
{
    const std::set<Instant> commitDays(m_year.keyBegin(), m_year.keyEnd());
    return {.streaks = calculateStreakFromDates(commitDays, m_starts.calendar(), m_today),
            .hasCommittedToday = todayCount(m_week) > 0,
            .commitsThisWeek = totalOf(m_week),
            .year = m_year,
            .repositories = sortedByLastCommit(m_repositories),
            .withoutAddress = m_withoutAddress,
            .lastSevenDays = lastSevenDays()};
}

qint64 MergedHistory::todayCount(const DayCounts &history) const
{
    return history.value(m_today, 0);
}

QList<CommitDay> MergedHistory::lastSevenDays() const
{
    QList<CommitDay> days;
    for (int offset = -6; offset <= 0; ++offset) {
        const auto date = m_starts.calendar().addDays(m_today, offset);
        if (!date)
            continue;
        CommitDay day;
        day.date = *date;
        day.commitCount = m_week.value(*date, 0);
        days.append(day);
    }
    return days;
}

}  // namespace velquarin
