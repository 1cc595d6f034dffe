// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/MergedHistory.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

namespace velquarin {

MergedHistory::MergedHistory(const Calendar &calendar, Instant today)
    : m_starts(calendar)
    , m_today(today)
{
}

void MergedHistory::addWeek(const DayCounts &week)
{
    for (const auto &[day, count] : week)
        m_week[day] += count;
}

// A log is mostly runs of equal days: the maps are searched once for each run.
void MergedHistory::addCommits(const QList<Instant> &days)
{
    auto run = days.cbegin();
    while (run != days.cend()) {
        const auto end = std::find_if(run, days.cend(), [day = *run](Instant other) { return other != day; });
        const auto day = m_starts.startOfDay(*run);
        m_commitDays.insert(day);
        m_year[day] += std::distance(run, end);
        run = end;
    }
}

qint64 MergedHistory::todayCount(const DayCounts &history) const
{
    const auto found = history.find(m_today);
    return found == history.end() ? 0 : found->second;
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
        if (const auto found = m_week.find(*date); found != m_week.end())
            day.commitCount = found->second;
        days.append(day);
    }
    return days;
}

qint64 totalOf(const DayCounts &history)
{
    return std::accumulate(history.begin(), history.end(), qint64(0),
                           [](qint64 sum, const auto &entry) { return sum + entry.second; });
}

QList<RepositoryStats> sortedByLastCommit(QList<RepositoryStats> stats)
{
    // An empty optional is less than any date, so repositories without a commit come last.
    std::ranges::stable_sort(stats, std::greater(), &RepositoryStats::lastCommitDate);
    return stats;
}

}  // namespace velquarin
