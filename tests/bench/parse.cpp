// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// A log of 200,000 days, made into counts a day: the program's way, which knows time zones, against the quickest plain way,
// which does not. Both in turns, once each for each line on standard input, which may ask for days that are "mixed";
// answers with the two times in milliseconds, or -1 where the counts are wrong.

#include "Platform/Calendar.h"
#include "Services/Git/GitLog.h"
#include "Services/Streak/MergedHistory.h"

#include <QElapsedTimer>
#include <QTimeZone>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <numeric>
#include <random>

using namespace velquarin;

namespace {

constexpr int commits = 200'000;
constexpr int days = 730;
const QDate newest(2026, 11, 20);

// The line of each commit, newest first.
QList<QByteArray> makeLines()
{
    QList<QByteArray> lines;
    for (int commit = 0; commit < commits; ++commit)
        lines += newest.addDays(-qint64(commit) * days / commits).toString(Qt::ISODate).toLatin1() + '\n';
    return lines;
}

QByteArray mixed(QList<QByteArray> lines)
{
    std::ranges::shuffle(lines, std::mt19937(1));
    return lines.join(QByteArray());
}

struct Counted
{
    qint64 days = 0;
    qint64 commits = 0;
    friend bool operator==(const Counted &, const Counted &) = default;
};

Counted countedByTheProgram(const QByteArray &log, DayStarts &starts)
{
    MergedHistory history(starts.calendar(), starts.startOf(newest).value());
    history.addCommits(daysFromLog(log, starts));
    const auto &year = history.year();
    return {qint64(year.size()), std::accumulate(year.begin(), year.end(), qint64(0))};
}

// Source: the civil calendar's arithmetic, with years that begin in March
int dayNumber(int year, int month, int day)
{
    const int marchYear = month > 2 ? year : year - 1;
    const int era = marchYear / 400;
    const int yearOfEra = marchYear - era * 400;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
}

int number(const char *begin, int length)
{
    int value = 0;
    std::from_chars(begin, begin + length, value);
    return value;
}

Counted countedPlainly(const QByteArray &log)
{
    constexpr int tableSize = 1024;
    constexpr qsizetype lineLength = 11;
    std::array<int, tableSize> counts{};
    const int last = dayNumber(newest.year(), newest.month(), newest.day());
    for (const char *line = log.data(); line < log.data() + log.size(); line += lineLength) {
        const int ago = last - dayNumber(number(line, 4), number(line + 5, 2), number(line + 8, 2));
        if (ago >= 0 && ago < tableSize)
            ++counts[std::size_t(ago)];
    }
    return {tableSize - std::ranges::count(counts, 0), std::accumulate(counts.begin(), counts.end(), qint64(0))};
}

template <typename Count>
double millisecondsOf(Count count)
{
    QElapsedTimer elapsed;
    elapsed.start();
    const auto counted = count();
    const auto time = double(elapsed.nsecsElapsed()) / 1e6;
    return counted == Counted{days, commits} ? time : -1;
}

}  // namespace

int main()
{
    const auto lines = makeLines();
    const auto inOrder = lines.join(QByteArray());
    const auto inDisorder = mixed(lines);
    const Calendar calendar(QTimeZone("Europe/Berlin"));
    std::string line;
    while (std::getline(std::cin, line)) {
        const auto &log = line == "mixed" ? inDisorder : inOrder;
        DayStarts starts(calendar);
        const auto own = millisecondsOf([&] { return countedByTheProgram(log, starts); });
        const auto plain = millisecondsOf([&] { return countedPlainly(log); });
        std::cout << own << ' ' << plain << std::endl;
    }
    return 0;
}
