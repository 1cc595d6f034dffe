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

QString utcText(std::optional<Instant> moment)
{
    if (!moment)
        return QStringLiteral("none");
    return QDateTime::fromMSecsSinceEpoch(moment->time_since_epoch().count(), universalTime).toString(Qt::ISODate);
}

QDate date(const QString &text)
{
    return QDate::fromString(text, Qt::ISODate);
}

}  // namespace

class TestCalendar : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aDayStarts_data();
    void aDayStarts();
    void addingDays_data();
    void addingDays();
    void everyDayOfTwentyYearsStartsOnItsOwnDate_data();
    void everyDayOfTwentyYearsStartsOnItsOwnDate();
    void sameDayLooksAtTheDateAlone();
    void theDayEndsWhenTheNextOneStarts_data();
    void theDayEndsWhenTheNextOneStarts();
    void farDatesAreNoTrouble();
    void whatNoInstantHoldsHasNoStart();
};

void TestCalendar::aDayStarts_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("day");
    QTest::addColumn<QString>("start");
    const auto row = [](const char *name, const char *zone, const char *day, const char *start) {
        QTest::newRow(name) << QByteArray(zone) << QString::fromLatin1(day) << QString::fromLatin1(start);
    };
    row("at midnight in UTC", "UTC", "2024-03-07", "2024-03-07T00:00:00Z");
    row("the evening before at Greenwich, east of it", "Asia/Kolkata", "2024-03-07", "2024-03-06T18:30:00Z");
    row("in the morning at Greenwich, west of it", "America/New_York", "2024-01-15", "2024-01-15T05:00:00Z");
    row("an hour earlier in summer", "America/New_York", "2024-07-15", "2024-07-15T04:00:00Z");
    row("fourteen hours ahead", "Pacific/Kiritimati", "2024-03-07", "2024-03-06T10:00:00Z");
    row("after a skipped midnight", "America/Sao_Paulo", "2018-11-04", "2018-11-04T03:00:00Z");
    row("before a skipped midnight", "America/Sao_Paulo", "2018-11-03", "2018-11-03T03:00:00Z");
    row("after an hour that came twice before midnight", "America/Sao_Paulo", "2018-02-18", "2018-02-18T03:00:00Z");
    row("at the earlier of two midnights", "America/Havana", "2023-11-05", "2023-11-05T04:00:00Z");
    row("on the day after two midnights", "America/Havana", "2023-11-06", "2023-11-06T05:00:00Z");
    row("after a midnight that Havana skips in spring", "America/Havana", "2023-03-12", "2023-03-12T05:00:00Z");
    row("never, on the date that Apia left out", "Pacific/Apia", "2011-12-30", "none");
    row("before the date left out", "Pacific/Apia", "2011-12-29", "2011-12-29T10:00:00Z");
    row("after the date left out", "Pacific/Apia", "2011-12-31", "2011-12-30T10:00:00Z");
    row("on the day on which clocks go forward at two", "Europe/Berlin", "2024-03-31", "2024-03-30T23:00:00Z");
    row("on the day on which clocks go back at three", "Europe/Berlin", "2024-10-27", "2024-10-26T22:00:00Z");
}

void TestCalendar::aDayStarts()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, day);
    QFETCH(QString, start);
    QCOMPARE(utcText(calendarIn(zone.constData()).startOf(date(day))), start);
}

void TestCalendar::addingDays_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("days");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *zone, const char *from, int days, const char *expected) {
        QTest::newRow(name) << QByteArray(zone) << QString::fromLatin1(from) << days << QString::fromLatin1(expected);
    };
    row("forward over a year's end", "UTC", "2023-12-31T00:00:00Z", 1, "2024-01-01T00:00:00Z");
    row("back over a leap day", "UTC", "2024-03-01T00:00:00Z", -1, "2024-02-29T00:00:00Z");
    row("back over a day of 23 hours", "America/New_York", "2024-03-11T04:00:00Z", -1, "2024-03-10T05:00:00Z");
    row("back over a day of 25 hours", "America/New_York", "2024-11-04T05:00:00Z", -1, "2024-11-03T04:00:00Z");
    row("from the start of a day to a start after a skipped midnight", "America/Sao_Paulo", "2018-11-03T03:00:00Z", 1,
        "2018-11-04T03:00:00Z");
    row("from a start after a skipped midnight back to midnight", "America/Sao_Paulo", "2018-11-04T03:00:00Z", -1,
        "2018-11-03T03:00:00Z");
    row("from a start after a skipped midnight on to midnight", "America/Sao_Paulo", "2018-11-04T03:00:00Z", 1,
        "2018-11-05T02:00:00Z");
    row("onto the earlier of two midnights", "America/Havana", "2023-11-06T05:00:00Z", -1, "2023-11-05T04:00:00Z");
    row("onto a date that was left out", "Pacific/Apia", "2011-12-30T10:00:00Z", -1, "none");
    row("over a date that was left out", "Pacific/Apia", "2011-12-30T10:00:00Z", -2, "2011-12-29T10:00:00Z");
    row("keeping the time of day", "Europe/Berlin", "2024-03-30T11:34:56Z", 1, "2024-03-31T10:34:56Z");
    row("moving a skipped time forward", "Europe/Berlin", "2024-03-30T01:30:00Z", 1, "2024-03-31T01:30:00Z");
    row("keeping a time of day whose midnight is skipped", "America/Sao_Paulo", "2018-11-03T03:30:00Z", 1,
        "2018-11-04T03:30:00Z");
    row("by nothing", "Asia/Kolkata", "2024-03-06T18:30:00Z", 0, "2024-03-06T18:30:00Z");
}

