// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Reminder/NotificationService.h"

#include "Platform/PreferencesStore.h"
#include "Services/Reminder/ReminderDecision.h"

#include "support/Await.h"
#include "support/FakeClock.h"
#include "support/FakeTimers.h"
#include "support/MemoryPreferences.h"
#include "support/RecordingNotificationCenter.h"
#include "support/RecordingOutput.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

using namespace velquarin;
using namespace std::chrono_literals;
using test::await;
using test::instant;

namespace {

const QString lastReminderKey = QStringLiteral("lastStreakRiskNotification");
const QString sentLine = QStringLiteral("Streak risk notification sent");
constexpr auto berlin = "Europe/Berlin";

// A store into which another instance writes, too.
class SharedPreferences : public test::MemoryPreferences
{
public:
    [[nodiscard]] QFuture<void> takeOverChanges() override
    {
        values.insert(ofOthers);
        return MemoryPreferences::takeOverChanges();
    }

    QMap<QString, PreferenceValue> ofOthers;  //!< what it has written since
};

// Nine in the evening in Berlin, notifications allowed, and nothing stored.
struct World
{
    test::FakeClock clock{instant("2026-11-20T21:00:00+01:00"), berlin};
    SharedPreferences preferences;
    test::FakeTimers timers;
    test::RecordingOutput output;
    test::RecordingNotificationCenter center;
    std::unique_ptr<NotificationService> service = makeService();

    [[nodiscard]] std::unique_ptr<NotificationService> makeService()
    {
        return std::make_unique<NotificationService>(center, preferences, clock, timers, output);
    }

    void check(qint64 streak = 5, bool hasCommittedToday = false, bool enabled = true) const
    {
        service->checkAndNotifyStreakRisk(streak, hasCommittedToday, enabled);
    }

    //! Lets what the creation of the service began come to its end.
    void settle() { QCoreApplication::processEvents(); }

    [[nodiscard]] std::optional<PreferenceValue> lastReminder() const { return preferences.value(lastReminderKey); }
};

//! A world whose service knows that it may notify.
struct AuthorizedWorld : World
{
    AuthorizedWorld() { settle(); }
};

}  // namespace

class TestNotificationService : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }

    void aNewServiceIsNotAuthorizedUntilTheCenterHasAnswered();
    void creationDoesNotWaitForTheCenter();
    void theAnswerOfTheCenterAuthorizesOrDoesNot();
    void everyAssignmentIsAnnouncedBeforeItHappens();
    void leaveThatIsGivenAuthorizes();
    void leaveThatIsRefusedIsSilent();
    void anErrorInAskingIsALineAndARefusal();
    void theOnlyCategoryIsTheStreakAtRisk();

    void noReminderForAStreakOfZero();
    void noReminderBeforeSix();
    void atSixTheReminderNamesTheStreak();
    void noReminderAfterACommit();
    void switchedOffNothingIsSentAndNobodyIsAsked();
    void whatIsSentIsStoredAndSaid();
    void theMomentOfAcceptanceIsWhatIsStored();
    void aSecondCheckTheSameEveningSendsNothing();
    void whereAnotherInstanceHasRemindedNothingIsSent();
    void theNextEveningRemindsAgain();
    void aRestartedProgramRemembersTheReminder();
    void whatIsStoredWithoutBeingADateIsNoReminder();

    void whoIsNotAuthorizedIsAskedFirst();
    void aRefusalSendsNothingAndIsAskedAgain();
    void anErrorInAskingSendsNothing();
    void whoIsAuthorizedIsNotAsked();
    void aFailedDeliveryStoresNothingAndIsTriedAgain();

    void todaysCommitTakesTheReminderBack();
    void aReminderIsTakenBackOnlyOnce();
    void withoutACommitTheReminderStays();
    void nothingIsTakenBackThatWasNotPosted();
    void theEndOfTheDayTakesTheReminderBack();
    void theEndOfTheDayIsAwaitedOnlyWhileAReminderIsOpen();
    void aDayThatIsNotOverYetIsAwaitedFurther();
    void aCheckOnAnotherDayTakesTheReminderBack();
    void theDayOfATravellerEndsWhereTheyAre();
    void aReminderAcceptedAfterMidnightIsTakenBackAtOnce();

    void aServiceThatIsGoneHearsNoStatus();
    void aServiceThatIsGoneHearsNoLeave();
    void aServiceThatIsGoneSendsNothing();
    void aServiceThatIsGoneStoresNothing();
    void aServiceThatIsGoneAwaitsNoEndOfDay();
    void theCallerIsResumedWhenTheCheckIsThrough();
};

