// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/DayStarts.h"

#include <utility>

namespace velquarin {

namespace {

// More different days than any honest history has; whoever invents more shall not fill the memory with them.
constexpr std::size_t most = 36'525;

template <typename Starts, typename LookUp>
auto remembered(Starts &starts, qint64 key, LookUp lookUp)
{
    if (const auto found = starts.find(key); found != starts.end())
        return found->second;
    if (starts.size() >= most)
        starts.clear();
    return starts.emplace(key, lookUp()).first->second;
}

}  // namespace

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