void TestCalendar::addingDays()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, from);
    QFETCH(int, days);
    QFETCH(QString, expected);
    const auto calendar = calendarIn(zone.constData());
    QCOMPARE(utcText(calendar.addDays(instant(from.toLatin1().constData()), days)), expected);
}

void TestCalendar::everyDayOfTwentyYearsStartsOnItsOwnDate_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const auto *zone : {"UTC", "America/New_York", "Asia/Kolkata", "Pacific/Kiritimati", "America/Sao_Paulo",
                             "America/Havana", "Pacific/Apia", "Africa/Cairo", "Asia/Tehran", "Australia/Lord_Howe"})
        QTest::newRow(zone) << QByteArray(zone);
}

// The law of a day's start: it lies on its date, and the moment before does not.
void TestCalendar::everyDayOfTwentyYearsStartsOnItsOwnDate()
{
    QFETCH(QByteArray, zone);
    const auto calendar = calendarIn(zone.constData());
    for (QDate day(2005, 1, 1); day.year() < 2025; day = day.addDays(1)) {
        const auto start = calendar.startOf(day);
        if (!start) {
            QCOMPARE(day, QDate(2011, 12, 30));
            continue;
        }
        QCOMPARE(calendar.dateOf(*start), day);
        QVERIFY(calendar.dateOf(*start - 1ms) < day);
        QCOMPARE(calendar.startOfDay(*start + 22h), *start);
    }
}

void TestCalendar::sameDayLooksAtTheDateAlone()
{
    const auto newYork = calendarIn("America/New_York");
    QVERIFY(newYork.isSameDay(instant("2024-11-03T04:00:00Z"), instant("2024-11-04T04:59:59Z")));
    QVERIFY(!newYork.isSameDay(instant("2024-11-03T04:00:00Z"), instant("2024-11-04T05:00:00Z")));
}

void TestCalendar::theDayEndsWhenTheNextOneStarts_data()
{
    QTest::addColumn<Instant>("moment");
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<qint64>("minutes");
    const auto row = [](const char *name, const char *moment, const char *zone, std::chrono::minutes left) {
        QTest::newRow(name) << instant(moment) << QByteArray(zone) << qint64(left.count());
    };
    row("from six in the evening in Berlin", "2026-11-20T18:00:00+01:00", "Europe/Berlin", 6h);
    row("from the start of a day", "2026-11-20T00:00:00+01:00", "Europe/Berlin", 24h);
    row("over the day of 23 hours", "2026-03-29T00:00:00+01:00", "Europe/Berlin", 23h);
    row("over the day of 25 hours", "2026-10-25T00:00:00+02:00", "Europe/Berlin", 25h);
    row("into a day that starts at one", "2018-11-03T18:00:00-03:00", "America/Sao_Paulo", 6h);
    row("over an hour that comes twice before midnight", "2018-02-17T23:30:00-02:00", "America/Sao_Paulo", 90min);
    row("over a day that never was", "2011-12-29T18:00:00-10:00", "Pacific/Apia", 6h);
}

void TestCalendar::theDayEndsWhenTheNextOneStarts()
{
    QFETCH(Instant, moment);
    QFETCH(QByteArray, zone);
    QFETCH(qint64, minutes);
    const auto left = untilNextDay(moment, calendarIn(zone.constData()));
    QCOMPARE(left, std::chrono::milliseconds(std::chrono::minutes(minutes)));
}

void TestCalendar::farDatesAreNoTrouble()
{
    const auto newYork = calendarIn("America/New_York");
    const auto far = newYork.startOf(QDate(12345, 1, 1));
    QVERIFY(far.has_value());
    QCOMPARE(newYork.dateOf(*far), QDate(12345, 1, 1));
    QCOMPARE(newYork.dateOf(*newYork.addDays(*far, -1)), QDate(12344, 12, 31));
    QCOMPARE(utcText(calendarIn("UTC").startOf(QDate(1970, 1, 1))), QStringLiteral("1970-01-01T00:00:00Z"));
}

void TestCalendar::whatNoInstantHoldsHasNoStart()
{
    const auto utc = calendarIn("UTC");
    QVERIFY(!utc.startOf(QDate()).has_value());
    QVERIFY(!utc.startOf(QDate(1'000'000'000, 1, 1)).has_value());
    QVERIFY(!utc.addDays(Instant(), std::numeric_limits<qint64>::max()).has_value());
}

VELQUARIN_TEST(TestCalendar)
#include "tst_calendar.moc"
