// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/YearFormats.h"

#include "Console/StreakReport.h"
#include "Platform/DateTexts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <array>

namespace velquarin {

namespace {

constexpr int versionOfJson = 1;
constexpr int daysOfWeek = 7;
constexpr int marginWidth = 4;  // "Mon "
constexpr std::array<const char *, daysOfWeek> marginTexts{"", "Mon", "", "Wed", "", "Fri", ""};

// The weeks that fit, the newest ones, and how wide each is: square where there is room.
struct Extent
{
    int firstWeek = 0;
    int weeks = 0;
    int cellWidth = 1;
};

Extent extentIn(const YearOfSquares &year, int columns)
{
    const auto all = int(year.grid.size());
    const auto room = std::max(columns - marginWidth, 1);
    const int cellWidth = room >= 2 * all ? 2 : 1;
    const auto weeks = std::min(all, room / cellWidth);
    return {all - weeks, weeks, cellWidth};
}

QString charactersOfBands(bool hasUnicode)
{
    return hasUnicode ? QStringLiteral("·░▒▓█") : QStringLiteral(".-+*#");
}

// A name that would run into the next one, or over the edge, is left out.
QString monthLine(const YearOfSquares &year, const Extent &extent)
{
    auto end = extent.weeks * extent.cellWidth;
    QString line(end, u' ');
    for (auto index = year.months.size() - 1; index >= 0; --index) {
        const auto &month = year.months.at(index);
        const auto column = (month.weekIndex - extent.firstWeek) * extent.cellWidth;
        const auto width = int(month.text.size());
        if (column < 0 || column + width > end)
            continue;
        line.replace(column, width, month.text);
        end = column - 1;
    }
    return QString(marginWidth, u' ') + line;
}

// Of the terminal's own colours, so that they suit its ground: the one for what is of little weight, and its green.
QString paint(int band)
{
    return band == 0 ? QStringLiteral("\x1b[90m") : QStringLiteral("\x1b[32m");
}

QString weekdayLine(const YearOfSquares &year, const Extent &extent, int weekday, const Terminal &terminal)
{
    const auto characters = charactersOfBands(terminal.hasUnicode);
    auto line = QString::fromLatin1(marginTexts.at(std::size_t(weekday))).leftJustified(marginWidth);
    QString painted;
    for (int week = 0; week < extent.weeks; ++week) {
        const auto &cell = cellAt(year.grid, (extent.firstWeek + week) * daysOfWeek + weekday);
        const auto band = countBand(cell.count);
        const auto color = terminal.hasColors && cell.isInRange ? paint(band) : painted;
        if (color != painted)
            line += color;
        painted = color;
        line += QString(extent.cellWidth, cell.isInRange ? characters.at(band) : u' ');
    }
    return painted.isEmpty() ? line : line + QStringLiteral("\x1b[0m");
}

QString legend(const Terminal &terminal)
{
    QStringList bands;
    const auto characters = charactersOfBands(terminal.hasUnicode);
    for (int band = 0; band < characters.size(); ++band) {
        const QString character(characters.at(band));
        bands += terminal.hasColors ? paint(band) + character + QStringLiteral("\x1b[0m") : character;
    }
    return QStringLiteral("less ") + bands.join(u' ') + QStringLiteral(" more");
}

// In a line where there is room, else in two.
QString totals(const YearOfSquares &year, int columns)
{
    const auto commits = counted(year.commits, "commit");
    const auto days = counted(year.activeDays, "active day");
    const auto separator = commits.size() + days.size() + 2 <= columns ? QStringLiteral(", ") : QStringLiteral("\n");
    return commits + separator + days;
}

QJsonValue jsonOf(const DayCell &cell, const Calendar &calendar)
{
    if (!cell.isInRange)
        return {};
    return QJsonObject{{QStringLiteral("date"), calendar.dateOf(cell.date).toString(Qt::ISODate)},
                       {QStringLiteral("commits"), cell.count},
                       {QStringLiteral("band"), countBand(cell.count)}};
}

QJsonValue dateAt(const YearOfSquares &year, std::optional<int> index)
{
    if (!index)
        return {};
    return year.calendar.dateOf(cellAt(year.grid, *index).date).toString(Qt::ISODate);
}

}  // namespace

Terminal terminalIn(const QProcessEnvironment &environment, std::optional<int> columns)
{
    QString locale;
    for (const auto &variable : {QStringLiteral("LC_ALL"), QStringLiteral("LC_CTYPE"), QStringLiteral("LANG")}) {
        if (locale.isEmpty())
            locale = environment.value(variable);
    }
    const bool isUtf8 = locale.contains(QLatin1String("UTF-8"), Qt::CaseInsensitive) ||
                        locale.contains(QLatin1String("utf8"), Qt::CaseInsensitive);
    const auto kind = environment.value(QStringLiteral("TERM"));
    const bool isPlain =
        !environment.value(QStringLiteral("NO_COLOR")).isEmpty() || kind.isEmpty() || kind == QLatin1String("dumb");
    return {columns.value_or(Terminal().columns), columns && !isPlain, isUtf8};
}

YearOfSquares yearOf(const StreakReport &report, const Calendar &calendar, Instant now)
{
    const DateTexts texts("en_US", calendar);
    YearOfSquares year{gridData(dayCounts(report, calendar), calendar, now), {}, calendar};
    year.months = monthLabels(year.grid, calendar, texts);
    for (int index = 0; index < cellCount(year.grid); ++index) {
        const auto count = std::max(cellAt(year.grid, index).count, qint64(0));
        year.commits += count;
        year.activeDays += count > 0 ? 1 : 0;
    }
    return year;
}

QString yearText(const YearOfSquares &year, const Terminal &terminal)
{
    const auto extent = extentIn(year, terminal.columns);
    QStringList lines(monthLine(year, extent));
    for (int weekday = 0; weekday < daysOfWeek; ++weekday)
        lines += weekdayLine(year, extent, weekday, terminal);
    lines += {QString(), totals(year, terminal.columns), legend(terminal)};
    return lines.join(u'\n') + u'\n';
}

QByteArray yearJson(const YearOfSquares &year)
{
    QJsonArray weeks;
    for (const auto &week : year.grid) {
        QJsonArray days;
        for (const auto &cell : week)
            days.append(jsonOf(cell, year.calendar));
        weeks.append(days);
    }
    const QJsonObject object{{QStringLiteral("version"), versionOfJson},
                             {QStringLiteral("from"), dateAt(year, nextInRange(year.grid, -1, 1))},
                             {QStringLiteral("to"), dateAt(year, todayIndex(year.grid))},
                             {QStringLiteral("commits"), year.commits},
                             {QStringLiteral("activeDays"), year.activeDays},
                             {QStringLiteral("weeks"), weeks}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

}  // namespace velquarin