void TestNotificationService::aNewServiceIsNotAuthorizedUntilTheCenterHasAnswered()
{
    World world;
    QVERIFY(!world.service->isAuthorized());
    QSignalSpy changes(world.service.get(), &NotificationService::isAuthorizedWillChange);
    world.settle();
    QCOMPARE(world.center.statusQuestions(), 1);
    QCOMPARE(changes, QList<QVariantList>{{true}});
    QVERIFY(world.service->isAuthorized());
}

void TestNotificationService::creationDoesNotWaitForTheCenter()
{
    World world;
    world.center.holdAnswers();
    world.settle();
    QVERIFY(!world.service->isAuthorized());
    world.center.answer();
    QTRY_VERIFY(world.service->isAuthorized());
}

void TestNotificationService::theAnswerOfTheCenterAuthorizesOrDoesNot()
{
    AuthorizedWorld world;
    for (const bool isAuthorized : {false, true}) {
        world.center.setAuthorized(isAuthorized);
        world.service->checkAuthorizationStatus();
        QCOMPARE(world.service->isAuthorized(), isAuthorized);
    }
}

void TestNotificationService::everyAssignmentIsAnnouncedBeforeItHappens()
{
    AuthorizedWorld world;
    QList<QPair<bool, bool>> oldAndNew;
    connect(world.service.get(), &NotificationService::isAuthorizedWillChange, this,
            [&](bool newValue) { oldAndNew << qMakePair(world.service->isAuthorized(), newValue); });
    world.service->requestAuthorization();
    world.center.setAuthorized(false);
    world.service->checkAuthorizationStatus();
    const QList<QPair<bool, bool>> expected{{true, true}, {true, false}};
    QCOMPARE(oldAndNew, expected);
}

void TestNotificationService::leaveThatIsGivenAuthorizes()
{
    World world;
    QVERIFY(QCoro::waitFor(world.service->requestAuthorization()));
    QVERIFY(world.service->isAuthorized());
    QVERIFY(world.output.lines().isEmpty());
}

void TestNotificationService::leaveThatIsRefusedIsSilent()
{
    AuthorizedWorld world;
    world.center.grant(false);
    QVERIFY(!QCoro::waitFor(world.service->requestAuthorization()));
    QVERIFY(!world.service->isAuthorized());
    QVERIFY(world.output.lines().isEmpty());
}

void TestNotificationService::anErrorInAskingIsALineAndARefusal()
{
    AuthorizedWorld world;
    world.center.failToAsk("nobody \xe2\x80\x94 at all");
    QSignalSpy changes(world.service.get(), &NotificationService::isAuthorizedWillChange);
    QVERIFY(!QCoro::waitFor(world.service->requestAuthorization()));
    QVERIFY(!world.service->isAuthorized());
    QCOMPARE(changes, QList<QVariantList>{{false}});
    QCOMPARE(world.output.lines(), QStringList(QStringLiteral("Notification authorization error: nobody — at all")));
}

void TestNotificationService::theOnlyCategoryIsTheStreakAtRisk()
{
    World world;
    world.service->setupCategories();
    QVERIFY(world.center.categories() == QList<NotificationCategory>{reminderCategory()});
}

void TestNotificationService::noReminderForAStreakOfZero()
{
    AuthorizedWorld world;
    world.check(0);
    QVERIFY(world.center.added().isEmpty());
    QVERIFY(world.output.lines().isEmpty());
}

void TestNotificationService::noReminderBeforeSix()
{
    AuthorizedWorld world;
    world.clock.setNow(instant("2026-11-20T17:59:00+01:00"));
    world.check(5);
    QVERIFY(world.center.added().isEmpty());
}

