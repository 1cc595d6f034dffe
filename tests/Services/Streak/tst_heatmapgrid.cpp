// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/HeatmapGrid.h"

#include "Platform/DateTexts.h"

#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

#include <initializer_list>

using namespace velquarin;
using namespace velquarin::test;

namespace {

struct CountOn
{
    const char *day;
    qint64 count;
};

QDate date(const char *text)
{
    return QDate::fromString(QLatin1String(text), Qt::ISODate);
}

DayCounts counts(std::initializer_list<CountOn> entries, const Calendar &calendar)
{
    DayCounts history;
    for (const auto &entry : entries)
        history[calendar.startOf(date(entry.day)).value()] = entry.count;
    return history;
}

QChar letter(const DayCell &cell)
{
    if (!cell.isInRange)
        return QLatin1Char('-');
    return cell.count == 0 ? QLatin1Char('.') : QString::number(cell.count).back();
}

// A line a weekday, Sunday first, and a letter a week: the count, a dot for none, a dash out of range.
QString picture(const HeatmapGrid &grid)
{
    QString text(QLatin1Char('\n'));
    for (std::size_t weekday = 0; weekday < 7; ++weekday) {
        for (const auto &week : grid)
            text += letter(week.at(weekday));
        text += QLatin1Char('\n');
    }
    return text;
}

void gridRow(const char *name, const char *zone, const char *now, std::initializer_list<CountOn> entries,
             const char *expected)
{
    QTest::newRow(name) << QByteArray(zone) << instant(now) << counts(entries, calendarIn(zone))
                        << QString::fromLatin1(expected);
}

HeatmapGrid emptyYear(const char *zone, QDate today)
{
    const auto calendar = calendarIn(zone);
    return gridData({}, calendar, calendar.startOf(today).value());
}

QStringList labelTexts(const QList<MonthLabel> &labels)
{
    QStringList texts;
    for (const auto &label : labels)
        texts.append(label.text + QLatin1Char('@') + QString::number(label.weekIndex));
    return texts;
}

QStringList labelsOn(const char *today, const char *locale = "en_US", const char *zone = "UTC")
{
    const auto calendar = calendarIn(zone);
    return labelTexts(monthLabels(emptyYear(zone, date(today)), calendar, DateTexts(locale, calendar)));
}

}  // namespace

Q_DECLARE_METATYPE(velquarin::Instant)

class TestHeatmapGrid : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void theGridOfAYear_data();
    void theGridOfAYear();
    void theFirstColumnBeginsWithAClearCellForEachDayBeforeTheOldest_data();
    void theFirstColumnBeginsWithAClearCellForEachDayBeforeTheOldest();
    void aSaturdayFillsTheLastColumn();
    void aSundayHasTheLastColumnForItself();
    void everyDayOfFiveYearsHasAGridOf371Cells_data();
    void everyDayOfFiveYearsHasAGridOf371Cells();
    void theCellOfALeftOutDayIsNamedByTheNextDay();
    void aYearWhoseOldestDayWasLeftOutHasNoGrid();
    void noCommitsLookTheSameWhetherNotedOrAbsent();
    void countsFallIntoFiveBands_data();
    void countsFallIntoFiveBands();
    void monthsAreLabelledWhereTheyFirstShow_data();
    void monthsAreLabelledWhereTheyFirstShow();
    void monthsAreNamedInTheUsersLanguage();
    void anEmptyGridHasNoLabelsAndNoToday();
    void aToolTipTellsDayAndCount_data();
    void aToolTipTellsDayAndCount();
    void aCellOutOfRangeTellsNothing();
    void todayIsTheLastCellInRange();
    void steppingStaysInRange();
    void steppingPassesOverALeftOutDay();
};

