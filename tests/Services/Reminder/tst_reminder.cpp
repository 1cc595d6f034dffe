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

bool isDueAt(Instant moment, const QByteArray &zone)
{
    auto snapshot = dueSnapshot();
    snapshot.now = moment;
    snapshot.calendar = test::calendarIn(zone.constData());
    return isReminderDue(snapshot);
}

bool isDueAfter(PreferenceValue lastReminder)
{
    auto snapshot = dueSnapshot();
    snapshot.lastReminder = std::move(lastReminder);
    return isReminderDue(snapshot);
}

}  // namespace

class TestReminder : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }

    void aRunningStreakWithoutACommitIsRemindedOfInTheEvening();
    void anyOneReasonIsEnoughNotToRemind();
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
    void theReminderIsOfItsCategory();
    void theCategoryOffersToOpenAndToDismiss();
};

void TestReminder::aRunningStreakWithoutACommitIsRemindedOfInTheEvening()
{
    QVERIFY(isReminderDue(dueSnapshot()));
}

void TestReminder::anyOneReasonIsEnoughNotToRemind()
{
    using Spoil = void (*)(ReminderSnapshot &);
    const QList<Spoil> reasons{
        [](ReminderSnapshot &snapshot) { snapshot.notificationsEnabled = false; },
        [](ReminderSnapshot &snapshot) { snapshot.hasCommittedToday = true; },
        [](ReminderSnapshot &snapshot) { snapshot.currentStreak = 0; },
        [](ReminderSnapshot &snapshot) { snapshot.now = instant("2026-11-20T12:00:00+01:00"); },
        [](ReminderSnapshot &snapshot) { snapshot.lastReminder = instant("2026-11-20T18:00:00+01:00"); },
    };
    for (const auto &spoil : reasons) {
        auto snapshot = dueSnapshot();
        spoil(snapshot);
        QVERIFY(!isReminderDue(snapshot));
    }
}

void TestReminder::aStreakOfNoDaysHasNothingToLose_data()
{
    QTest::addColumn<qint64>("streak");
    QTest::addColumn<bool>("isDue");
    QTest::newRow("no day at nine in the evening") << qint64(0) << false;
    QTest::newRow("fewer than no days") << qint64(-1) << false;
    QTest::newRow("the smallest number there is") << std::numeric_limits<qint64>::min() << false;
    QTest::newRow("one day is worth keeping") << qint64(1) << true;
    QTest::newRow("the largest number there is") << std::numeric_limits<qint64>::max() << true;
}

void TestReminder::aStreakOfNoDaysHasNothingToLose()
{
    QFETCH(qint64, streak);
    auto snapshot = dueSnapshot();
    snapshot.currentStreak = streak;
    QTEST(isReminderDue(snapshot), "isDue");
}

void TestReminder::theEveningBeginsAtSixOnTheWallClock_data()
{
    QTest::addColumn<Instant>("moment");
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<bool>("isDue");
    const auto row = [](const char *name, const char *moment, const char *zone, bool isDue) {
        QTest::newRow(name) << instant(moment) << QByteArray(zone) << isDue;
    };
    row("the last millisecond before six in Berlin", "2026-11-20T17:59:59.999+01:00", berlin, false);
    row("one minute before six in Berlin", "2026-11-20T17:59:00+01:00", berlin, false);
    row("six o'clock in Berlin", "2026-11-20T18:00:00+01:00", berlin, true);
    row("six o'clock in Berlin in summer", "2026-07-20T18:00:00+02:00", berlin, true);
    row("one minute before six in Berlin in summer", "2026-07-20T17:59:00+02:00", berlin, false);
    row("the last millisecond before midnight in Berlin", "2026-11-20T23:59:59.999+01:00", berlin, true);
    row("midnight in Berlin", "2026-11-21T00:00:00+01:00", berlin, false);
    row("six o'clock in Kathmandu", "2026-11-20T18:00:00+05:45", "Asia/Kathmandu", true);
    row("one minute before six in Kathmandu", "2026-11-20T17:59:00+05:45", "Asia/Kathmandu", false);
    row("six o'clock in Kiritimati", "2026-11-20T18:00:00+14:00", "Pacific/Kiritimati", true);
    row("six o'clock in Pago Pago", "2026-11-20T18:00:00-11:00", "Pacific/Pago_Pago", true);
    row("one minute before six in Pago Pago", "2026-11-20T17:59:00-11:00", "Pacific/Pago_Pago", false);
    row("six on the day of 23 hours in Berlin", "2026-03-29T18:00:00+02:00", berlin, true);
    row("one minute before six on the day of 23 hours in Berlin", "2026-03-29T17:59:00+02:00", berlin, false);
    row("six on the day of 25 hours in Berlin", "2026-10-25T18:00:00+01:00", berlin, true);
    row("one minute before six on the day of 25 hours in Berlin", "2026-10-25T17:59:00+01:00", berlin, false);
    row("the first eleven at night in Sao Paulo, which comes twice", "2018-02-17T23:30:00-02:00", "America/Sao_Paulo",
        true);
    row("the second eleven at night in Sao Paulo", "2018-02-17T23:30:00-03:00", "America/Sao_Paulo", true);
}

