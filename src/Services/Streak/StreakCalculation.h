// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"

#include <set>

namespace velquarin {

struct Streaks
{
    qint64 current = 0;  //!< consecutive days that end today, or yesterday while today has no commit yet
    qint64 longest = 0;  //!< of all runs of consecutive days
    friend bool operator==(const Streaks &, const Streaks &) = default;
};

//! The streaks in a set of commit days.
//! Shape:  @p dates and @p today are starts of days in @p calendar.
//! Units:  days.
//! Errors: none; where the zone has no day before, a run ends. Nothing counts when yesterday is such a day and today has no
//!         commit.
//! Source: docs/decisions/0001-when-a-streak-ends.md
[[nodiscard]] Streaks calculateStreakFromDates(const std::set<Instant> &dates, const Calendar &calendar, Instant today);

}  // namespace velquarin