void TestHeatmapGrid::theGridOfAYear_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<Instant>("now");
    QTest::addColumn<DayCounts>("history");
    QTest::addColumn<QString>("expected");
    gridRow("today, a Sunday, leaves the days after it clear", "UTC", "2026-11-15T12:34:56Z",
            {{"2025-11-15", 9}, {"2025-11-16", 2}, {"2026-11-15", 5}, {"2026-11-16", 9}}, R"(
2...................................................5
....................................................-
....................................................-
....................................................-
....................................................-
....................................................-
....................................................-
)");

    gridRow("today, a Monday, leaves the days after it clear", "UTC", "2026-11-16T12:34:56Z",
            {{"2025-11-16", 9}, {"2025-11-17", 2}, {"2026-11-16", 5}, {"2026-11-17", 9}}, R"(
-....................................................
2...................................................5
....................................................-
....................................................-
....................................................-
....................................................-
....................................................-
)");

    gridRow("today, a Tuesday, leaves the days after it clear", "UTC", "2026-11-17T12:34:56Z",
            {{"2025-11-17", 9}, {"2025-11-18", 2}, {"2026-11-17", 5}, {"2026-11-18", 9}}, R"(
-....................................................
-....................................................
2...................................................5
....................................................-
....................................................-
....................................................-
....................................................-
)");

    gridRow("today, a Wednesday, leaves the days after it clear", "UTC", "2026-11-18T12:34:56Z",
            {{"2025-11-18", 9}, {"2025-11-19", 2}, {"2026-11-18", 5}, {"2026-11-19", 9}}, R"(
-....................................................
-....................................................
-....................................................
2...................................................5
....................................................-
....................................................-
....................................................-
)");

    gridRow("today, a Thursday, leaves the days after it clear", "UTC", "2026-11-19T12:34:56Z",
            {{"2025-11-19", 9}, {"2025-11-20", 2}, {"2026-11-19", 5}, {"2026-11-20", 9}}, R"(
-....................................................
-....................................................
-....................................................
-....................................................
2...................................................5
....................................................-
....................................................-
)");

    gridRow("today, a Friday, leaves the days after it clear", "UTC", "2026-11-20T12:34:56Z",
            {{"2025-11-20", 9}, {"2025-11-21", 2}, {"2026-11-20", 5}, {"2026-11-21", 9}}, R"(
-....................................................
-....................................................
-....................................................
-....................................................
-....................................................
2...................................................5
....................................................-
)");

    gridRow("today, a Saturday, fills the last week", "UTC", "2026-11-21T12:34:56Z",
            {{"2025-11-21", 9}, {"2025-11-22", 2}, {"2026-11-21", 5}, {"2026-11-22", 9}}, R"(
-....................................................
-....................................................
-....................................................
-....................................................
-....................................................
-....................................................
2...................................................5
)");

    gridRow("on 29 February the year begins on 1 March", "UTC", "2024-02-29T12:00:00Z",
            {{"2023-02-28", 9}, {"2023-03-01", 1}, {"2024-02-29", 3}}, R"(
-....................................................
-....................................................
-....................................................
-....................................................
....................................................3
....................................................-
....................................................-
)");

    gridRow("29 February is one of the 365 days before 1 March", "UTC", "2024-03-01T12:00:00Z",
            {{"2023-03-02", 9}, {"2023-03-03", 1}, {"2024-02-29", 4}}, R"(
-....................................................
-....................................................
-....................................................
-....................................................
-...................................................4
1....................................................
....................................................-
)");

    gridRow("a midnight that Sao Paulo skips leaves its day in place", "America/Sao_Paulo", "2018-11-07T12:00:00Z",
            {{"2018-11-03", 1}, {"2018-11-04", 2}, {"2018-11-05", 3}}, R"(
-...................................................2
-...................................................3
-....................................................
.....................................................
....................................................-
....................................................-
...................................................1-
)");

    gridRow("a midnight that Beirut skips leaves its day in place", "Asia/Beirut", "2018-03-28T12:00:00Z",
            {{"2018-03-24", 1}, {"2018-03-25", 2}, {"2018-03-26", 3}}, R"(
-...................................................2
-...................................................3
-....................................................
.....................................................
....................................................-
....................................................-
...................................................1-
)");

    gridRow("a midnight that Cairo skips leaves its day in place", "Africa/Cairo", "2024-04-29T12:00:00Z",
            {{"2024-04-25", 1}, {"2024-04-26", 2}, {"2024-04-27", 3}}, R"(
-....................................................
.....................................................
....................................................-
....................................................-
...................................................1-
...................................................2-
...................................................3-
)");

    gridRow("the Friday that Apia left out keeps its square, clear", "Pacific/Apia", "2012-01-02T00:00:00Z",
            {{"2011-12-29", 1}, {"2011-12-31", 2}}, R"(
-....................................................
.....................................................
....................................................-
....................................................-
...................................................1-
...................................................--
...................................................2-
)");

    gridRow("the first moment of a day belongs to it", "America/New_York", "2024-03-11T04:00:00Z",
            {{"2024-03-10", 1}, {"2024-03-11", 2}}, R"(
-...................................................1
....................................................2
....................................................-
....................................................-
....................................................-
....................................................-
....................................................-
)");

    gridRow("so does its last moment", "America/New_York", "2024-03-11T03:59:59.999Z",
            {{"2024-03-10", 1}, {"2024-03-11", 2}}, R"(
....................................................1
....................................................-
....................................................-
....................................................-
....................................................-
....................................................-
....................................................-
)");
}

