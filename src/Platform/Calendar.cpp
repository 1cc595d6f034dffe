// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Calendar.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

// More different days than any honest history has; whoever invents more shall not fill the memory with them.
constexpr std::size_t mostRemembered = 36'525;

template <typename Starts, typename LookUp>
auto remembered(Starts &starts, qint64 key, LookUp lookUp)
{
    if (const auto found = starts.find(key); found != starts.end())
        return found->second;
    if (starts.size() >= mostRemembered)
        starts.clear();
    return starts.emplace(key, lookUp()).first->second;
}

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

class QtZone : public Zone
{
public:
    explicit QtZone(const QTimeZone &zone)
        : m_zone(zone)
    {
    }
    [[nodiscard]] std::chrono::seconds offsetAt(Instant moment) const override
    {
        return std::chrono::seconds(m_zone.offsetFromUtc(utc(moment)));
    }

private:
    QTimeZone m_zone;
};

}  // namespace

Calendar::Calendar(std::shared_ptr<const Zone> zone)
    : m_zone(std::move(zone))
{
}

Calendar::Calendar(const QTimeZone &zone)
    : Calendar(std::make_shared<QtZone>(zone))
{
}

milliseconds Calendar::offsetAt(Instant moment) const
{
    return m_zone->offsetAt(moment);
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
    return endOfGapOver(date);
}

// Midnight was skipped: the day starts where the clocks went on, if that is still the same day.
std::optional<Instant> Calendar::endOfGapOver(QDate date) const
{
    auto before = midnightInUtc(date) - 2 * day;
    auto after = before + 4 * day;
    while (after - before > 1ms) {
        const auto middle = before + (after - before) / 2;
        (dateOf(middle) < date ? before : after) = middle;
    }
    return dateOf(after) == date ? std::optional(after) : std::nullopt;
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

std::chrono::milliseconds untilNextDay(Instant now, const Calendar &calendar)
{
    const auto today = calendar.startOfDay(now);
    // A zone that changed sides of the date line left a day out: the one after it comes next.
    for (const qint64 step : {1, 2}) {
        const auto next = calendar.addDays(today, step);
        if (next && *next > now)
            return *next - now;
    }
    return day;
}

DayStarts::DayStarts(Calendar calendar)
    : m_calendar(std::move(calendar))
{
}

std::optional<Instant> DayStarts::startOf(QDate date)
{
    return remembered(m_byDate, date.toJulianDay(), [&] {
        ++m_lookUps;
        return m_calendar.startOf(date);
    });
}

Instant DayStarts::startOfDay(Instant moment)
{
    return remembered(m_byMoment, moment.time_since_epoch().count(), [&] {
        ++m_lookUps;
        return m_calendar.startOfDay(moment);
    });
}

}  // namespace velquarin
