// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Reminder/ReminderDecision.h"

#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

#include <array>
#include <limits>

using namespace velquarin;
using namespace std::chrono_literals;
using test::instant;
using enum ReminderDecision;

namespace {

constexpr auto berlin = "Europe/Berlin";

// Everything speaks for a reminder: nine in the evening in Berlin, five days at stake, never reminded.
ReminderSnapshot dueSnapshot()
{
    return {
        .notificationsEnabled = true,
        .hasCommittedToday = false,
        .currentStreak = 5,
        .lastReminder = std::nullopt,
        .now = instant("2026-11-20T21:00:00+01:00"),
        .calendar = test::calendarIn(berlin),
    };
}

ReminderDecision decideAt(Instant moment, const QByteArray &zone)
{
    auto snapshot = dueSnapshot();
    snapshot.now = moment;
    snapshot.calendar = test::calendarIn(zone.constData());
    return decideReminder(snapshot);
}

ReminderDecision decideAfter(PreferenceValue lastReminder)
{
    auto snapshot = dueSnapshot();
    snapshot.lastReminder = std::move(lastReminder);
    return decideReminder(snapshot);
}

}  // namespace

class TestReminder : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }

    void aRunningStreakWithoutACommitIsRemindedOfInTheEvening();
    void theFirstTestThatFailsIsTheReason();
    void aStreakOfNoDaysHasNothingToLose_data();
    void aStreakOfNoDaysHasNothingToLose();
    void theEveningBeginsAtSixOnTheWallClock_data();
    void theEveningBeginsAtSixOnTheWallClock();
    void onceADayIsCountedOnTheCalendar_data();
    void onceADayIsCountedOnTheCalendar();
    void whatIsNotADateWasNeverAReminder_data();
    void whatIsNotADateWasNeverAReminder();
    void whoTravelsIsRemindedByTheDayOfWhereTheyAre();
    void theIdentifierIsTheShortestTextOfTheSameSeconds_data();
    void theIdentifierIsTheShortestTextOfTheSameSeconds();
    void theSecondsInTheIdentifierReadBackToTheSameDouble();
    void theSentenceNamesTheStreakAsAPlainNumber_data();
    void theSentenceNamesTheStreakAsAPlainNumber();
    void theReminderIsUrgentAndSounds();
    void theCategoryOffersToOpenAndToDismiss();
};

void TestReminder::aRunningStreakWithoutACommitIsRemindedOfInTheEvening()
{
    QCOMPARE(decideReminder(dueSnapshot()), Remind);
}

// Begins with a snapshot that fails every test and mends them one by one.
void TestReminder::theFirstTestThatFailsIsTheReason()
{
    auto snapshot = dueSnapshot();
    snapshot.notificationsEnabled = false;
    snapshot.hasCommittedToday = true;
    snapshot.currentStreak = 0;
    snapshot.now = instant("2026-11-20T12:00:00+01:00");
    snapshot.lastReminder = instant("2026-11-20T11:00:00+01:00");
    QCOMPARE(decideReminder(snapshot), SwitchedOff);
    snapshot.notificationsEnabled = true;
    QCOMPARE(decideReminder(snapshot), CommittedToday);
    snapshot.hasCommittedToday = false;
    QCOMPARE(decideReminder(snapshot), NothingToLose);
    snapshot.currentStreak = 1;
    QCOMPARE(decideReminder(snapshot), TooEarly);
    snapshot.now = instant("2026-11-20T18:00:00+01:00");
    QCOMPARE(decideReminder(snapshot), AlreadyReminded);
    snapshot.lastReminder.reset();
    QCOMPARE(decideReminder(snapshot), Remind);
}