void TestNotificationService::atSixTheReminderNamesTheStreak()
{
    AuthorizedWorld world;
    world.clock.setNow(instant("2026-11-20T18:00:00.250+01:00"));
    world.check(5);
    QCOMPARE(world.center.added().size(), 1);
    const auto request = world.center.added().constFirst();
    QCOMPARE(request.identifier, QStringLiteral("streak-risk-1795194000.25"));
    QCOMPARE(request.title, QStringLiteral("Streak at Risk!"));
    QCOMPARE(request.body, QStringLiteral("You haven't committed today. Your 5-day streak will reset at midnight!"));
    QCOMPARE(request.categoryIdentifier, QStringLiteral("STREAK_RISK"));
}

void TestNotificationService::noReminderAfterACommit()
{
    AuthorizedWorld world;
    world.check(5, true);
    QVERIFY(world.center.added().isEmpty());
}

void TestNotificationService::switchedOffNothingIsSentAndNobodyIsAsked()
{
    World world;
    world.center.setAuthorized(false);
    world.settle();
    world.check(5, false, false);
    QVERIFY(world.center.added().isEmpty());
    QCOMPARE(world.center.leaveQuestions(), 0);
    QVERIFY(world.output.lines().isEmpty());
    QVERIFY(world.preferences.values.isEmpty());
}

void TestNotificationService::whatIsSentIsStoredAndSaid()
{
    AuthorizedWorld world;
    world.check();
    QVERIFY(world.lastReminder() == PreferenceValue(world.clock.now()));
    QCOMPARE(world.output.lines(), QStringList(sentLine));
}

void TestNotificationService::theMomentOfAcceptanceIsWhatIsStored()
{
    AuthorizedWorld world;
    world.center.holdAnswers();
    world.check();
    QVERIFY(!world.lastReminder());
    world.clock.advance(3s);
    world.center.answer();
    QTRY_VERIFY(world.lastReminder() == PreferenceValue(instant("2026-11-20T21:00:03+01:00")));
}

void TestNotificationService::aSecondCheckTheSameEveningSendsNothing()
{
    AuthorizedWorld world;
    world.check();
    world.clock.advance(5min);
    world.check();
    world.clock.setNow(instant("2026-11-20T23:59:59.999+01:00"));
    world.check();
    QCOMPARE(world.center.added().size(), 1);
    QCOMPARE(world.output.lines(), QStringList(sentLine));
}

void TestNotificationService::whereAnotherInstanceHasRemindedNothingIsSent()
{
    AuthorizedWorld world;
    world.preferences.ofOthers = {{lastReminderKey, instant("2026-11-20T18:10:00+01:00")}};
    world.check();
    QVERIFY(world.center.added().empty());
    QCOMPARE(world.output.lines(), QStringList());
    world.clock.setNow(instant("2026-11-21T18:00:00+01:00"));
    world.check();
    QCOMPARE(world.center.added().size(), 1);
}

void TestNotificationService::theNextEveningRemindsAgain()
{
    AuthorizedWorld world;
    world.check(5);
    world.clock.setNow(instant("2026-11-21T00:05:00+01:00"));
    world.check(6);
    QCOMPARE(world.center.added().size(), 1);
    world.clock.setNow(instant("2026-11-21T18:00:00+01:00"));
    world.check(6);
    QCOMPARE(world.center.added().size(), 2);
    QVERIFY(world.lastReminder() == PreferenceValue(world.clock.now()));
}

void TestNotificationService::aRestartedProgramRemembersTheReminder()
{
    AuthorizedWorld world;
    world.check();
    world.service = world.makeService();
    world.settle();
    world.check();
    QCOMPARE(world.center.added().size(), 1);
}

void TestNotificationService::whatIsStoredWithoutBeingADateIsNoReminder()
{
    AuthorizedWorld world;
    world.preferences.set(lastReminderKey, QStringLiteral("2026-11-20T20:30:00.000Z"));
    world.check();
    QCOMPARE(world.center.added().size(), 1);
    QVERIFY(world.lastReminder() == PreferenceValue(world.clock.now()));
}

void TestNotificationService::whoIsNotAuthorizedIsAskedFirst()
{
    World world;
    world.center.setAuthorized(false);
    world.settle();
    world.center.holdAnswers();
    world.check();
    QCOMPARE(world.center.leaveQuestions(), 1);
    QVERIFY(world.center.added().isEmpty());
    world.center.answer();
    QTRY_COMPARE(world.center.added().size(), 1);
    QVERIFY(world.service->isAuthorized());
    world.center.answer();
    QTRY_COMPARE(world.output.lines(), QStringList(sentLine));
}

