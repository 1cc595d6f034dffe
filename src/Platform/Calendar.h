// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Instant.h"
#include "Platform/Interface.h"

#include <QDate>
#include <QTime>

#include <chrono>
#include <memory>
#include <optional>

class QTimeZone;

namespace velquarin {

//! How far ahead of Greenwich the clocks of a place are. Safe to ask from any thread.
class Zone : public Interface
{
public:
    [[nodiscard]] virtual std::chrono::seconds offsetAt(Instant moment) const = 0;
};

//! The Gregorian calendar in one time zone: turns instants into days and back.
//!
//! A day is named by the instant at which it starts. That is not always midnight: where clocks jump over
//! midnight the day starts after the jump, where midnight comes twice it starts at the earlier one, and a
//! date that a zone left out (Apia, 30 December 2011) has no start at all. Shape: a value, cheap to copy,
//! safe to use from any thread.
class Calendar
{
public:
    explicit Calendar(std::shared_ptr<const Zone> zone);
    explicit Calendar(const QTimeZone &zone);

    //! The calendar date and the wall-clock time that people here read at @p moment.
    [[nodiscard]] QDate dateOf(Instant moment) const;
    [[nodiscard]] QTime timeOf(Instant moment) const;

    //! The first moment of @p date; nothing where the zone has no such day or it lies beyond what an instant
    //! holds.
    [[nodiscard]] std::optional<Instant> startOf(QDate date) const;

    //! The first moment of the day that holds @p moment.
    [[nodiscard]] Instant startOfDay(Instant moment) const;

    //! @p moment moved by whole calendar days, which last 23 to 25 hours around a change of clocks.
    //! From the start of a day the result is the start of a day; from any other moment the time of day is
    //! kept, and moved forward where the clocks skip it. Nothing where the zone has no such day.
    [[nodiscard]] std::optional<Instant> addDays(Instant moment, qint64 days) const;

    //! Whether both moments lie on one calendar day, whatever the time of day.
    [[nodiscard]] bool isSameDay(Instant left, Instant right) const;

    //! Whether both are made of the same zone, not only of one that agrees with it.
    friend bool operator==(const Calendar &, const Calendar &) = default;

private:
    [[nodiscard]] std::chrono::milliseconds offsetAt(Instant moment) const;
    [[nodiscard]] std::optional<Instant> endOfGapOver(QDate date) const;
    [[nodiscard]] Instant atTimeOfDay(QDate date, std::chrono::milliseconds sinceMidnight) const;

    std::shared_ptr<const Zone> m_zone;
};

//! How long until the calendar day of @p now is over; always more than nothing.
[[nodiscard]] std::chrono::milliseconds untilNextDay(Instant now, const Calendar &calendar);

}  // namespace velquarin
