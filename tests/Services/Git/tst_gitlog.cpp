// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitLog.h"

#include "Platform/Calendar.h"
#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

QString asDates(const QList<Instant> &days, const Calendar &calendar)
{
    QStringList texts;
    for (const auto day : days) {
        const auto date = calendar.dateOf(day);
        texts << QString::asprintf("%04d-%02d-%02d", date.year(), date.month(), date.day());
    }
    return texts.join(u' ');
}

QList<Instant> daysIn(QByteArrayView log, const Calendar &calendar)
{
    DayStarts starts(calendar);
    return daysFromLog(log, starts);
}

}  // namespace

class TestGitLog : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void linesBecomeDays_data();
    void linesBecomeDays();
    void everyDayIsAtItsStart();
    void aDayThatTheZoneLeftOutIsNoDay();
    void manyLinesKeepTheirNumberAndOrder();
    void daysBeyondACenturyOfThemAreNotRead();
    void isoTextsBecomeMoments_data();
    void isoTextsBecomeMoments();
    void theGreenwichDateIsTheDateThere();
};

void TestGitLog::linesBecomeDays_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing") << QByteArray() << QString();
    QTest::newRow("one line") << QByteArray("2024-03-07\n") << QStringLiteral("2024-03-07");
    QTest::newRow("no line feed at the end") << QByteArray("2024-03-07") << QStringLiteral("2024-03-07");
    QTest::newRow("three commits on one day are three days")
        << QByteArray("2024-03-07\n2024-03-07\n2024-03-07\n") << QStringLiteral("2024-03-07 2024-03-07 2024-03-07");
    QTest::newRow("the order of the lines is kept")
        << QByteArray("2024-03-07\n2024-03-09\n2024-03-07\n") << QStringLiteral("2024-03-07 2024-03-09 2024-03-07");
    QTest::newRow("empty lines are dropped")
        << QByteArray("\n\n2024-03-07\n\n2024-03-06\n\n") << QStringLiteral("2024-03-07 2024-03-06");
    QTest::newRow("a carriage return is no date")
        << QByteArray("2024-03-07\r\n2024-03-06\n") << QStringLiteral("2024-03-06");
    QTest::newRow("stray text is no date")
        << QByteArray("warning: odd\n2024-03-06\n 2024-03-05\n2024-03-04 \n") << QStringLiteral("2024-03-06");
    QTest::newRow("a blank is no date") << QByteArray(" \n          \n2024-03-06\n") << QStringLiteral("2024-03-06");
    QTest::newRow("days that no month has are no dates")
        << QByteArray("2023-02-29\n2024-02-29\n2024-13-01\n2024-00-10\n2024-01-00\n2024-04-31\n")
        << QStringLiteral("2024-02-29");
    QTest::newRow("signs and blanks inside are no dates")
        << QByteArray("2024-+3-07\n2024- 3-07\n-024-03-07\n+024-03-07\n2024-03--7\n") << QString();
    QTest::newRow("other marks are no dates") << QByteArray("2024/03/07\n2024-03/07\n2024103107\n") << QString();
    QTest::newRow("short numbers are no dates") << QByteArray("2024-3-7\n2024-03-7\n224-03-07\n") << QString();
    QTest::newRow("a year of five digits is a year") << QByteArray("12345-01-01\n") << QStringLiteral("12345-01-01");
    QTest::newRow("a year beyond all numbers is no date")
        << QByteArray("99999999999999999999-01-01\n2147483648-01-01\n999999999-01-01\n") << QString();
    QTest::newRow("the year nought is no date")
        << QByteArray("0000-01-01\n0001-01-01\n") << QStringLiteral("0001-01-01");
    QTest::newRow("the first day of counting") << QByteArray("1970-01-01\n") << QStringLiteral("1970-01-01");
    QTest::newRow("a byte of nought is no date")
        << QByteArray("2024-03-0\0\n2024-03-06\n", 22) << QStringLiteral("2024-03-06");
}

void TestGitLog::linesBecomeDays()
{
    QFETCH(QByteArray, log);
    const auto utc = calendarIn("UTC");
    QTEST(asDates(daysIn(log, utc), utc), "expected");
}