void TestReminder::theEveningBeginsAtSixOnTheWallClock()
{
    QFETCH(Instant, moment);
    QFETCH(QByteArray, zone);
    QTEST(isDueAt(moment, zone), "isDue");
}

void TestReminder::onceADayIsCountedOnTheCalendar_data()
{
    QTest::addColumn<Instant>("last");
    QTest::addColumn<Instant>("now");
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<bool>("isDue");
    const auto row = [](const char *name, const char *last, const char *now, const char *zone, bool isDue) {
        QTest::newRow(name) << instant(last) << instant(now) << QByteArray(zone) << isDue;
    };
    row("five minutes later", "2026-11-20T18:00:00+01:00", "2026-11-20T18:05:00+01:00", berlin, false);
    row("at the same moment", "2026-11-20T18:00:00+01:00", "2026-11-20T18:00:00+01:00", berlin, false);
    row("at the end of the day", "2026-11-20T18:00:00+01:00", "2026-11-20T23:59:59.999+01:00", berlin, false);
    row("the next evening", "2026-11-20T18:00:00+01:00", "2026-11-21T18:00:00+01:00", berlin, true);
    row("the next evening, within 24 hours", "2026-11-20T23:59:59.999+01:00", "2026-11-21T18:00:00+01:00", berlin,
        true);
    row("the evening after the night of 23 hours", "2026-03-28T18:00:00+01:00", "2026-03-29T18:00:00+02:00", berlin,
        true);
    row("the evening after the night of 25 hours", "2026-10-24T18:00:00+02:00", "2026-10-25T18:00:00+01:00", berlin,
        true);
    row("in the hour that comes again before midnight", "2018-02-17T23:30:00-02:00", "2018-02-17T23:15:00-03:00",
        "America/Sao_Paulo", false);
    row("the evening after a midnight that comes twice", "2026-10-31T23:00:00-04:00", "2026-11-01T18:00:00-05:00",
        "America/Havana", true);
    row("a year ago on the same date", "2025-11-20T18:00:00+01:00", "2026-11-20T18:00:00+01:00", berlin, true);
    row("a date from the future, after the clock was set back", "2026-11-22T18:00:00+01:00",
        "2026-11-20T18:00:00+01:00", berlin, true);
    row("later today, after the clock was set back", "2026-11-20T22:00:00+01:00", "2026-11-20T18:00:00+01:00", berlin,
        false);
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
    QTEST(isReminderDue(snapshot), "isDue");
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
    QVERIFY(isDueAfter(stored));
    QVERIFY(!isDueAfter(instant("2026-11-20T20:00:00+01:00")));
}

// Reminded in Berlin at seven on Friday; then Tokyo, where that was Saturday already.
void TestReminder::whoTravelsIsRemindedByTheDayOfWhereTheyAre()
{
    auto snapshot = dueSnapshot();
    snapshot.lastReminder = instant("2026-11-20T19:00:00+01:00");
    snapshot.calendar = test::calendarIn("Asia/Tokyo");
    snapshot.now = instant("2026-11-21T18:30:00+09:00");
    QVERIFY(!isReminderDue(snapshot));
    snapshot.calendar = test::calendarIn("America/New_York");
    snapshot.now = instant("2026-11-20T18:30:00-05:00");
    QVERIFY(!isReminderDue(snapshot));
    snapshot.now = instant("2026-11-21T18:30:00-05:00");
    QVERIFY(isReminderDue(snapshot));
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
    QTEST(reminderRequest(streak, {}).body, "sentence");
}

void TestReminder::theReminderIsOfItsCategory()
{
    const auto moment = instant("2026-11-20T18:00:00.250Z");
    const auto request = reminderRequest(5, moment);
    QCOMPARE(request.identifier, reminderIdentifier(moment));
    QCOMPARE(request.title, QStringLiteral("Streak at Risk!"));
    QCOMPARE(request.categoryIdentifier, reminderCategory().identifier);
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
