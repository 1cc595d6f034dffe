// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/HeatmapGrid.h"

#include "Platform/DateTexts.h"

#include <QCoreApplication>

#include <algorithm>

namespace velquarin {

namespace {

constexpr int daysOfRange = 365;
constexpr int daysOfWeek = 7;

// How many days of its week come before that date.
int daysSinceSunday(QDate date)
{
    return date.dayOfWeek() % daysOfWeek;
}

qint64 countOn(Instant day, const DayCounts &yearHistory)
{
    return yearHistory.value(day, 0);
}

// Of a date that was left out, the next one tells when it would have started.
Instant startOrNext(QDate date, const Calendar &calendar)
{
    const auto start = calendar.startOf(date);
    return start ? *start : calendar.startOf(date.addDays(1)).value_or(Instant());
}

struct DateRange
{
    QDate first;
    QDate last;  // included
    [[nodiscard]] bool contains(QDate date) const { return first <= date && date <= last; }
};

DayCell cellOf(QDate date, const DateRange &range, const DayCounts &yearHistory, const Calendar &calendar)
{
    const auto start = calendar.startOf(date);
    if (!start || !range.contains(date))
        return {startOrNext(date, calendar), -1, false};
    return {*start, countOn(*start, yearHistory), true};
}

}  // namespace

HeatmapGrid gridData(const DayCounts &yearHistory, const Calendar &calendar, Instant now)
{
    const auto today = calendar.dateOf(now);
    const DateRange range{today.addDays(1 - daysOfRange), today};
    HeatmapGrid grid;
    if (!calendar.startOf(range.first))
        return grid;
    for (auto date = range.first.addDays(-daysSinceSunday(range.first)); date <= today;) {
        auto &week = grid.emplace_back();
        for (auto &cell : week) {
            cell = cellOf(date, range, yearHistory, calendar);
            date = date.addDays(1);
        }
    }
    return grid;
}

const DayCell &cellAt(const HeatmapGrid &grid, int index)
{
    const auto position = static_cast<std::size_t>(index);
    return grid.at(position / daysOfWeek).at(position % daysOfWeek);
}

int cellCount(const HeatmapGrid &grid)
{
    return static_cast<int>(grid.size()) * daysOfWeek;
}

std::optional<int> nextInRange(const HeatmapGrid &grid, int index, int step)
{
    for (auto next = index + step; next >= 0 && next < cellCount(grid); next += step) {
        if (cellAt(grid, next).isInRange)
            return next;
    }
    return std::nullopt;
}

std::optional<int> todayIndex(const HeatmapGrid &grid)
{
    return nextInRange(grid, cellCount(grid), -1);
}

int countBand(qint64 count)
{
    if (count < 0)
        return 4;
    constexpr std::array<qint64, 4> highest{0, 2, 5, 10};
    const auto *const band = std::lower_bound(highest.begin(), highest.end(), count);
    return int(band - highest.begin());
}

QList<MonthLabel> monthLabels(const HeatmapGrid &grid, const Calendar &calendar, const DateTexts &texts)
{
    QList<MonthLabel> labels;
    int lastMonth = -1;
    for (std::size_t index = 0; index < grid.size(); ++index) {
        const auto &week = grid.at(index);
        const auto *const first = std::ranges::find_if(week, &DayCell::isInRange);
        if (first == week.end())
            continue;
        const auto month = calendar.dateOf(first->date).month();
        if (month != lastMonth)
            labels.append({texts.month(first->date), static_cast<int>(index)});
        lastMonth = month;
    }
    return labels;
}

QString toolTipOf(const DayCell &cell, const DateTexts &texts)
{
    if (!cell.isInRange)
        return {};
    const auto words = cell.count == 1 ? QCoreApplication::translate("YearHeatmapView", "%1: %2 commit")
                                       : QCoreApplication::translate("YearHeatmapView", "%1: %2 commits");
    return words.arg(texts.mediumDate(cell.date), QString::number(cell.count));
}

}  // namespace velquarin
