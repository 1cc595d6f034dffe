// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Interface.h"

#include <QDate>
#include <QTime>
#include <QTimeZone>

#include <chrono>
#include <memory>
#include <optional>
#include <unordered_map>

namespace velquarin {

//! What makes a date and time of Qt one in Greenwich: newer versions no longer take the name of the older.
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
constexpr auto universalTime = Qt::UTC;
#else
constexpr auto universalTime = QTimeZone::UTC;
#endif

//! A moment, the same everywhere on earth.
//! Units: milliseconds since 1970-01-01T00:00Z.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

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