void TestReminder::aStreakOfNoDaysHasNothingToLose_data()
{
    QTest::addColumn<qint64>("streak");
    QTest::addColumn<ReminderDecision>("decision");
    QTest::newRow("no day at nine in the evening") << qint64(0) << NothingToLose;
    QTest::newRow("fewer than no days") << qint64(-1) << NothingToLose;
    QTest::newRow("the smallest number there is") << std::numeric_limits<qint64>::min() << NothingToLose;
    QTest::newRow("one day is worth keeping") << qint64(1) << Remind;
    QTest::newRow("the largest number there is") << std::numeric_limits<qint64>::max() << Remind;
}

void TestReminder::aStreakOfNoDaysHasNothingToLose()
{
    QFETCH(qint64, streak);
    auto snapshot = dueSnapshot();
    snapshot.currentStreak = streak;
    QTEST(decideReminder(snapshot), "decision");
}

void TestReminder::theEveningBeginsAtSixOnTheWallClock_data()
{
    QTest::addColumn<Instant>("moment");
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<ReminderDecision>("decision");
    const auto row = [](const char *name, const char *moment, const char *zone, ReminderDecision decision) {
        QTest::newRow(name) << instant(moment) << QByteArray(zone) << decision;
    };
    row("the last millisecond before six in Berlin", "2026-11-20T17:59:59.999+01:00", berlin, TooEarly);
    row("one minute before six in Berlin", "2026-11-20T17:59:00+01:00", berlin, TooEarly);
    row("six o'clock in Berlin", "2026-11-20T18:00:00+01:00", berlin, Remind);
    row("six o'clock in Berlin in summer", "2026-07-20T18:00:00+02:00", berlin, Remind);
    row("one minute before six in Berlin in summer", "2026-07-20T17:59:00+02:00", berlin, TooEarly);
    row("the last millisecond before midnight in Berlin", "2026-11-20T23:59:59.999+01:00", berlin, Remind);
    row("midnight in Berlin", "2026-11-21T00:00:00+01:00", berlin, TooEarly);
    row("six o'clock in Kathmandu", "2026-11-20T18:00:00+05:45", "Asia/Kathmandu", Remind);
    row("one minute before six in Kathmandu", "2026-11-20T17:59:00+05:45", "Asia/Kathmandu", TooEarly);
    row("six o'clock in Kiritimati", "2026-11-20T18:00:00+14:00", "Pacific/Kiritimati", Remind);
    row("six o'clock in Pago Pago", "2026-11-20T18:00:00-11:00", "Pacific/Pago_Pago", Remind);
    row("one minute before six in Pago Pago", "2026-11-20T17:59:00-11:00", "Pacific/Pago_Pago", TooEarly);
    row("six on the day of 23 hours in Berlin", "2026-03-29T18:00:00+02:00", berlin, Remind);
    row("one minute before six on the day of 23 hours in Berlin", "2026-03-29T17:59:00+02:00", berlin, TooEarly);
    row("six on the day of 25 hours in Berlin", "2026-10-25T18:00:00+01:00", berlin, Remind);
    row("one minute before six on the day of 25 hours in Berlin", "2026-10-25T17:59:00+01:00", berlin, TooEarly);
    row("the first eleven at night in Sao Paulo, which comes twice", "2018-02-17T23:30:00-02:00", "America/Sao_Paulo",
        Remind);
    row("the second eleven at night in Sao Paulo", "2018-02-17T23:30:00-03:00", "America/Sao_Paulo", Remind);
}

void TestReminder::theEveningBeginsAtSixOnTheWallClock()
{
    QFETCH(Instant, moment);
    QFETCH(QByteArray, zone);
    QTEST(decideAt(moment, zone), "decision");
}