void TestGitLog::everyDayIsAtItsStart()
{
    const auto saoPaulo = calendarIn("America/Sao_Paulo");
    const auto days = daysIn("2018-11-04\n2018-11-03\n", saoPaulo);
    QCOMPARE(days, (QList{instant("2018-11-04T03:00:00Z"), instant("2018-11-03T03:00:00Z")}));
}

void TestGitLog::aDayThatTheZoneLeftOutIsNoDay()
{
    const auto apia = calendarIn("Pacific/Apia");
    QCOMPARE(asDates(daysIn("2011-12-31\n2011-12-30\n2011-12-29\n", apia), apia),
             QStringLiteral("2011-12-31 2011-12-29"));
}

void TestGitLog::manyLinesKeepTheirNumberAndOrder()
{
    const auto utc = calendarIn("UTC");
    QByteArray log;
    QList<Instant> expected;
    for (int line = 0; line < 20000; ++line) {
        const auto day = QDate(2024, 12, 31).addDays(-(line * 7919 % 700));
        log += day.toString(Qt::ISODate).toLatin1() + '\n';
        expected << *utc.startOf(day);
    }
    QCOMPARE(daysIn(log, utc), expected);
}

void TestGitLog::daysBeyondACenturyOfThemAreNotRead()
{
    constexpr int century = 36'525;
    QByteArray log;
    for (int day = 0; day < century + 100; ++day)
        log += QDate(2026, 11, 20).addDays(-day).toString(Qt::ISODate).toLatin1() + '\n';
    const auto calendar = calendarIn("UTC");
    const auto newest = daysIn(log, calendar);
    QCOMPARE(newest.size(), century);
    QCOMPARE(calendar.dateOf(newest.last()), QDate(2026, 11, 20).addDays(1 - century));
    constexpr qsizetype line = 11;
    QCOMPARE(daysIn(log.first((century - 1) * line).repeated(2), calendar).size(), 2 * (century - 1));
}

void TestGitLog::isoTextsBecomeMoments_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *text, const char *expected) {
        QTest::newRow(name) << QByteArray(text) << QString::fromLatin1(expected);
    };
    row("an offset to the east", "2024-03-07T21:15:02+01:00", "2024-03-07T20:15:02Z");
    row("an offset to the west", "2024-03-07T21:15:02-05:30", "2024-03-08T02:45:02Z");
    row("Greenwich as a letter", "2024-03-07T21:15:02Z", "2024-03-07T21:15:02Z");
    row("Greenwich as a number", "2024-03-07T21:15:02+00:00", "2024-03-07T21:15:02Z");
    row("the first second", "1970-01-01T00:00:00Z", "1970-01-01T00:00:00Z");
    row("nothing", "", "none");
    row("a date alone", "2024-03-07", "none");
    row("a blank in place of the T", "2024-03-07 21:15:02+01:00", "none");
    row("no offset", "2024-03-07T21:15:02", "none");
    row("a second of one digit", "2024-03-07T21:15:0", "none");
    row("no second", "2024-03-07T21:15:", "none");
    row("an offset without a colon", "2024-03-07T21:15:02+0100", "none");
    row("an offset beyond the clock", "2024-03-07T21:15:02+99:99", "none");
    row("fractions of a second", "2024-03-07T21:15:02.5+01:00", "none");
    row("a time that no clock shows", "2024-03-07T25:15:02Z", "none");
    row("a day that no month has", "2024-02-30T21:15:02Z", "none");
    row("the format itself", "%aI", "none");
    row("something behind it", "2024-03-07T21:15:02Zx", "none");
}

void TestGitLog::isoTextsBecomeMoments()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    const auto moment = instantFromIso(text);
    QCOMPARE(moment.has_value(), expected != QStringLiteral("none"));
    if (moment)
        QCOMPARE(*moment, instant(expected.toLatin1().constData()));
}

void TestGitLog::theGreenwichDateIsTheDateThere()
{
    QCOMPARE(isoDateAtGreenwich(instant("2024-03-06T18:30:00Z")), QStringLiteral("2024-03-06"));
    QCOMPARE(isoDateAtGreenwich(*calendarIn("Asia/Kolkata").startOf(QDate(2024, 3, 7))), QStringLiteral("2024-03-06"));
}

VELQUARIN_TEST(TestGitLog)
#include "tst_gitlog.moc"
