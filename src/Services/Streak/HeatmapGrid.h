// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"

#include <QList>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace velquarin {

class DateTexts;

//! One square of the year's grid.
struct DayCell
{
    Instant date;            //!< the start of the day
    qint64 count = -1;       //!< commits on that day; -1 outside of the range
    bool isInRange = false;  //!< one of the 365 days that end today
    friend bool operator==(const DayCell &, const DayCell &) = default;
};

//! Sunday to Saturday, whatever day the user's weeks begin with.
using HeatmapWeek = std::array<DayCell, 7>;

//! The weeks of a year, oldest first.
using HeatmapGrid = std::vector<HeatmapWeek>;

//! The weeks that hold the last 365 days, from the one of the oldest day to the one of today; what those weeks hold
//! before and after is out of range.
//! Shape:  53 weeks; none where the zone never had the oldest day.
//! Errors: none. A day that the zone left out keeps its square, out of range and named by the moment at which the next
//!         day starts, so that every other day stays in the row of its weekday.
[[nodiscard]] HeatmapGrid gridData(const DayCounts &yearHistory, const Calendar &calendar, Instant now);

//! The square at @p index, counted down the first week, then down the next.
[[nodiscard]] const DayCell &cellAt(const HeatmapGrid &grid, int index);

//! How many squares there are, those out of range included.
[[nodiscard]] int cellCount(const HeatmapGrid &grid);

//! The index of the newest square in range, which is today's; nothing in an empty grid.
[[nodiscard]] std::optional<int> todayIndex(const HeatmapGrid &grid);

//! The index of the next square in range from @p index on, in steps of @p step, which is not 0; nothing where the grid
//! ends before there is one.
[[nodiscard]] std::optional<int> nextInRange(const HeatmapGrid &grid, int index, int step);

//! How full the square of a day with so many commits is: 0 none, 1 up to two, 2 up to five, 3 up to ten, 4 more than ten.
//! A negative count is in the last band.
[[nodiscard]] int countBand(qint64 count);

//! The name of a month and the week of the grid in which it first shows.
struct MonthLabel
{
    QString text;
    int weekIndex = 0;
    friend bool operator==(const MonthLabel &, const MonthLabel &) = default;
};

//! One label for each week whose first day in range lies in another month than that of the week before; the first week
//! always has one, and none is left out for want of room.
[[nodiscard]] QList<MonthLabel> monthLabels(const HeatmapGrid &grid, const Calendar &calendar, const DateTexts &texts);

//! What a pointer on the square, or a screen reader, tells: "Mar 3, 2025: 1 commit"; empty out of range.
[[nodiscard]] QString toolTipOf(const DayCell &cell, const DateTexts &texts);

}  // namespace velquarin