void TestReminder::onceADayIsCountedOnTheCalendar_data()
{
    QTest::addColumn<Instant>("last");
    QTest::addColumn<Instant>("now");
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<ReminderDecision>("decision");
    const auto row = [](const char *name, const char *last, const char *now, const char *zone,
                        ReminderDecision decision) {
        QTest::newRow(name) << instant(last) << instant(now) << QByteArray(zone) << decision;
    };
    row("five minutes later", "2026-11-20T18:00:00+01:00", "2026-11-20T18:05:00+01:00", berlin, AlreadyReminded);
    row("at the same moment", "2026-11-20T18:00:00+01:00", "2026-11-20T18:00:00+01:00", berlin, AlreadyReminded);
    row("at the end of the day", "2026-11-20T18:00:00+01:00", "2026-11-20T23:59:59.999+01:00", berlin, AlreadyReminded);
    row("the next evening", "2026-11-20T18:00:00+01:00", "2026-11-21T18:00:00+01:00", berlin, Remind);
    row("the next evening, within 24 hours", "2026-11-20T23:59:59.999+01:00", "2026-11-21T18:00:00+01:00", berlin,
        Remind);
    row("the evening after the night of 23 hours", "2026-03-28T18:00:00+01:00", "2026-03-29T18:00:00+02:00", berlin,
        Remind);
    row("the evening after the night of 25 hours", "2026-10-24T18:00:00+02:00", "2026-10-25T18:00:00+01:00", berlin,
        Remind);
    row("in the hour that comes again before midnight", "2018-02-17T23:30:00-02:00", "2018-02-17T23:15:00-03:00",
        "America/Sao_Paulo", AlreadyReminded);
    row("the evening after a midnight that comes twice", "2026-10-31T23:00:00-04:00", "2026-11-01T18:00:00-05:00",
        "America/Havana", Remind);
    row("a year ago on the same date", "2025-11-20T18:00:00+01:00", "2026-11-20T18:00:00+01:00", berlin, Remind);
    row("a date from the future, after the clock was set back", "2026-11-22T18:00:00+01:00",
        "2026-11-20T18:00:00+01:00", berlin, Remind);
    row("later today, after the clock was set back", "2026-11-20T22:00:00+01:00", "2026-11-20T18:00:00+01:00", berlin,
        AlreadyReminded);
}

void TestReminder::onceADayIsCountedOnTheCalendar()
{
    QFETCH(Instant, last);
    QFETCH(Instant, now);
    QFETCH(QByteArray, zone);
    auto snapshot = dueSnapshot();
    snapshot.lastReminder = last;
    snapshot.now = now;
    snapshot.calendar = test::calendarIn(zone.constData());
    QTEST(decideReminder(snapshot), "decision");
}

void TestReminder::whatIsNotADateWasNeverAReminder_data()
{
    QTest::addColumn<PreferenceValue>("stored");
    QTest::newRow("a text that looks like a date") << PreferenceValue(QStringLiteral("2026-11-20T20:00:00.000Z"));
    QTest::newRow("a number") << PreferenceValue(1795204800.0);
    QTest::newRow("a boolean") << PreferenceValue(true);
    QTest::newRow("data") << PreferenceValue(QByteArray("2026"));
    QTest::newRow("a value of no known type") << PreferenceValue(UnreadableValue());
}

void TestReminder::whatIsNotADateWasNeverAReminder()
{
    QFETCH(PreferenceValue, stored);
    QCOMPARE(decideAfter(stored), Remind);
    QCOMPARE(decideAfter(instant("2026-11-20T20:00:00+01:00")), AlreadyReminded);
}

// Reminded in Berlin at seven on Friday; then Tokyo, where that was Saturday already.
void TestReminder::whoTravelsIsRemindedByTheDayOfWhereTheyAre()
{
    auto snapshot = dueSnapshot();
    snapshot.lastReminder = instant("2026-11-20T19:00:00+01:00");
    snapshot.calendar = test::calendarIn("Asia/Tokyo");
    snapshot.now = instant("2026-11-21T18:30:00+09:00");
    QCOMPARE(decideReminder(snapshot), AlreadyReminded);
    snapshot.calendar = test::calendarIn("America/New_York");
    snapshot.now = instant("2026-11-20T18:30:00-05:00");
    QCOMPARE(decideReminder(snapshot), AlreadyReminded);
    snapshot.now = instant("2026-11-21T18:30:00-05:00");
    QCOMPARE(decideReminder(snapshot), Remind);
}