void TestNotificationService::aRefusalSendsNothingAndIsAskedAgain()
{
    World world;
    world.center.setAuthorized(false);
    world.settle();
    world.center.grant(false);
    world.check();
    world.check();
    QCOMPARE(world.center.leaveQuestions(), 2);
    QVERIFY(world.center.added().isEmpty());
    QVERIFY(!world.lastReminder());
    QVERIFY(world.output.lines().isEmpty());
}

void TestNotificationService::anErrorInAskingSendsNothing()
{
    World world;
    world.center.setAuthorized(false);
    world.settle();
    world.center.failToAsk("no service");
    world.check();
    QVERIFY(world.center.added().isEmpty());
    QVERIFY(!world.lastReminder());
    QCOMPARE(world.output.lines(), QStringList(QStringLiteral("Notification authorization error: no service")));
}

void TestNotificationService::whoIsAuthorizedIsNotAsked()
{
    AuthorizedWorld world;
    world.check();
    QCOMPARE(world.center.leaveQuestions(), 0);
    QCOMPARE(world.center.added().size(), 1);
}

void TestNotificationService::aFailedDeliveryStoresNothingAndIsTriedAgain()
{
    AuthorizedWorld world;
    world.center.failToAdd("the service is away");
    world.check();
    QVERIFY(!world.lastReminder());
    QVERIFY(world.timers.live().empty());
    QVERIFY(world.service->isAuthorized());
    QCOMPARE(world.output.lines(), QStringList(QStringLiteral("Failed to send notification: the service is away")));
    world.center.accept();
    world.clock.advance(5min);
    world.check();
    QCOMPARE(world.center.added().size(), 2);
    QVERIFY(world.lastReminder() == PreferenceValue(world.clock.now()));
    QCOMPARE(world.output.lines().constLast(), sentLine);
}

void TestNotificationService::todaysCommitTakesTheReminderBack()
{
    AuthorizedWorld world;
    world.check();
    world.check(6, true);
    QCOMPARE(world.center.withdrawn(), QStringList(world.center.added().constFirst().identifier));
    QVERIFY(world.timers.live().empty());
    QVERIFY(world.lastReminder());
}

void TestNotificationService::aReminderIsTakenBackOnlyOnce()
{
    AuthorizedWorld world;
    world.check();
    world.check(6, true);
    world.check(6, true);
    world.clock.advance(24h);
    world.check(6, true, false);
    QCOMPARE(world.center.withdrawn().size(), 1);
}

void TestNotificationService::withoutACommitTheReminderStays()
{
    AuthorizedWorld world;
    world.check();
    world.clock.advance(5min);
    world.check();
    world.check(5, false, false);
    QVERIFY(world.center.withdrawn().isEmpty());
    QCOMPARE(world.timers.live().size(), std::size_t(1));
}

void TestNotificationService::nothingIsTakenBackThatWasNotPosted()
{
    AuthorizedWorld world;
    world.check(5, true);
    world.center.failToAdd("the service is away");
    world.check();
    world.check(5, true);
    QVERIFY(world.center.withdrawn().isEmpty());
}

void TestNotificationService::theEndOfTheDayTakesTheReminderBack()
{
    AuthorizedWorld world;
    world.check();
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    QCOMPARE(world.timers.live()[0].interval, Timers::Seconds(3h));
    QVERIFY(!world.timers.live()[0].repeats);
    world.clock.advance(3h);
    world.timers.fire(0);
    QCOMPARE(world.center.withdrawn(), QStringList(world.center.added().constFirst().identifier));
    QVERIFY(world.timers.live().empty());
}

void TestNotificationService::theEndOfTheDayIsAwaitedOnlyWhileAReminderIsOpen()
{
    AuthorizedWorld world;
    world.check(0);
    QVERIFY(world.timers.live().empty());
}

