// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/StreakCalculation.h"
#include "Target.h"
#include "Zones.h"

#include <algorithm>
#include <vector>

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

// A stretch of dates, a flag each: whether there are commits. A date that the zone does not have has none.
class Stretch
{
public:
    Stretch(QDate first, std::vector<bool> flags, const Calendar &zone)
        : marks(std::move(flags))
        , calendar(zone)
        , m_first(first)
    {
        for (std::size_t index = 0; index < marks.size(); ++index)
            marks[index] = marks[index] && calendar.startOf(dateAt(index));
    }

    [[nodiscard]] QDate dateAt(std::size_t index) const { return m_first.addDays(qint64(index)); }

    std::vector<bool> marks;
    const Calendar &calendar;

private:
    QDate m_first;
};

std::set<Instant> datesOf(const Stretch &stretch)
{
    std::set<Instant> dates;
    for (std::size_t index = 0; index < stretch.marks.size(); ++index) {
        if (stretch.marks[index])
            dates.insert(*stretch.calendar.startOf(stretch.dateAt(index)));
    }
    return dates;
}

// The marks in a row up to and including that one.
qint64 rowUpTo(std::ptrdiff_t index, const Stretch &stretch)
{
    qint64 length = 0;
    for (; index >= 0 && stretch.marks[std::size_t(index)]; --index)
        ++length;
    return length;
}

// By counting marks; @p today is one of the stretch's dates, and a day that the zone has.
Streaks countedByHand(const Stretch &stretch, std::ptrdiff_t today)
{
    Streaks streaks;
    for (std::size_t index = 0; index < stretch.marks.size(); ++index)
        streaks.longest = std::max(streaks.longest, rowUpTo(std::ptrdiff_t(index), stretch));
    const bool isDoneToday = stretch.marks[std::size_t(today)];
    if (!isDoneToday && !stretch.calendar.startOf(stretch.dateAt(std::size_t(today)).addDays(-1)))
        return {};
    streaks.current = rowUpTo(isDoneToday ? today : today - 1, stretch);
    return streaks;
}

std::vector<bool> bitsOf(const std::uint8_t *data, std::size_t size)
{
    std::vector<bool> bits;
    for (std::size_t index = 0; index < size * 8; ++index)
        bits.push_back((data[index / 8] >> (index % 8) & 1) != 0);
    return bits;
}

}  // namespace

// The zone, which of the dates is today, the first of the dates in weeks since 2008, then a bit for each date.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t header = 4;
    constexpr std::size_t largest = 100;
    if (size <= header || size > largest)
        return 0;
    const int weeks = data[2] | data[3] << 8;
    const Stretch stretch(QDate(2008, 1, 1).addDays(7LL * (weeks % 1500)), bitsOf(data + header, size - header),
                          calendarFor(data[0]));
    const auto index = std::ptrdiff_t(data[1] % stretch.marks.size());
    const auto today = stretch.calendar.startOf(stretch.dateAt(std::size_t(index)));
    if (today)
        require(calculateStreakFromDates(datesOf(stretch), stretch.calendar, *today) == countedByHand(stretch, index),
                "the streaks are those counted by hand");
    return 0;
}
