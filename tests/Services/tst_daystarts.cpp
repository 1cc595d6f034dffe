// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/DayStarts.h"

#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

class TestDayStarts : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void everyDayStartsAsTheCalendarSaysHoweverOftenItIsAsked_data();
    void everyDayStartsAsTheCalendarSaysHoweverOftenItIsAsked();
    void whatIsNoDateHasNoStart();
    void moreDaysThanAreRememberedAreStillRight();
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
    const QDate first(1900, 1, 1);
    for (int day = 0; day < 25'000; ++day)
        QCOMPARE(starts.startOf(first.addDays(day)), calendar.startOf(first.addDays(day)));
    QCOMPARE(starts.startOf(first), calendar.startOf(first));
}

VELQUARIN_TEST(TestDayStarts)
#include "tst_daystarts.moc"