// The clock was set back by an hour while the timer ran.
void TestNotificationService::aDayThatIsNotOverYetIsAwaitedFurther()
{
    AuthorizedWorld world;
    world.check();
    world.clock.advance(2h);
    world.timers.fire(0);
    QVERIFY(world.center.withdrawn().isEmpty());
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    QCOMPARE(world.timers.live()[0].interval, Timers::Seconds(1h));
    world.clock.advance(1h);
    world.timers.fire(0);
    QCOMPARE(world.center.withdrawn().size(), 1);
}

void TestNotificationService::aCheckOnAnotherDayTakesTheReminderBack()
{
    AuthorizedWorld world;
    world.check();
    world.clock.setNow(instant("2026-11-21T00:00:00+01:00"));
    world.check(5, false, false);
    QCOMPARE(world.center.withdrawn(), QStringList(world.center.added().constFirst().identifier));
    QVERIFY(world.timers.live().empty());
}

void TestNotificationService::theDayOfATravellerEndsWhereTheyAre()
{
    AuthorizedWorld world;
    world.clock.setNow(instant("2026-11-20T18:00:00+01:00"));
    world.check();
    world.clock.setZone("America/New_York");
    world.clock.advance(6h);
    world.timers.fire(0);
    QVERIFY(world.center.withdrawn().isEmpty());
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    QCOMPARE(world.timers.live()[0].interval, Timers::Seconds(6h));
    world.clock.advance(6h);
    world.timers.fire(0);
    QCOMPARE(world.center.withdrawn().size(), 1);
}

void TestNotificationService::aReminderAcceptedAfterMidnightIsTakenBackAtOnce()
{
    AuthorizedWorld world;
    world.clock.setNow(instant("2026-11-20T23:59:59.900+01:00"));
    world.center.holdAnswers();
    world.check();
    world.clock.advance(200ms);
    world.center.answer();
    QTRY_COMPARE(world.center.withdrawn().size(), 1);
    QVERIFY(world.timers.live().empty());
    QVERIFY(world.lastReminder() == PreferenceValue(instant("2026-11-21T00:00:00.100+01:00")));
}

void TestNotificationService::aServiceThatIsGoneHearsNoStatus()
{
    World world;
    world.center.holdAnswers();
    world.settle();
    QCOMPARE(world.center.statusQuestions(), 1);
    world.service.reset();
    world.center.answer();
    world.settle();
    QVERIFY(world.output.lines().isEmpty());
}

void TestNotificationService::aServiceThatIsGoneHearsNoLeave()
{
    World world;
    world.center.holdAnswers();
    world.center.failToAsk("nobody hears this");
    auto task = world.service->requestAuthorization();
    world.service.reset();
    world.center.answer();
    await(task);
    QVERIFY(world.output.lines().isEmpty());
}

void TestNotificationService::aServiceThatIsGoneSendsNothing()
{
    World world;
    world.center.holdAnswers();
    auto task = world.service->checkAndNotifyStreakRisk(5, false, true);
    QCOMPARE(world.center.leaveQuestions(), 1);
    world.service.reset();
    world.center.answer();
    await(task);
    QVERIFY(world.center.added().isEmpty());
}

void TestNotificationService::aServiceThatIsGoneStoresNothing()
{
    AuthorizedWorld world;
    world.center.holdAnswers();
    auto task = world.service->checkAndNotifyStreakRisk(5, false, true);
    QCOMPARE(world.center.added().size(), 1);
    world.service.reset();
    world.center.answer();
    await(task);
    QVERIFY(!world.lastReminder());
    QVERIFY(world.output.lines().isEmpty());
    QVERIFY(world.timers.live().empty());
}

void TestNotificationService::aServiceThatIsGoneAwaitsNoEndOfDay()
{
    AuthorizedWorld world;
    world.check();
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    world.service.reset();
    QVERIFY(world.timers.live().empty());
}

void TestNotificationService::theCallerIsResumedWhenTheCheckIsThrough()
{
    World world;
    world.center.holdAnswers();
    auto task = world.service->checkAndNotifyStreakRisk(5, false, true);
    QVERIFY(!task.isReady());
    world.center.answer();
    QTRY_COMPARE(world.center.added().size(), 1);
    QVERIFY(!task.isReady());
    world.center.answer();
    QCoro::waitFor(task);
    QCOMPARE(world.output.lines(), QStringList(sentLine));
}

VELQUARIN_TEST(TestNotificationService)
#include "tst_notificationservice.moc"