void TestHeatmapGrid::theGridOfAYear()
{
    QFETCH(QByteArray, zone);
    QFETCH(Instant, now);
    QFETCH(DayCounts, history);
    QFETCH(QString, expected);
    QCOMPARE(picture(gridData(history, calendarIn(zone.constData()), now)), expected);
}

void TestHeatmapGrid::theFirstColumnBeginsWithAClearCellForEachDayBeforeTheOldest_data()
{
    QTest::addColumn<QDate>("today");
    QTest::addColumn<int>("clear");
    const auto row = [](const char *name, const char *today, int clear) {
        QTest::newRow(name) << date(today) << clear;
    };
    row("none before a Sunday", "2026-11-15", 0);
    row("one before a Monday", "2026-11-16", 1);
    row("two before a Tuesday", "2026-11-17", 2);
    row("three before a Wednesday", "2026-11-18", 3);
    row("four before a Thursday", "2026-11-19", 4);
    row("five before a Friday", "2026-11-20", 5);
    row("six before a Saturday", "2026-11-21", 6);
}

void TestHeatmapGrid::theFirstColumnBeginsWithAClearCellForEachDayBeforeTheOldest()
{
    QFETCH(QDate, today);
    QFETCH(int, clear);
    const auto grid = emptyYear("UTC", today);
    QCOMPARE(nextInRange(grid, -1, 1), clear);
    QCOMPARE(cellAt(grid, clear).date, calendarIn("UTC").startOf(today.addDays(-364)));
}

void TestHeatmapGrid::aSaturdayFillsTheLastColumn()
{
    const auto week = emptyYear("UTC", date("2026-11-21")).back();
    QCOMPARE(std::ranges::count(week, true, &DayCell::isInRange), 7);
}

void TestHeatmapGrid::aSundayHasTheLastColumnForItself()
{
    const auto week = emptyYear("UTC", date("2026-11-15")).back();
    QVERIFY(week.front().isInRange);
    QCOMPARE(std::ranges::count(week, true, &DayCell::isInRange), 1);
    QCOMPARE(std::ranges::count(week, qint64(-1), &DayCell::count), 6);
}

void TestHeatmapGrid::everyDayOfFiveYearsHasAGridOf371Cells_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<int>("missingDays");
    QTest::newRow("in UTC") << QByteArray("UTC") << 0;
    QTest::newRow("where midnights are skipped") << QByteArray("America/Sao_Paulo") << 0;
    QTest::newRow("where midnights come twice") << QByteArray("America/Havana") << 0;
    QTest::newRow("where a day was left out") << QByteArray("Pacific/Apia") << 1;
}

void TestHeatmapGrid::everyDayOfFiveYearsHasAGridOf371Cells()
{
    QFETCH(QByteArray, zone);
    QFETCH(int, missingDays);
    const auto calendar = calendarIn(zone.constData());
    const auto leftOut = date("2011-12-30");
    for (auto today = date("2010-01-01"); today < date("2015-01-01"); today = today.addDays(13)) {
        const auto oldest = calendar.startOf(today.addDays(-364));
        const auto start = calendar.startOf(today);
        if (!oldest || !start)
            continue;
        const auto grid = gridData({}, calendar, *start);
        const bool holdsIt = today.addDays(-364) <= leftOut && leftOut <= today;
        qsizetype inRange = 0;
        for (const auto &week : grid)
            inRange += std::ranges::count(week, true, &DayCell::isInRange);
        QCOMPARE(cellCount(grid), 371);
        QCOMPARE(inRange, 365 - (holdsIt ? missingDays : 0));
        QCOMPARE(calendar.dateOf(cellAt(grid, 0).date).dayOfWeek(), int(Qt::Sunday));
    }
}

