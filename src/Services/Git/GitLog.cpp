// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitLog.h"

#include "Platform/Calendar.h"

#include <QTimeZone>

#include <charconv>
#include <cstring>

namespace velquarin {

namespace {

constexpr qsizetype shortestDate = 10;  // 2024-03-07

// The days of a century. Some look-ups take 15 us each, and a stranger's history may name millions of days.
constexpr qint64 mostDays = 36'525;

// The decimal number that fills the text, digits only; nothing for a sign, a blank or an overflow.
std::optional<int> number(QByteArrayView digits)
{
    int value = 0;
    const auto *const end = digits.data() + digits.size();
    if (digits.isEmpty() || digits.front() < '0' || digits.front() > '9')
        return std::nullopt;
    const auto [rest, error] = std::from_chars(digits.data(), end, value);
    return error == std::errc() && rest == end ? std::optional(value) : std::nullopt;
}

QDate dateFromText(QByteArrayView text)
{
    const auto yearLength = text.size() - 6;
    if (yearLength < 4 || text[yearLength] != '-' || text[yearLength + 3] != '-')
        return {};
    const auto year = number(text.first(yearLength));
    const auto month = number(text.sliced(yearLength + 1, 2));
    const auto day = number(text.last(2));
    // Qt takes the year 0 for an error, and so do we: there was none.
    return year && month && day ? QDate(*year, *month, *day) : QDate();
}

// With its line feed, where it has one.
QByteArrayView firstLine(QByteArrayView log)
{
    const auto end = log.indexOf('\n');
    return end < 0 ? log : log.first(end + 1);
}

// Years of four digits make all lines as long: a comparison of fixed length is several times as quick.
bool isNext(QByteArrayView line, const char *next)
{
    constexpr std::size_t usual = shortestDate + 1;
    return line.size() == usual ? std::memcmp(line.data(), next, usual) == 0
                                : std::memcmp(line.data(), next, std::size_t(line.size())) == 0;
}

// How often the log repeats its first line, that one included.
qsizetype timesInARow(QByteArrayView line, QByteArrayView log)
{
    qsizetype count = 1;
    while ((count + 1) * line.size() <= log.size() && isNext(line, log.data() + count * line.size()))
        ++count;
    return count;
}

std::optional<std::chrono::minutes> offsetFromText(QByteArrayView text)
{
    if (text == QByteArrayView("Z"))
        return std::chrono::minutes(0);
    if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || text[3] != ':')
        return std::nullopt;
    const auto hours = number(text.sliced(1, 2));
    const auto minutes = number(text.last(2));
    if (!hours || !minutes || *hours > 23 || *minutes > 59)
        return std::nullopt;
    const std::chrono::minutes offset(*hours * 60 + *minutes);
    return text[0] == '-' ? -offset : offset;
}

QTime timeFromText(QByteArrayView text)
{
    if (text.size() != 8 || text[2] != ':' || text[5] != ':')
        return {};
    const auto hours = number(text.first(2));
    const auto minutes = number(text.sliced(3, 2));
    const auto seconds = number(text.last(2));
    return hours && minutes && seconds ? QTime(*hours, *minutes, *seconds) : QTime();
}

}  // namespace

// A log is mostly runs of equal lines: each run is read once.
QList<Instant> daysFromLog(QByteArrayView log, DayStarts &starts)
{
    QList<Instant> days;
    days.reserve(log.size() / (shortestDate + 1) + 1);
    const auto lookUpsBefore = starts.lookUps();
    while (!log.isEmpty() && starts.lookUps() - lookUpsBefore < mostDays) {
        const auto line = firstLine(log);
        const auto count = timesInARow(line, log);
        const auto text = line.endsWith('\n') ? line.chopped(1) : line;
        if (const auto day = text.size() < shortestDate ? std::nullopt : starts.startOf(dateFromText(text)))
            days.insert(days.size(), count, *day);
        log = log.sliced(count * line.size());
    }
    return days;
}

std::optional<Instant> instantFromIso(QByteArrayView text)
{
    const auto separator = text.indexOf('T');
    const auto timeLength = 8;
    if (separator < shortestDate || text.size() < separator + 1 + timeLength)
        return std::nullopt;
    const auto date = dateFromText(text.first(separator));
    const auto time = timeFromText(text.sliced(separator + 1, timeLength));
    const auto offset = offsetFromText(text.sliced(separator + 1 + timeLength));
    const auto dayStart = Calendar(QTimeZone::utc()).startOf(date);
    if (!dayStart || !time.isValid() || !offset)
        return std::nullopt;
    return *dayStart + std::chrono::milliseconds(time.msecsSinceStartOfDay()) - *offset;
}

QString isoDateAtGreenwich(Instant moment)
{
    // Not Qt's own text: it has none for years beyond 9999.
    const auto date = Calendar(QTimeZone::utc()).dateOf(moment);
    return QString::asprintf("%04d-%02d-%02d", date.year(), date.month(), date.day());
}

}  // namespace velquarin