void TestReminder::theIdentifierIsTheShortestTextOfTheSameSeconds_data()
{
    QTest::addColumn<qint64>("milliseconds");
    QTest::addColumn<QString>("identifier");
    const auto row = [](const char *name, qint64 milliseconds, const char *identifier) {
        QTest::newRow(name) << milliseconds << QString::fromLatin1(identifier);
    };
    row("whole seconds get a point and a zero", 1795204800000, "streak-risk-1795204800.0");
    row("milliseconds", 1795204800123, "streak-risk-1795204800.123");
    row("trailing zeros are left out", 1795204800500, "streak-risk-1795204800.5");
    row("the first moment", 0, "streak-risk-0.0");
    row("one millisecond", 1, "streak-risk-0.001");
    row("before 1970", -1500, "streak-risk--1.5");
    row("a power of ten, without an exponent", 1'000'000'000'000'000, "streak-risk-1000000000000.0");
    row("beyond the fractions of a double", 9'007'199'254'740'992'000, "streak-risk-9007199254740992.0");
}

void TestReminder::theIdentifierIsTheShortestTextOfTheSameSeconds()
{
    QFETCH(qint64, milliseconds);
    QTEST(reminderIdentifier(Instant(std::chrono::milliseconds(milliseconds))), "identifier");
}

void TestReminder::theSecondsInTheIdentifierReadBackToTheSameDouble()
{
    const auto prefix = QStringLiteral("streak-risk-");
    for (qint64 step = 0; step < 2000; ++step) {
        const qint64 milliseconds = 1795204800000 + step * 86'399'957;
        const auto identifier = reminderIdentifier(Instant(std::chrono::milliseconds(milliseconds)));
        QVERIFY(identifier.startsWith(prefix));
        QCOMPARE(identifier.mid(prefix.size()).toDouble(), double(milliseconds) / 1000.0);
    }
}

void TestReminder::theSentenceNamesTheStreakAsAPlainNumber_data()
{
    QTest::addColumn<qint64>("streak");
    QTest::addColumn<QString>("sentence");
    const auto row = [](const char *name, qint64 streak, const char *sentence) {
        QTest::newRow(name) << streak << QString::fromLatin1(sentence);
    };
    row("five days", 5, "You haven't committed today. Your 5-day streak will reset at midnight!");
    row("twelve days", 12, "You haven't committed today. Your 12-day streak will reset at midnight!");
    row("one day", 1, "You haven't committed today. Your 1-day streak will reset at midnight!");
    row("thousands stand without a separator", 12345,
        "You haven't committed today. Your 12345-day streak will reset at midnight!");
}

void TestReminder::theSentenceNamesTheStreakAsAPlainNumber()
{
    QFETCH(qint64, streak);
    QTEST(reminderBody(streak), "sentence");
}

void TestReminder::theReminderIsUrgentAndSounds()
{
    const auto moment = instant("2026-11-20T18:00:00.250Z");
    const NotificationRequest expected{reminderIdentifier(moment),
                                       QStringLiteral("Streak at Risk!"),
                                       reminderBody(5),
                                       QStringLiteral("STREAK_RISK"),
                                       true,
                                       true};
    QVERIFY(reminderRequest(5, moment) == expected);
}

void TestReminder::theCategoryOffersToOpenAndToDismiss()
{
    const NotificationCategory expected{QStringLiteral("STREAK_RISK"),
                                        {{QStringLiteral("OPEN_APP"), QStringLiteral("Open Velquarin"), true},
                                         {QStringLiteral("DISMISS"), QStringLiteral("Dismiss"), false}}};
    QVERIFY(reminderCategory() == expected);
}

VELQUARIN_TEST(TestReminder)
#include "tst_reminder.moc"
