// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/DateTexts.h"

#include <unicode/reldatefmt.h>
#include <unicode/unistr.h>

#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace velquarin {

namespace {

using Unit = CalendarSpan::Unit;

// What clocks and calendars on the wall show.
struct WallTime
{
    QDate date;
    QTime time;
};

WallTime wallTime(Instant moment, const Calendar &calendar)
{
    return {calendar.dateOf(moment), calendar.timeOf(moment)};
}

qint64 wholeDays(const WallTime &from, const WallTime &to)
{
    const auto days = from.date.daysTo(to.date);
    return to.time < from.time ? days - 1 : days;
}

// A month has passed once its day and time of day come again, or its last day where there is no such day.
qint64 wholeMonths(const WallTime &from, const WallTime &to)
{
    const auto months = (to.date.year() - from.date.year()) * 12 + to.date.month() - from.date.month();
    const WallTime again{from.date.addMonths(months), from.time};
    return wholeDays(again, to) < 0 ? months - 1 : months;
}

CalendarSpan spanWithinADay(Instant from, Instant to)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(to - from).count();
    if (seconds >= 3600)
        return {Unit::Hours, seconds / 3600};
    if (seconds >= 60)
        return {Unit::Minutes, seconds / 60};
    return {Unit::Seconds, seconds};
}

URelativeDateTimeUnit icuUnit(Unit unit)
{
    switch (unit) {
    case Unit::Years:
        return UDAT_REL_UNIT_YEAR;
    case Unit::Months:
        return UDAT_REL_UNIT_MONTH;
    case Unit::Weeks:
        return UDAT_REL_UNIT_WEEK;
    case Unit::Days:
        return UDAT_REL_UNIT_DAY;
    case Unit::Hours:
        return UDAT_REL_UNIT_HOUR;
    case Unit::Minutes:
        return UDAT_REL_UNIT_MINUTE;
    case Unit::Seconds:
        break;
    }
    return UDAT_REL_UNIT_SECOND;
}

QByteArray languageAndRegion(const QString &variable)
{
    const auto end = variable.indexOf(QRegularExpression(QStringLiteral("[.@]")));
    return variable.left(end).toLatin1();
}

// ICU separates some parts with a narrow no-break space that many fonts lack.
QString plainText(const icu::UnicodeString &text)
{
    return QString::fromUtf16(text.getBuffer(), text.length()).replace(QChar(0x202f), QLatin1Char(' '));
}

}  // namespace

QByteArray dateLocale(const QProcessEnvironment &environment)
{
    QString chosen;
    for (const auto &variable : {QStringLiteral("LC_ALL"), QStringLiteral("LC_TIME"), QStringLiteral("LANG")}) {
        if (chosen.isEmpty())
            chosen = environment.value(variable);
    }
    const auto name = languageAndRegion(chosen);
    const bool isNeutral = name.isEmpty() || name == "C" || name == "POSIX";
    return isNeutral ? QByteArrayLiteral("en_US") : name;
}

CalendarSpan calendarSpan(Instant left, Instant right, const Calendar &calendar)
{
    const auto [from, to] = std::minmax({left, right});
    const auto wallFrom = wallTime(from, calendar);
    const auto wallTo = wallTime(to, calendar);
    if (const auto months = wholeMonths(wallFrom, wallTo); months >= 12)
        return {Unit::Years, months / 12};
    else if (months >= 1)
        return {Unit::Months, months};
    if (const auto days = wholeDays(wallFrom, wallTo); days >= 7)
        return {Unit::Weeks, days / 7};
    else if (days >= 1)
        return {Unit::Days, days};
    return spanWithinADay(from, to);
}

struct DateTexts::Formats
{
    UErrorCode status = U_ZERO_ERROR;
    icu::RelativeDateTimeFormatter relative;

    explicit Formats(const icu::Locale &locale)
        : relative(locale, nullptr, UDAT_STYLE_SHORT, UDISPCTX_CAPITALIZATION_NONE, status)
    {
    }
};

DateTexts::DateTexts(const QByteArray &locale, Calendar calendar)
    : m_calendar(std::move(calendar))
    , m_formats(std::make_unique<Formats>(icu::Locale(locale.constData())))
{
}

DateTexts::~DateTexts() = default;

QString DateTexts::relative(Instant moment, Instant now) const
{
    const auto span = calendarSpan(moment, now, m_calendar);
    // A negative zero is what ICU calls "0 sec. ago"; a positive one would be "in 0 sec.".
    const auto distance = moment > now ? double(span.count) : -double(span.count);
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text;
    m_formats->relative.formatNumeric(distance, icuUnit(span.unit), text, status);
    return plainText(text);
}

}  // namespace velquarin