void TestHeatmapGrid::theCellOfALeftOutDayIsNamedByTheNextDay()
{
    const auto grid = emptyYear("Pacific/Apia", date("2012-01-02"));
    const auto &friday = grid.at(51).at(5);
    QCOMPARE(friday, (DayCell{instant("2011-12-30T10:00:00Z"), -1, false}));
    QCOMPARE(grid.at(51).at(6).date, friday.date);
}

void TestHeatmapGrid::aYearWhoseOldestDayWasLeftOutHasNoGrid()
{
    const auto dayBefore = date("2012-12-28");
    QVERIFY(emptyYear("Pacific/Apia", dayBefore).empty());
    QCOMPARE(cellCount(emptyYear("Pacific/Apia", dayBefore.addDays(1))), 371);
    QCOMPARE(cellCount(emptyYear("Pacific/Apia", dayBefore.addDays(-1))), 371);
}

void TestHeatmapGrid::noCommitsLookTheSameWhetherNotedOrAbsent()
{
    const auto calendar = calendarIn("UTC");
    const auto now = instant("2026-11-20T12:00:00Z");
    const auto grid = gridData(counts({{"2026-11-19", 0}}, calendar), calendar, now);
    QCOMPARE(grid, gridData({}, calendar, now));
    const auto &noted = grid.back().at(4);
    QCOMPARE(noted.date, calendar.startOf(date("2026-11-19")));
    QCOMPARE(countBand(noted.count), 0);
}

void TestHeatmapGrid::countsFallIntoFiveBands_data()
{
    QTest::addColumn<qint64>("count");
    QTest::addColumn<int>("band");
    QTest::newRow("none") << qint64(0) << 0;
    QTest::newRow("one") << qint64(1) << 1;
    QTest::newRow("two") << qint64(2) << 1;
    QTest::newRow("three") << qint64(3) << 2;
    QTest::newRow("five") << qint64(5) << 2;
    QTest::newRow("six") << qint64(6) << 3;
    QTest::newRow("ten") << qint64(10) << 3;
    QTest::newRow("eleven") << qint64(11) << 4;
    QTest::newRow("a thousand") << qint64(1000) << 4;
    QTest::newRow("less than none") << qint64(-1) << 4;
}

void TestHeatmapGrid::countsFallIntoFiveBands()
{
    QFETCH(qint64, count);
    QTEST(countBand(count), "band");
}

void TestHeatmapGrid::monthsAreLabelledWhereTheyFirstShow_data()
{
    QTest::addColumn<QStringList>("labels");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const QStringList &labels, const char *expected) {
        QTest::newRow(name) << labels << QString::fromLatin1(expected).split(QLatin1Char(' '));
    };
    row("a month that begins in the middle of a week is labelled at the week after", labelsOn("2026-11-20"),
        "Nov@0 Dec@3 Jan@7 Feb@11 Mar@15 Apr@20 May@24 Jun@29 Jul@33 Aug@37 Sep@42 Oct@46 Nov@50");
    row("one that begins on a Sunday at its own", labelsOn("2026-02-01"),
        "Feb@0 Mar@4 Apr@9 May@13 Jun@17 Jul@22 Aug@26 Sep@31 Oct@35 Nov@39 Dec@44 Jan@48 Feb@52");
    row("a first month of a single day has a label, and the next one follows at once", labelsOn("2027-01-30"),
        "Jan@0 Feb@1 Mar@5 Apr@10 May@14 Jun@19 Jul@23 Aug@27 Sep@32 Oct@36 Nov@40 Dec@45 Jan@49");
    row("29 February ends a year of twelve labels", labelsOn("2024-02-29"),
        "Mar@0 Apr@5 May@10 Jun@14 Jul@18 Aug@23 Sep@27 Oct@31 Nov@36 Dec@40 Jan@45 Feb@49");
    row("a year with a day left out is labelled like any other", labelsOn("2012-01-02", "en_US", "Pacific/Apia"),
        "Jan@0 Feb@5 Mar@9 Apr@13 May@17 Jun@22 Jul@26 Aug@31 Sep@35 Oct@39 Nov@44 Dec@48 Jan@52");
}

