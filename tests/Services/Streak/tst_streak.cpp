// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/StreakCalculation.h"

#include "support/Days.h"
#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

Streaks streaksOf(const std::set<Instant> &dates, const Calendar &calendar, QDate today)
{
    return calculateStreakFromDates(dates, calendar, *calendar.startOf(today));
}

QString text(const Streaks &streaks)
{
    return QStringLiteral("%1 current, %2 longest").arg(streaks.current).arg(streaks.longest);
}

}  // namespace

class TestStreak : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void streaksOfDays_data();
    void streaksOfDays();
    void streaksGoOnOverChangesOfClocks_data();
    void streaksGoOnOverChangesOfClocks();
    void aLeftOutDateEndsTheStreak();
    void nothingCountsWhenYesterdayWasLeftOut();
    void datesThatAreNoDayStartsRunOnlyByTheirDays();
    void todayCountsEvenWhereTheRestAreNoDayStarts();
    void addingADayNeverShortensAStreak();
    void theLongestIsNeverShorterThanTheCurrent();
    void datesAheadDoNotCountAsCurrent();
};

// Every picture ends with today.
void TestStreak::streaksOfDays_data()
{
    QTest::addColumn<QByteArray>("picture");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *picture, const char *expected) {
        QTest::newRow(name) << QByteArray(picture) << QString::fromLatin1(expected);
    };
    row("no commit ever", ".", "0 current, 0 longest");
    row("only today", "x", "1 current, 1 longest");
    row("only yesterday is still current", "x.", "1 current, 1 longest");
    row("only the day before yesterday", "x..", "0 current, 1 longest");
    row("an older run is longer", "xxxxx...xxx", "3 current, 5 longest");
    row("two days and nothing yet today", "xx.", "2 current, 2 longest");
    row("two days and today", "xxx", "3 current, 3 longest");
    row("a missed day makes two runs of one", "x.x..", "0 current, 1 longest");
    row("a missed day ends the current run", "xxx.xx.", "2 current, 3 longest");
    row("the current run is the longest", "xx.xxxx", "4 current, 4 longest");
    row("two missed days end it", "xxxx..", "0 current, 4 longest");
}

void TestStreak::streaksOfDays()
{
    QFETCH(QByteArray, picture);
    for (const auto *zone : {"UTC", "America/New_York", "Asia/Kolkata", "Pacific/Kiritimati"}) {
        const auto calendar = calendarIn(zone);
        const QDate today(2026, 11, 20);
        QTEST(text(streaksOf(days(picture.constData(), today, calendar), calendar, today)), "expected");
    }
}

void TestStreak::streaksGoOnOverChangesOfClocks_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDate>("today");
    QTest::newRow("a day of 23 hours") << QByteArray("America/New_York") << QDate(2024, 3, 12);
    QTest::newRow("a day of 25 hours") << QByteArray("America/New_York") << QDate(2024, 11, 5);
    QTest::newRow("a skipped midnight") << QByteArray("America/Sao_Paulo") << QDate(2018, 11, 6);
    QTest::newRow("today begins after a skipped midnight") << QByteArray("America/Sao_Paulo") << QDate(2018, 11, 4);
    QTest::newRow("two midnights") << QByteArray("America/Havana") << QDate(2023, 11, 7);
    QTest::newRow("today has two midnights") << QByteArray("America/Havana") << QDate(2023, 11, 5);
    QTest::newRow("half an hour") << QByteArray("Australia/Lord_Howe") << QDate(2024, 4, 8);
}

void TestStreak::streaksGoOnOverChangesOfClocks()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDate, today);
    const auto calendar = calendarIn(zone.constData());
    QCOMPARE(text(streaksOf(days("xxxxxx", today, calendar), calendar, today)), QStringLiteral("6 current, 6 longest"));
}

void TestStreak::aLeftOutDateEndsTheStreak()
{
    const auto apia = calendarIn("Pacific/Apia");
    const QDate today(2012, 1, 2);
    auto dates = days("xxx", today, apia);
    dates.merge(days("xxxx", QDate(2011, 12, 29), apia));
    QCOMPARE(text(streaksOf(dates, apia, today)), QStringLiteral("3 current, 4 longest"));
}

void TestStreak::nothingCountsWhenYesterdayWasLeftOut()
{
    const auto apia = calendarIn("Pacific/Apia");
    const auto dates = days("xxxx", QDate(2011, 12, 29), apia);
    QCOMPARE(text(streaksOf(dates, apia, QDate(2011, 12, 31))), QStringLiteral("0 current, 0 longest"));
}

void TestStreak::datesThatAreNoDayStartsRunOnlyByTheirDays()
{
    const auto utc = calendarIn("UTC");
    const std::set<Instant> noons{instant("2026-11-18T12:00:00Z"), instant("2026-11-19T09:00:00Z"),
                                  instant("2026-11-20T12:00:00Z")};
    QCOMPARE(text(streaksOf(noons, utc, QDate(2026, 11, 20))), QStringLiteral("0 current, 3 longest"));
}

void TestStreak::todayCountsEvenWhereTheRestAreNoDayStarts()
{
    const auto utc = calendarIn("UTC");
    const std::set<Instant> dates{instant("2026-11-19T12:00:00Z"), instant("2026-11-20T00:00:00Z")};
    QCOMPARE(text(streaksOf(dates, utc, QDate(2026, 11, 20))), QStringLiteral("1 current, 2 longest"));
}

void TestStreak::addingADayNeverShortensAStreak()
{
    const auto calendar = calendarIn("America/New_York");
    const QDate today(2024, 11, 20);
    QRandomGenerator random(1);
    for (int round = 0; round < 200; ++round) {
        std::set<Instant> dates;
        Streaks before;
        for (int added = 0; added < 30; ++added) {
            dates.insert(*calendar.startOf(today.addDays(-random.bounded(40))));
            const auto after = streaksOf(dates, calendar, today);
            QVERIFY(after.current >= before.current && after.longest >= before.longest);
            before = after;
        }
    }
}

void TestStreak::theLongestIsNeverShorterThanTheCurrent()
{
    const auto calendar = calendarIn("America/Havana");
    const QDate today(2023, 11, 20);
    QRandomGenerator random(2);
    for (int round = 0; round < 500; ++round) {
        std::set<Instant> dates;
        for (int day = 0; day < 30; ++day) {
            if (random.bounded(4) > 0)
                dates.insert(*calendar.startOf(today.addDays(-day)));
        }
        const auto streaks = streaksOf(dates, calendar, today);
        QVERIFY(streaks.longest >= streaks.current);
    }
}

void TestStreak::datesAheadDoNotCountAsCurrent()
{
    const auto utc = calendarIn("UTC");
    const QDate today(2026, 11, 20);
    auto dates = days("xxxxx", today.addDays(10), utc);
    dates.insert(*utc.startOf(QDate(12345, 1, 1)));
    dates.insert(*utc.startOf(QDate(1970, 1, 1)));
    QCOMPARE(text(streaksOf(dates, utc, today)), QStringLiteral("0 current, 5 longest"));
}

VELQUARIN_TEST(TestStreak)
#include "tst_streak.moc"
