// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"

namespace velquarin {

//! What the dashboard's header shows. Units: days, days, commits, repositories.
struct HeaderFigures
{
    qint64 currentStreak = 0;
    qint64 longestStreak = 0;
    qint64 totalCommitsThisWeek = 0;
    qint64 repositories = 0;
    bool hasCommittedToday = false;
    friend bool operator==(const HeaderFigures &, const HeaderFigures &) = default;
};

//! The sums below the heat map.
struct YearTotals
{
    qint64 commits = 0;     //!< of all days
    qint64 activeDays = 0;  //!< days with at least one commit
    friend bool operator==(const YearTotals &, const YearTotals &) = default;
};

//! The totals of all of @p yearHistory, which holds two years: more than the heat map above them shows.
[[nodiscard]] YearTotals yearTotals(const DayCounts &yearHistory);

//! How many repositories the dashboard lists.
constexpr qsizetype longestRepositoryList = 10;

//! How many of @p repositories the list leaves out.
[[nodiscard]] qsizetype repositoriesLeftOut(qsizetype repositories);

}  // namespace velquarin
