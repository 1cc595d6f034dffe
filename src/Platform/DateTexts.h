// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>

#include <memory>

namespace velquarin {

//! The locale that dates are written in: the first non-empty of LC_ALL, LC_TIME and LANG, without its encoding and
//! modifier; "en_US" where that is nothing, C or POSIX.
//! Source: locale(7)
[[nodiscard]] QByteArray dateLocale(const QProcessEnvironment &environment);

//! The same for this process, from its environment.
[[nodiscard]] QByteArray environmentLocale();

//! A span between two moments in the largest calendar unit that fits, truncated: 25 hours are 1 day, 13 days 1 week.
struct CalendarSpan
{
    enum class Unit { Years, Months, Weeks, Days, Hours, Minutes, Seconds };
    Unit unit = Unit::Seconds;
    qint64 count = 0;  //!< never negative
    friend bool operator==(const CalendarSpan &, const CalendarSpan &) = default;
};

//! The span from one moment to another, whichever comes first, by the calendar of @p calendar.
[[nodiscard]] CalendarSpan calendarSpan(Instant left, Instant right, const Calendar &calendar);

//! Dates in the user's words. Making one costs far more than using it: keep it while locale and zone stay the same.
//! Main thread only.
class DateTexts
{
public:
    DateTexts(const QByteArray &locale, Calendar calendar);
    ~DateTexts();
    DateTexts(const DateTexts &) = delete;
    DateTexts &operator=(const DateTexts &) = delete;

    //! How far @p moment is from @p now, abbreviated and in figures: "2 hr. ago", "1 day ago", "in 6 days".
    [[nodiscard]] QString relative(Instant moment, Instant now) const;

    //! A span in its two largest units, abbreviated: "2 min, 13 sec", "1 hr, 5 min", "0 sec". Days last 24 hours here.
    [[nodiscard]] QString elapsed(std::chrono::milliseconds span) const;

    //! The abbreviated name of the weekday: "Fri".
    [[nodiscard]] QString weekday(Instant moment) const;

    //! The abbreviated name of the month: "Mar".
    [[nodiscard]] QString month(Instant moment) const;

    //! The date in medium length: "Mar 3, 2025".
    [[nodiscard]] QString mediumDate(Instant moment) const;

    //! The time of day without seconds: "9:41 PM".
    [[nodiscard]] QString shortTime(Instant moment) const;

private:
    struct Formats;

    Calendar m_calendar;
    std::unique_ptr<Formats> m_formats;  // ICU stays out of everybody else's includes
};

}  // namespace velquarin