void TestHeatmapGrid::monthsAreLabelledWhereTheyFirstShow()
{
    QFETCH(QStringList, labels);
    QFETCH(QStringList, expected);
    QCOMPARE(labels, expected);
}

void TestHeatmapGrid::monthsAreNamedInTheUsersLanguage()
{
    QCOMPARE(labelsOn("2026-03-20", "de_DE").mid(0, 3),
             QStringList({QStringLiteral("März@0"), QStringLiteral("Apr.@3"), QStringLiteral("Mai@7")}));
}

void TestHeatmapGrid::anEmptyGridHasNoLabelsAndNoToday()
{
    const auto calendar = calendarIn("UTC");
    QVERIFY(monthLabels({}, calendar, DateTexts("en_US", calendar)).isEmpty());
    QCOMPARE(todayIndex({}), std::nullopt);
    QCOMPARE(cellCount({}), 0);
}

void TestHeatmapGrid::aToolTipTellsDayAndCount_data()
{
    QTest::addColumn<QString>("day");
    QTest::addColumn<qint64>("count");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *day, qint64 count, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(day) << count << QString::fromLatin1(expected);
    };
    row("one commit is one commit", "2025-03-03", 1, "Mar 3, 2025: 1 commit");
    row("none are commits", "2025-03-04", 0, "Mar 4, 2025: 0 commits");
    row("two are commits", "2025-03-05", 2, "Mar 5, 2025: 2 commits");
    row("thousands stand without separators", "2025-12-31", 12345, "Dec 31, 2025: 12345 commits");
    row("less than none are commits", "2025-03-06", -1, "Mar 6, 2025: -1 commits");
}

void TestHeatmapGrid::aToolTipTellsDayAndCount()
{
    QFETCH(QString, day);
    QFETCH(qint64, count);
    QFETCH(QString, expected);
    const auto calendar = calendarIn("America/New_York");
    const auto start = calendar.startOf(QDate::fromString(day, Qt::ISODate)).value();
    QCOMPARE(toolTipOf({start, count, true}, DateTexts("en_US", calendar)), expected);
}

void TestHeatmapGrid::aCellOutOfRangeTellsNothing()
{
    const auto calendar = calendarIn("UTC");
    const DayCell tomorrow{instant("2026-11-21T00:00:00Z"), -1, false};
    QCOMPARE(toolTipOf(tomorrow, DateTexts("en_US", calendar)), QString());
}

void TestHeatmapGrid::todayIsTheLastCellInRange()
{
    QCOMPARE(todayIndex(emptyYear("UTC", date("2026-11-15"))), 364);
    QCOMPARE(todayIndex(emptyYear("UTC", date("2026-11-21"))), 370);
}

void TestHeatmapGrid::steppingStaysInRange()
{
    const auto grid = emptyYear("UTC", date("2026-11-18"));
    QCOMPARE(nextInRange(grid, 367, -7), 360);
    QCOMPARE(nextInRange(grid, 367, 1), std::nullopt);
    QCOMPARE(nextInRange(grid, 367, 7), std::nullopt);
    QCOMPARE(nextInRange(grid, 3, -1), std::nullopt);
    QCOMPARE(nextInRange(grid, 3, -7), std::nullopt);
    QCOMPARE(nextInRange(grid, 3, 1), 4);
}

void TestHeatmapGrid::steppingPassesOverALeftOutDay()
{
    const auto grid = emptyYear("Pacific/Apia", date("2012-01-02"));
    const int thursday = 51 * 7 + 4;
    QCOMPARE(nextInRange(grid, thursday, 1), thursday + 2);
    QCOMPARE(nextInRange(grid, thursday + 2, -1), thursday);
    QCOMPARE(nextInRange(grid, 50 * 7 + 5, 7), std::nullopt);
}

VELQUARIN_TEST_RUN(velquarin::test::runAlone<TestHeatmapGrid>)
#include "tst_heatmapgrid.moc"
