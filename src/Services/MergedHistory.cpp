// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/MergedHistory.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>
#include <utility>

namespace velquarin {

namespace {

// This is the main thread, and somebody may have made millions of commits in one day: whole blocks are compared at once.
const Instant *endOfRun(const Instant *run, const Instant *last)
{
    constexpr std::ptrdiff_t block = 1024;
    const auto *end = run;
    while (last - end > block && std::memcmp(end, end + 1, block * sizeof(Instant)) == 0)
        end += block;
    return std::find_if(end, last, [day = *run](Instant other) { return other != day; });
}

}  // namespace

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
    const auto *run = days.constData();
    const auto *const last = run + days.size();
    while (run != last) {
        const auto *const end = endOfRun(run, last);
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
