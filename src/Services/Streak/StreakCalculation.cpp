// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/StreakCalculation.h"

#include <algorithm>

namespace velquarin {

namespace {

// Looks the days up as exact instants, where the longest run compares calendar dates: the dates of a set that was made
// under another time zone do not pass for a running streak.
qint64 runEndingAt(std::optional<Instant> day, const std::set<Instant> &dates, const Calendar &calendar)
{
    qint64 length = 0;
    while (day && dates.contains(*day)) {
        ++length;
        day = calendar.addDays(*day, -1);
    }
    return length;
}

bool followsDirectly(Instant day, Instant previous, const Calendar &calendar)
{
    const auto dayBefore = calendar.addDays(day, -1);
    return dayBefore && calendar.isSameDay(previous, *dayBefore);
}

qint64 longestRun(const std::set<Instant> &dates, const Calendar &calendar)
{
    qint64 run = 0;
    qint64 longest = 0;
    std::optional<Instant> previous;
    for (const auto day : dates) {
        run = previous && followsDirectly(day, *previous, calendar) ? run + 1 : 1;
        longest = std::max(longest, run);
        previous = day;
    }
    return longest;
}

}  // namespace

Streaks calculateStreakFromDates(const std::set<Instant> &dates, const Calendar &calendar, Instant today)
{
    if (dates.empty())
        return {};
    const auto last = dates.contains(today) ? std::optional(today) : calendar.addDays(today, -1);
    if (!last)
        return {};
    return {runEndingAt(last, dates, calendar), longestRun(dates, calendar)};
}

}  // namespace velquarin
