// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Calendar.h"
#include "Services/Git/GitLog.h"
#include "Target.h"
#include "Zones.h"

#include <QRegularExpression>

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

// The day that a line names, read the slow way.
std::optional<Instant> dayOf(const QByteArray &line, const Calendar &calendar)
{
    static const QRegularExpression shape(QStringLiteral("\\A([0-9]{4,})-([0-9]{2})-([0-9]{2})\\z"));
    const auto match = shape.match(QString::fromLatin1(line));
    bool fits = false;
    const int year = match.captured(1).toInt(&fits);
    const QDate date =
        match.hasMatch() && fits ? QDate(year, match.captured(2).toInt(), match.captured(3).toInt()) : QDate();
    return date.isValid() ? calendar.startOf(date) : std::nullopt;
}

QList<Instant> daysTheSlowWay(const QByteArray &log, const Calendar &calendar)
{
    QList<Instant> days;
    for (const auto &line : log.split('\n')) {
        if (const auto day = dayOf(line, calendar))
            days << *day;
    }
    return days;
}

}  // namespace

// The first byte chooses the zone, the second where the log is cut in two.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    const auto &calendar = calendarFor(data[0]);
    const auto log = bytes(data + 2, size - 2);
    DayStarts starts(calendar);
    const auto days = daysFromLog(log, starts);
    require(days == daysTheSlowWay(log, calendar), "quick and slow reading agree");

    const auto cut = log.indexOf('\n', data[1] % (log.size() + 1)) + 1;
    require(days == daysFromLog(log.first(cut), starts) + daysFromLog(log.sliced(cut), starts),
            "a log read in two parts gives the same days");
    return 0;
}
