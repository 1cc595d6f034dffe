// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/GitLog.h"

#include "Services/DayStarts.h"

#include <charconv>

namespace velquarin {

namespace {

constexpr qsizetype shortestDate = 10;  // 2024-03-07

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
    // The toolkit takes the year 0 for an error, and so do we: there was none.
    return year && month && day ? QDate(*year, *month, *day) : QDate();
}

// Turns lines into days. A log is mostly runs of equal lines: each run is read once.
class DayReader
{
public:
    explicit DayReader(DayStarts &starts)
        : m_starts(starts)
    {
    }

    std::optional<Instant> read(QByteArrayView line)
    {
        if (line != m_line || m_line.isNull()) {
            m_line = line;
            m_day = m_starts.startOf(dateFromText(line));
        }
        return m_day;
    }

private:
    DayStarts &m_starts;
    QByteArrayView m_line;
    std::optional<Instant> m_day;
};

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

QList<Instant> daysFromLog(QByteArrayView log, DayStarts &starts)
{
    QList<Instant> days;
    days.reserve(log.size() / (shortestDate + 1) + 1);
    DayReader reader(starts);
    while (!log.isEmpty()) {
        const auto end = log.indexOf('\n');
        const auto line = end < 0 ? log : log.first(end);
        if (const auto day = line.size() < shortestDate ? std::nullopt : reader.read(line))
            days.append(*day);
        log = end < 0 ? QByteArrayView() : log.sliced(end + 1);
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
    // Not the toolkit's own text: it has none for years beyond 9999.
    const auto date = Calendar(QTimeZone::utc()).dateOf(moment);
    return QString::asprintf("%04d-%02d-%02d", date.year(), date.month(), date.day());
}

}  // namespace velquarin
