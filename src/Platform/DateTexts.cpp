// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/DateTexts.h"

#include "Platform/Calendar.h"

#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/reldatefmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <QDateTime>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

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

// The same day so many months later, or the last day of that month where there is no such day. Years are counted apart:
// Qt steps through months one by one.
QDate monthsLater(QDate date, qint64 months)
{
    const auto month = QDate(date.year(), date.month(), 1).addYears(int(months / 12)).addMonths(int(months % 12));
    return {month.year(), month.month(), std::min(date.day(), month.daysInMonth())};
}

// A month has passed once its day and time of day come again.
qint64 wholeMonths(const WallTime &from, const WallTime &to)
{
    const auto years = qint64(to.date.year()) - from.date.year();
    const auto months = years * 12 + to.date.month() - from.date.month();
    const WallTime again{monthsLater(from.date, months), from.time};
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
    constexpr std::array units{UDAT_REL_UNIT_YEAR, UDAT_REL_UNIT_MONTH,  UDAT_REL_UNIT_WEEK,  UDAT_REL_UNIT_DAY,
                               UDAT_REL_UNIT_HOUR, UDAT_REL_UNIT_MINUTE, UDAT_REL_UNIT_SECOND};
    return units.at(std::size_t(unit));
}

QByteArray languageAndRegion(const QString &variable)
{
    const auto isEnd = [](QChar character) { return character == u'.' || character == u'@'; };
    const auto length = std::ranges::distance(variable.begin(), std::ranges::find_if(variable, isEnd));
    return variable.left(length).toLatin1();
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

QByteArray environmentLocale()
{
    return dateLocale(QProcessEnvironment::systemEnvironment());
}

CalendarSpan calendarSpan(Instant left, Instant right, const Calendar &calendar)
{
    const auto [from, to] = std::minmax({left, right});
    const auto wallFrom = wallTime(from, calendar);
    const auto wallTo = wallTime(to, calendar);
    const auto months = wholeMonths(wallFrom, wallTo);
    const auto days = wholeDays(wallFrom, wallTo);
    if (months >= 12)
        return {Unit::Years, months / 12};
    if (months >= 1)
        return {Unit::Months, months};
    if (days >= 7)
        return {Unit::Weeks, days / 7};
    return days >= 1 ? CalendarSpan{Unit::Days, days} : spanWithinADay(from, to);
}

struct DateTexts::Formats
{
    UErrorCode status = U_ZERO_ERROR;
    icu::RelativeDateTimeFormatter relative;
    icu::MeasureFormat elapsed;
    icu::SimpleDateFormat weekday;
    icu::SimpleDateFormat month;
    std::unique_ptr<icu::DateFormat> mediumDate;
    std::unique_ptr<icu::DateFormat> shortTime;

    explicit Formats(const icu::Locale &locale)
        : relative(locale, nullptr, UDAT_STYLE_SHORT, UDISPCTX_CAPITALIZATION_NONE, status)
        , elapsed(locale, UMEASFMT_WIDTH_SHORT, status)
        , weekday(icu::UnicodeString("EEE"), locale, status)
        , month(icu::UnicodeString("MMM"), locale, status)
        , mediumDate(icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, locale))
        , shortTime(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale))
    {
        for (icu::DateFormat *format : {static_cast<icu::DateFormat *>(&weekday),
                                        static_cast<icu::DateFormat *>(&month), mediumDate.get(), shortTime.get()})
            format->setTimeZone(*icu::TimeZone::getGMT());
    }
};

namespace {

// Days are found in the Gregorian calendar, and so they are called by it: in the calendar of some locales a month begins
// in the middle of ours.
icu::Locale gregorian(const QByteArray &name)
{
    icu::Locale locale(name.constData());
    UErrorCode status = U_ZERO_ERROR;
    locale.setKeywordValue("calendar", "gregorian", status);
    return locale;
}

// The moment at which clocks in Greenwich show what they show here at @p moment. ICU brings a list of zones of its own,
// which lacks some of the system's and may be older: it would call a day by another date than the calendar does.
UDate asInGreenwich(Instant moment, const Calendar &calendar)
{
    const auto wall = wallTime(moment, calendar);
    return static_cast<UDate>(QDateTime(wall.date, wall.time, universalTime).toMSecsSinceEpoch());
}

QString formatted(const icu::DateFormat &format, UDate moment)
{
    icu::UnicodeString text;
    format.format(moment, text);
    return plainText(text);
}

struct UnitLength
{
    qint64 seconds;
    icu::MeasureUnit *(*make)(UErrorCode &);
};

constexpr std::array unitLengths{
    UnitLength{86'400, icu::MeasureUnit::createDay},
    UnitLength{3'600, icu::MeasureUnit::createHour},
    UnitLength{60, icu::MeasureUnit::createMinute},
    UnitLength{1, icu::MeasureUnit::createSecond},
};

// The amount of a unit in a span, and of the next smaller one where there is any of it.
std::vector<icu::Measure> twoLargestUnits(qint64 seconds)
{
    std::vector<icu::Measure> measures;
    const auto *const largest = std::ranges::find_if(
        unitLengths, [seconds](const UnitLength &unit) { return seconds >= unit.seconds || unit.seconds == 1; });
    for (const auto *unit = largest; unit != unitLengths.end() && measures.size() < 2; ++unit) {
        UErrorCode status = U_ZERO_ERROR;
        if (seconds >= unit->seconds || measures.empty())
            measures.emplace_back(icu::Formattable(static_cast<int64_t>(seconds / unit->seconds)), unit->make(status),
                                  status);
        else
            break;
        seconds %= unit->seconds;
    }
    return measures;
}

}  // namespace

DateTexts::DateTexts(const QByteArray &locale, Calendar calendar)
    : m_calendar(std::move(calendar))
    , m_formats(std::make_unique<Formats>(gregorian(locale)))
{
}

DateTexts::~DateTexts() = default;

QString DateTexts::elapsed(std::chrono::milliseconds span) const
{
    const auto seconds = std::max(std::chrono::floor<std::chrono::seconds>(span).count(), std::int64_t(0));
    const auto measures = twoLargestUnits(seconds);
    UErrorCode status = U_ZERO_ERROR;
    icu::FieldPosition position;
    icu::UnicodeString text;
    m_formats->elapsed.formatMeasures(measures.data(), static_cast<int32_t>(measures.size()), text, position, status);
    return plainText(text);
}

QString DateTexts::weekday(Instant moment) const
{
    return formatted(m_formats->weekday, asInGreenwich(moment, m_calendar));
}

QString DateTexts::month(Instant moment) const
{
    return formatted(m_formats->month, asInGreenwich(moment, m_calendar));
}

QString DateTexts::mediumDate(Instant moment) const
{
    return formatted(*m_formats->mediumDate, asInGreenwich(moment, m_calendar));
}

QString DateTexts::shortTime(Instant moment) const
{
    return formatted(*m_formats->shortTime, asInGreenwich(moment, m_calendar));
}

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
