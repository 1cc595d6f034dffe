// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Calendar.h"

#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

constexpr int daysOfACentury = 36'525;
const QDate first(1900, 1, 1);

// Both ways of asking, for that many days in a row.
void ask(DayStarts &starts, int days)
{
    const auto begin = starts.calendar().startOf(first).value();
    for (int day = 0; day < days; ++day) {
        static_cast<void>(starts.startOf(first.addDays(day)));
        static_cast<void>(starts.startOfDay(begin + day * 24h));
    }
}

}  // namespace

class TestDayStarts : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void everyDayStartsAsTheCalendarSaysHoweverOftenItIsAsked_data();
    void everyDayStartsAsTheCalendarSaysHoweverOftenItIsAsked();
    void whatIsNoDateHasNoStart();
    void moreDaysThanAreRememberedAreStillRight();
    void aCenturyIsRemembered();
    void noMoreThanACenturyIsRemembered();
};

void TestDayStarts::everyDayStartsAsTheCalendarSaysHoweverOftenItIsAsked_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDate>("from");
    QTest::newRow("plain days") << QByteArray("UTC") << QDate(2024, 2, 1);
    QTest::newRow("a skipped midnight") << QByteArray("America/Sao_Paulo") << QDate(2018, 10, 20);
    QTest::newRow("a repeated midnight") << QByteArray("America/Havana") << QDate(2024, 10, 20);
    QTest::newRow("a day that never was") << QByteArray("Pacific/Apia") << QDate(2011, 12, 15);
}

void TestDayStarts::everyDayStartsAsTheCalendarSaysHoweverOftenItIsAsked()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDate, from);
    const auto calendar = calendarIn(zone);
    DayStarts starts(calendar);
    for (int round = 0; round < 2; ++round) {
        for (int day = 0; day < 40; ++day) {
            const auto start = calendar.startOf(from.addDays(day));
            QCOMPARE(starts.startOf(from.addDays(day)), start);
            const auto noon = start.value_or(instant("2011-12-31T00:00:00Z")) + 12h;
            QCOMPARE(starts.startOfDay(noon), calendar.startOfDay(noon));
        }
    }
}

void TestDayStarts::whatIsNoDateHasNoStart()
{
    DayStarts starts(calendarIn("UTC"));
    QCOMPARE(starts.startOf(QDate()), std::nullopt);
    QCOMPARE(starts.startOf(QDate()), std::nullopt);
}

void TestDayStarts::moreDaysThanAreRememberedAreStillRight()
{
    const auto calendar = calendarIn("UTC");
    DayStarts starts(calendar);
    for (int day = 0; day < 2 * daysOfACentury; ++day)
        QCOMPARE(starts.startOf(first.addDays(day)), calendar.startOf(first.addDays(day)));
    QCOMPARE(starts.startOf(first), calendar.startOf(first));
}

void TestDayStarts::aCenturyIsRemembered()
{
    DayStarts starts(calendarIn("UTC"));
    ask(starts, daysOfACentury);
    ask(starts, daysOfACentury);
    QCOMPARE(starts.lookUps(), 2 * daysOfACentury);
}

// A stranger's history may name any number of days, and the program runs for weeks.
void TestDayStarts::noMoreThanACenturyIsRemembered()
{
    DayStarts starts(calendarIn("UTC"));
    ask(starts, daysOfACentury + 1);
    const auto before = starts.lookUps();
    ask(starts, 1);
    QCOMPARE(starts.lookUps(), before + 2);
}

VELQUARIN_TEST(TestDayStarts)
#include "tst_daystarts.moc"
