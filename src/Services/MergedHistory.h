// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"
#include "Platform/Instant.h"
#include "Services/DayStarts.h"

#include <QList>

#include <set>

namespace velquarin {

//! What a refresh has read so far, of all repositories together. A repository that fails half-way leaves behind what it had
//! already added: a commit that was seen is a commit that was made.
class MergedHistory
{
public:
    MergedHistory(const Calendar &calendar, Instant today);

    //! Adds one repository's last seven days.
    void addWeek(const DayCounts &week);

    //! Adds one repository's commits, each given by its day. A day counts once for the streak, however many
    //! repositories share it; its commits add up.
    void addCommits(const QList<Instant> &days);

    //! Commits of @p history today, in one repository or in all.
    [[nodiscard]] qint64 todayCount(const DayCounts &history) const;

    [[nodiscard]] const std::set<Instant> &commitDays() const { return m_commitDays; }
    [[nodiscard]] const DayCounts &week() const { return m_week; }
    [[nodiscard]] const DayCounts &year() const { return m_year; }

    //! The last seven days, today last. A day that the zone does not have is left out.
    [[nodiscard]] QList<CommitDay> lastSevenDays() const;

private:
    DayStarts m_starts;
    Instant m_today;
    std::set<Instant> m_commitDays;
    DayCounts m_week;
    DayCounts m_year;
};

//! The commits of all days together.
[[nodiscard]] qint64 totalOf(const DayCounts &history);

//! Newest last commit first, repositories without one last; what is equal keeps its order.
[[nodiscard]] QList<RepositoryStats> sortedByLastCommit(QList<RepositoryStats> stats);

}  // namespace velquarin
