// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"

#include <optional>
#include <unordered_map>

namespace velquarin {

//! The starts of days in one calendar, each of them looked up once: that takes a microsecond or two, and a refresh asks
//! for the same few hundred days over and over.
class DayStarts
{
public:
    explicit DayStarts(Calendar calendar);

    [[nodiscard]] const Calendar &calendar() const { return m_calendar; }

    //! As the calendar says.
    [[nodiscard]] std::optional<Instant> startOf(QDate date);
    [[nodiscard]] Instant startOfDay(Instant moment);

    //! How many answers were not remembered.
    [[nodiscard]] qint64 lookUps() const { return m_lookUps; }

private:
    Calendar m_calendar;
    std::unordered_map<qint64, std::optional<Instant>> m_byDate;  // by Julian day
    std::unordered_map<qint64, Instant> m_byMoment;               // by milliseconds
    qint64 m_lookUps = 0;
};

}  // namespace velquarin
