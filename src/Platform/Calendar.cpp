// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Calendar.h"

#include "Platform/UniversalTime.h"

#include <QDateTime>

#include <algorithm>

namespace velquarin {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

constexpr auto day = milliseconds(24h);

// Beyond this an instant or its offset arithmetic could overflow; it is far outside of what git prints.
constexpr qint64 largestYear = 200'000'000;

const QDate epoch(1970, 1, 1);

QDateTime utc(Instant moment)
{
    return QDateTime::fromMSecsSinceEpoch(moment.time_since_epoch().count(), universalTime);
}

// What clocks in Greenwich read at midnight of that date.
Instant midnightInUtc(QDate date)
{
    return Instant(day * epoch.daysTo(date));
}

}  // namespace

Calendar::Calendar(const QTimeZone &zone)
    : m_zone(zone)
{
}

milliseconds Calendar::offsetAt(Instant moment) const
{
    return std::chrono::seconds(m_zone.offsetFromUtc(utc(moment)));
}

QDate Calendar::dateOf(Instant moment) const
{
    return utc(moment + offsetAt(moment)).date();
}

QTime Calendar::timeOf(Instant moment) const
{
    return utc(moment + offsetAt(moment)).time();
}

std::optional<Instant> Calendar::startOf(QDate date) const
{
    if (!date.isValid() || std::abs(qint64(date.year())) > largestYear)
        return std::nullopt;
    const auto wallMidnight = midnightInUtc(date);
    const auto offsetBefore = offsetAt(wallMidnight - day);
    const auto offsetAfter = offsetAt(wallMidnight + day);
    // The larger offset gives the earlier instant: of a midnight that comes twice the first one counts.
    for (const auto offset : {std::max(offsetBefore, offsetAfter), std::min(offsetBefore, offsetAfter)}) {
        const auto candidate = wallMidnight - offset;
        if (offsetAt(candidate) == offset)
            return candidate;
    }
    return endOfGapOver(wallMidnight, date);
}

// Midnight was skipped: the day starts where the clocks went on, if that is still the same day.
std::optional<Instant> Calendar::endOfGapOver(Instant wallTime, QDate date) const
{
    const auto transitions = m_zone.transitions(utc(wallTime - 2 * day), utc(wallTime + 2 * day));
    for (const auto &transition : transitions) {
        const Instant moment(milliseconds(transition.atUtc.toMSecsSinceEpoch()));
        if (dateOf(moment) == date && dateOf(moment - 1ms) < date)
            return moment;
    }
    return std::nullopt;
}

Instant Calendar::startOfDay(Instant moment) const
{
    // The date of a moment always has a start; the moment itself stands in beyond the range of dates.
    return startOf(dateOf(moment)).value_or(moment);
}

std::optional<Instant> Calendar::addDays(Instant moment, qint64 days) const
{
    const auto date = dateOf(moment);
    const auto target = date.addDays(days);
    const auto start = startOf(target);
    if (!start || moment == startOf(date))
        return start;
    return atTimeOfDay(target, milliseconds(timeOf(moment).msecsSinceStartOfDay()));
}

// A time that the clocks skip is read with the offset of before, which moves it forward by the length of the
// gap.
Instant Calendar::atTimeOfDay(QDate date, milliseconds sinceMidnight) const
{
    const auto wallTime = midnightInUtc(date) + sinceMidnight;
    const auto offsetBefore = offsetAt(wallTime - day);
    const auto candidate = wallTime - offsetBefore;
    const auto offsetThen = offsetAt(candidate);
    if (offsetThen == offsetBefore)
        return candidate;
    const auto shifted = wallTime - offsetThen;
    return offsetAt(shifted) == offsetThen ? shifted : candidate;
}

bool Calendar::isSameDay(Instant left, Instant right) const
{
    return dateOf(left) == dateOf(right);
}

}  // namespace velquarin
