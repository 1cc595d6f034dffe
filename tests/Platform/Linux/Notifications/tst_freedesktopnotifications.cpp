// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Notifications/FreedesktopNotifications.h"

#include "Platform/Linux/Session/SessionBus.h"

#include "support/Await.h"
#include "support/FakeNotificationServer.h"
#include "support/PrivateBus.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>
#include <optional>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;
using test::FakeNotificationServer;
using Mood = FakeNotificationServer::Mood;
using Audience = FakeNotificationServer::Audience;

namespace {

const QString serverName = QStringLiteral("org.freedesktop.Notifications");
const QString openKey = QStringLiteral("OPEN_APP");
const QString dismissKey = QStringLiteral("DISMISS");
const QString defaultKey = QStringLiteral("default");
constexpr auto serveArgument = "--serve-notifications";

NotificationCategory riskCategory()
{
    return {QStringLiteral("RISK"),
            {{openKey, QStringLiteral("Open Velquarin"), true}, {dismissKey, QStringLiteral("Dismiss"), false}}};
}

NotificationRequest riskRequest(const char *identifier = "risk-1")
{
    return {QString::fromLatin1(identifier), QStringLiteral("At <risk>"), QStringLiteral("You haven't & <won't>"),
            QStringLiteral("RISK")};
}

template <typename T>
QCoro::Task<> keepFailure(QCoro::Task<T> task, std::shared_ptr<std::optional<QString>> failure)
{
    try {
        co_await task;
        *failure = QString();
    } catch (const NotificationError &error) {
        *failure = QString::fromUtf8(error.what());
    }
}

// What went wrong, or nothing; waits for the end.
template <typename T>
QString failureOf(QCoro::Task<T> task)
{
    const auto failure = std::make_shared<std::optional<QString>>();
    keepFailure(std::move(task), failure);
    awaitThat([&] { return failure->has_value(); });
    return **failure;
}

// The program's side of the bus. The server runs in the same thread: a call that blocked would never return.
struct Desktop
{
    explicit Desktop(NotificationPatience patience = {})
        : center(std::make_unique<FreedesktopNotifications>(bus, patience))
        , opened(center.get(), &NotificationCenter::openRequested)
    {
        center->setCategory(riskCategory());
    }

    [[nodiscard]] QString add(const NotificationRequest &request = riskRequest()) const
    {
        return failureOf(center->add(request));
    }

    //! Returns when everything that the server has said so far has arrived here, and the other way round.
    void meetServer() const { QCOMPARE(QCoro::waitFor(center->isAuthorized()), true); }

    [[nodiscard]] QStringList tokens() const
    {
        QStringList tokens;
        for (const auto &arguments : opened)
            tokens << arguments.constFirst().toString();
        return tokens;
    }

    SessionBus bus;
    std::unique_ptr<FreedesktopNotifications> center;
    QSignalSpy opened;
};

// Short where the wait is to end without an answer, and long where one comes, on a busy machine too.
constexpr NotificationPatience patienceWith(Mood mood)
{
    return mood == Mood::IsSilent ? NotificationPatience{50ms, 50ms} : NotificationPatience();
}

// Whether the bus has been told to pass on the server's signals.
bool isListening(Desktop &desktop)
{
    const auto connection = desktop.bus.connection();
    const auto question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus.Debug.Stats"), QStringLiteral("GetAllMatchRules"));
    const auto reply = connection.call(question);
    if (reply.type() != QDBusMessage::ReplyMessage)
        qWarning() << "The bus does not tell its match rules:" << reply.errorMessage();
    const auto rules = qdbus_cast<QMap<QString, QStringList>>(reply.arguments().value(0));
    const auto text = rules.value(connection.baseService()).join(QLatin1Char('\n'));
    return text.contains(QLatin1String("ActionInvoked")) || text.contains(QLatin1String("NotificationClosed")) ||
           text.contains(QLatin1String("ActivationToken")) || text.contains(serverName);
}

}  // namespace

class TestFreedesktopNotifications : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        test::failOnAnyWarning();
        m_bus.start();
    }
    void cleanup()
    {
        m_bus.stop();
        m_bus.deactivate(serverName);
    }

    void aServerThatAnswersAuthorizes();
    void withoutAServerNothingIsAuthorizedAndAskingFails();
    void withoutABusNothingIsAuthorizedAndAskingFails();
    void aServerThatCanBeStartedIsStartedAndCounts();
    void aServerThatDoesNotAnswerAsItShouldDoesNotAuthorize_data();
    void aServerThatDoesNotAnswerAsItShouldDoesNotAuthorize();
    void aServerThatRefusesGivesNoLeaveAndIsNoError();
    void theReasonIsOneShortLine_data();
    void theReasonIsOneShortLine();

    void aNotificationArrivesWholeAtTheServer();
    void theBodyIsEscapedWhereTheServerReadsMarkup();
    void theClickItselfIsNoButtonWhereTheServerWouldDrawIt();
    void aServerWithoutActionsGetsNone();
    void aCategoryWithoutActionsLeavesTheClickItself();
    void aNotificationThatCannotBeShownIsAnError_data();
    void aNotificationThatCannotBeShownIsAnError();
    void afterAFailureTheNextNotificationIsANewOne();

    void aNewNotificationTakesThePlaceOfTheLast();
    void whatTheUserClosedIsNotReplaced_data();
    void whatTheUserClosedIsNotReplaced();
    void whatClosesAsSoonAsItIsShownIsNotReplaced();

    void whatBringsToTheForegroundOpensAndCloses_data();
    void whatBringsToTheForegroundOpensAndCloses();
    void dismissClosesWithoutOpening();
    void theActivationTokenIsPassedOn();
    void withoutATokenItIsEmpty();
    void signalsThatComeTwiceActOnce();
    void aServerThatSaysEverythingTwiceAndGivesNoTokenOpensOnce();
    void aServerThatGivesATokenAndHoldsOthersBackShowsTheReminder();
    void aTokenThatComesTooLateOpensNothingASecondTime();
    void othersNotificationsAreNotOurs();
    void aStrangerCannotActForTheServer();

    void withdrawingClosesOnce();
    void aSlowServerHoldsNothingUp();
    void aServerThatFailsToCloseHarmsNothing_data();
    void aServerThatFailsToCloseHarmsNothing();
    void withdrawingFromARestartedServerClosesNobodyElsesNotification();
    void withdrawingInTheMomentOfARestartClosesNobodyElsesNotification();

    void aRestartedServerIsAskedAnewAndItsNumbersForgotten();
    void aServerThatEndsWithoutAnAnswerIsAnError();
    void whoAnsweredTheQuestionsShowsTheReminderThoughAnotherCame();
    void aNewBusIsServedLikeTheFirst();
    void onlyWhileANotificationIsOpenTheBusIsListenedTo();
    void anAnswerThatComesTooLateForAnybodyDoesNothing();

private:
    test::PrivateBus m_bus;
};

void TestFreedesktopNotifications::aServerThatAnswersAuthorizes()
{
    FakeNotificationServer server;
    Desktop desktop;
    QVERIFY(QCoro::waitFor(desktop.center->isAuthorized()));
    QVERIFY(QCoro::waitFor(desktop.center->requestAuthorization()));
}

void TestFreedesktopNotifications::withoutAServerNothingIsAuthorizedAndAskingFails()
{
    Desktop desktop;
    QVERIFY(!QCoro::waitFor(desktop.center->isAuthorized()));
    const auto reason = QStringLiteral("No notification service is running");
    QCOMPARE(failureOf(desktop.center->requestAuthorization()), reason);
    QCOMPARE(desktop.add(), reason);
    desktop.center->withdraw();
}

void TestFreedesktopNotifications::withoutABusNothingIsAuthorizedAndAskingFails()
{
    m_bus.stop();
    Desktop desktop;
    QVERIFY(!QCoro::waitFor(desktop.center->isAuthorized()));
    const auto reason = QStringLiteral("There is no session bus");
    QCOMPARE(failureOf(desktop.center->requestAuthorization()), reason);
    QCOMPARE(desktop.add(), reason);
    desktop.center->withdraw();
}

void TestFreedesktopNotifications::aServerThatCanBeStartedIsStartedAndCounts()
{
    m_bus.stop();
    m_bus.activate(serverName, QCoreApplication::applicationFilePath() +
                                   QStringLiteral(" tst_freedesktopnotifications ") + QLatin1String(serveArgument));
    m_bus.start();
    Desktop desktop;
    QVERIFY(QCoro::waitFor(desktop.center->isAuthorized()));
    QVERIFY(QCoro::waitFor(desktop.center->requestAuthorization()));
    QVERIFY(QCoro::waitFor(desktop.center->isAuthorized()));
    QCOMPARE(desktop.add(), QString());
}

void TestFreedesktopNotifications::aServerThatDoesNotAnswerAsItShouldDoesNotAuthorize_data()
{
    QTest::addColumn<Mood>("mood");
    QTest::newRow("it fails") << Mood::Fails;
    QTest::newRow("it never answers") << Mood::IsSilent;
    QTest::newRow("it answers with something else") << Mood::TalksNonsense;
}

void TestFreedesktopNotifications::aServerThatDoesNotAnswerAsItShouldDoesNotAuthorize()
{
    QFETCH(Mood, mood);
    FakeNotificationServer server;
    server.moods.insert(QStringLiteral("GetCapabilities"), mood);
    Desktop desktop(patienceWith(mood));
    QVERIFY(!QCoro::waitFor(desktop.center->isAuthorized()));
    QVERIFY(!failureOf(desktop.center->requestAuthorization()).isEmpty());
}

void TestFreedesktopNotifications::aServerThatRefusesGivesNoLeaveAndIsNoError()
{
    FakeNotificationServer server;
    server.moods.insert(QStringLiteral("GetCapabilities"), Mood::Fails);
    server.errorName = QStringLiteral("org.freedesktop.DBus.Error.AccessDenied");
    Desktop desktop;
    QVERIFY(!QCoro::waitFor(desktop.center->isAuthorized()));
    QVERIFY(!QCoro::waitFor(desktop.center->requestAuthorization()));
}

void TestFreedesktopNotifications::theReasonIsOneShortLine_data()
{
    QTest::addColumn<Mood>("mood");
    QTest::addColumn<QString>("errorText");
    QTest::addColumn<QString>("reason");
    const auto outOfOrder = QStringLiteral("Out of order");
    QTest::newRow("the server's own words") << Mood::Fails << outOfOrder << outOfOrder;
    QTest::newRow("several lines become one") << Mood::Fails << QStringLiteral("Out of\n\torder\n") << outOfOrder;
    QTest::newRow("a novel is cut") << Mood::Fails << QString(5000, QLatin1Char('x')) << QString(200, QLatin1Char('x'));
    QTest::newRow("no words leave the name of the error")
        << Mood::Fails << QString() << QStringLiteral("org.freedesktop.DBus.Error.Failed");
    QTest::newRow("silence") << Mood::IsSilent << QString()
                             << QStringLiteral("The notification service does not answer");
    QTest::newRow("something else") << Mood::TalksNonsense << QString()
                                    << QStringLiteral("The notification service gave an answer that makes no sense");
}

void TestFreedesktopNotifications::theReasonIsOneShortLine()
{
    QFETCH(Mood, mood);
    QFETCH(QString, errorText);
    FakeNotificationServer server;
    server.moods.insert(QStringLiteral("GetCapabilities"), mood);
    server.errorText = errorText;
    Desktop desktop(patienceWith(mood));
    QTEST(failureOf(desktop.center->requestAuthorization()), "reason");
}

void TestFreedesktopNotifications::aNotificationArrivesWholeAtTheServer()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().size(), 1);
    const auto call = server.notified().constFirst();
    const auto id = QStringLiteral("io.velquarin.Velquarin");
    QCOMPARE(call.application, QStringLiteral("Velquarin"));
    QCOMPARE(call.replacesId, 0U);
    QCOMPARE(call.icon, id);
    QCOMPARE(call.summary, QStringLiteral("At <risk>"));
    QCOMPARE(call.body, QStringLiteral("You haven't & <won't>"));
    QCOMPARE(call.actions, QStringList({defaultKey, QStringLiteral("Open"), openKey, QStringLiteral("Open Velquarin"),
                                        dismissKey, QStringLiteral("Dismiss")}));
    QCOMPARE(call.timeout, -1);
    const QVariantMap hints{
        {QStringLiteral("urgency"), QVariant::fromValue(uchar(2))},
        {QStringLiteral("desktop-entry"), id},
        {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")},
        {QStringLiteral("x-velquarin-request"), QStringLiteral("risk-1")},
        {QStringLiteral("x-velquarin-category"), QStringLiteral("RISK")},
    };
    QCOMPARE(call.hints, hints);
}

void TestFreedesktopNotifications::theBodyIsEscapedWhereTheServerReadsMarkup()
{
    FakeNotificationServer server;
    server.capabilities << QStringLiteral("body-markup");
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constFirst().body, QStringLiteral("You haven't &amp; &lt;won't&gt;"));
    QCOMPARE(server.notified().constFirst().summary, QStringLiteral("At <risk>"));
}

void TestFreedesktopNotifications::theClickItselfIsNoButtonWhereTheServerWouldDrawIt()
{
    FakeNotificationServer server;
    server.name = QStringLiteral("Xfce Notify Daemon");
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constFirst().actions,
             QStringList({openKey, QStringLiteral("Open Velquarin"), dismissKey, QStringLiteral("Dismiss")}));
}

void TestFreedesktopNotifications::aServerWithoutActionsGetsNone()
{
    FakeNotificationServer server;
    server.capabilities = QStringList(QStringLiteral("body"));
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constFirst().actions, QStringList());
}

void TestFreedesktopNotifications::aCategoryWithoutActionsLeavesTheClickItself()
{
    FakeNotificationServer server;
    Desktop desktop;
    desktop.center->setCategory({});
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constFirst().actions, QStringList({defaultKey, QStringLiteral("Open")}));
}

void TestFreedesktopNotifications::aNotificationThatCannotBeShownIsAnError_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<Mood>("mood");
    QTest::addColumn<QString>("reason");
    const QList<QPair<Mood, QString>> moods{
        {Mood::Fails, QStringLiteral("Out of order")},
        {Mood::IsSilent, QStringLiteral("The notification service does not answer")},
        {Mood::TalksNonsense, QStringLiteral("The notification service gave an answer that makes no sense")},
    };
    for (const auto *member : {"GetServerInformation", "GetCapabilities", "Notify"}) {
        for (const auto &[mood, reason] : moods)
            QTest::addRow("%s: %s", member, qPrintable(reason)) << QString::fromLatin1(member) << mood << reason;
    }
}

void TestFreedesktopNotifications::aNotificationThatCannotBeShownIsAnError()
{
    QFETCH(QString, member);
    QFETCH(Mood, mood);
    FakeNotificationServer server;
    server.moods.insert(member, mood);
    Desktop desktop(patienceWith(mood));
    QTEST(desktop.add(), "reason");
}

void TestFreedesktopNotifications::afterAFailureTheNextNotificationIsANewOne()
{
    FakeNotificationServer server;
    Desktop desktop;
    server.moods.insert(QStringLiteral("Notify"), Mood::TalksNonsense);
    QVERIFY(!desktop.add().isEmpty());
    server.moods.clear();
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constLast().replacesId, 0U);
}

void TestFreedesktopNotifications::aNewNotificationTakesThePlaceOfTheLast()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(riskRequest("risk-1")), QString());
    const auto id = server.lastId();
    QCOMPARE(desktop.add(riskRequest("risk-2")), QString());
    QCOMPARE(server.closed(), QList<uint>{id});
    desktop.center->withdraw();
    QTRY_COMPARE(server.closed(), (QList<uint>{id, server.lastId()}));
}

void TestFreedesktopNotifications::whatTheUserClosedIsNotReplaced_data()
{
    QTest::addColumn<Audience>("audience");
    QTest::newRow("the server tells us alone") << Audience::Caller;
    QTest::newRow("the server tells everybody") << Audience::Everybody;
}

void TestFreedesktopNotifications::whatTheUserClosedIsNotReplaced()
{
    QFETCH(Audience, audience);
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    server.dismiss(server.lastId(), audience);
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constLast().replacesId, 0U);
}

void TestFreedesktopNotifications::whatClosesAsSoonAsItIsShownIsNotReplaced()
{
    FakeNotificationServer server;
    server.afterReply = [&](uint id) { server.dismiss(id); };
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    desktop.meetServer();
    desktop.center->withdraw();
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constLast().replacesId, 0U);
    QCOMPARE(server.closed(), QList<uint>());
}

void TestFreedesktopNotifications::whatBringsToTheForegroundOpensAndCloses_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<Audience>("audience");
    QTest::newRow("a click on the notification") << defaultKey << Audience::Caller;
    QTest::newRow("a click on the notification, told to everybody") << defaultKey << Audience::Everybody;
    QTest::newRow("the action that opens") << openKey << Audience::Caller;
    QTest::newRow("the action that opens, told to everybody") << openKey << Audience::Everybody;
}

void TestFreedesktopNotifications::whatBringsToTheForegroundOpensAndCloses()
{
    QFETCH(QString, action);
    QFETCH(Audience, audience);
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    server.invoke(server.lastId(), action, audience);
    QTRY_COMPARE(desktop.opened.size(), 1);
    QTRY_COMPARE(server.closed(), QList<uint>{server.lastId()});
}

void TestFreedesktopNotifications::dismissClosesWithoutOpening()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    server.invoke(server.lastId(), dismissKey);
    QTRY_COMPARE(server.closed(), QList<uint>{server.lastId()});
    QCOMPARE(desktop.opened.size(), 0);
}

void TestFreedesktopNotifications::theActivationTokenIsPassedOn()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    server.give(server.lastId() + 1, QStringLiteral("for another one"));
    server.give(server.lastId(), QStringLiteral("token-7"));
    server.invoke(server.lastId(), openKey);
    QTRY_COMPARE(desktop.tokens(), QStringList(QStringLiteral("token-7")));
}

void TestFreedesktopNotifications::withoutATokenItIsEmpty()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    server.invoke(server.lastId(), openKey);
    QTRY_COMPARE(desktop.tokens(), QStringList(QString()));
}

void TestFreedesktopNotifications::signalsThatComeTwiceActOnce()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    const auto id = server.lastId();
    for (const auto audience : {Audience::Caller, Audience::Everybody})
        server.invoke(id, openKey, audience);
    server.dismiss(id);
    server.dismiss(id);
    desktop.meetServer();
    QCOMPARE(desktop.opened.size(), 1);
    desktop.meetServer();
    QCOMPARE(server.closed(), QList<uint>{id});
}

// As GNOME does it: two of each signal, no token, and a click on the notification that is no button.
void TestFreedesktopNotifications::aServerThatSaysEverythingTwiceAndGivesNoTokenOpensOnce()
{
    FakeNotificationServer server;
    server.name = QStringLiteral("gnome-shell");
    server.capabilities = {QStringLiteral("actions"),     QStringLiteral("body"),        QStringLiteral("body-markup"),
                           QStringLiteral("icon-static"), QStringLiteral("persistence"), QStringLiteral("sound")};
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    const auto id = server.lastId();
    QCOMPARE(server.notified().constFirst().actions.constFirst(), defaultKey);
    QCOMPARE(server.notified().constFirst().body, QStringLiteral("You haven't &amp; &lt;won't&gt;"));
    for (int time = 0; time < 2; ++time)
        server.invoke(id, defaultKey, Audience::Everybody);
    for (int time = 0; time < 2; ++time)
        server.dismiss(id, Audience::Everybody);
    desktop.meetServer();
    QCOMPARE(desktop.tokens(), QStringList(QString()));
    QCOMPARE(desktop.add(riskRequest("the next evening")), QString());
    QCOMPARE(server.notified().constLast().replacesId, 0U);
}

// As Plasma does it: a token before the action, and a property that tells of "do not disturb", which urgency 2 passes.
void TestFreedesktopNotifications::aServerThatGivesATokenAndHoldsOthersBackShowsTheReminder()
{
    FakeNotificationServer server;
    server.name = QStringLiteral("Plasma");
    server.capabilities = {QStringLiteral("actions"), QStringLiteral("body"), QStringLiteral("body-markup"),
                           QStringLiteral("inhibitions")};
    server.holdsBack = true;
    Desktop desktop;
    QVERIFY(QCoro::waitFor(desktop.center->isAuthorized()));
    QVERIFY(QCoro::waitFor(desktop.center->requestAuthorization()));
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constFirst().hints.value(QStringLiteral("urgency")), QVariant::fromValue(uchar(2)));
    server.give(server.lastId(), QStringLiteral("kwin-7"));
    server.invoke(server.lastId(), openKey);
    QTRY_COMPARE(desktop.tokens(), QStringList(QStringLiteral("kwin-7")));
    QTRY_COMPARE(server.closed(), QList<uint>{server.lastId()});
}

void TestFreedesktopNotifications::aTokenThatComesTooLateOpensNothingASecondTime()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    server.invoke(server.lastId(), openKey);
    server.give(server.lastId(), QStringLiteral("token-7"));
    desktop.meetServer();
    QCOMPARE(desktop.tokens(), QStringList(QString()));
    QCOMPARE(desktop.add(), QString());
    server.invoke(server.lastId(), openKey);
    QTRY_COMPARE(desktop.tokens(), QStringList({QString(), QString()}));
}

void TestFreedesktopNotifications::othersNotificationsAreNotOurs()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    const auto foreignId = server.lastId() + 1;
    server.invoke(foreignId, defaultKey, Audience::Everybody);
    server.dismiss(foreignId, Audience::Everybody);
    desktop.meetServer();
    QCOMPARE(desktop.opened.size(), 0);
    QCOMPARE(server.closed(), QList<uint>());
    desktop.center->withdraw();
    QTRY_COMPARE(server.closed(), QList<uint>{server.lastId()});
}

void TestFreedesktopNotifications::aStrangerCannotActForTheServer()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    FakeNotificationServer stranger;
    stranger.invoke(server.lastId(), defaultKey, Audience::Everybody);
    stranger.dismiss(server.lastId(), Audience::Everybody);
    server.invoke(server.lastId() + 1, defaultKey);
    desktop.meetServer();
    QCOMPARE(desktop.opened.size(), 0);
    desktop.center->withdraw();
    QTRY_COMPARE(server.closed(), QList<uint>{server.lastId()});
}

void TestFreedesktopNotifications::withdrawingClosesOnce()
{
    FakeNotificationServer server;
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    desktop.center->withdraw();
    desktop.center->withdraw();
    desktop.meetServer();
    QCOMPARE(server.closed(), QList<uint>{server.lastId()});
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server.notified().constLast().replacesId, 0U);
}

// The server answers out of this very loop: had it stood still for the question, there would be no answer.
void TestFreedesktopNotifications::aSlowServerHoldsNothingUp()
{
    FakeNotificationServer server;
    server.moods = {{QStringLiteral("GetCapabilities"), Mood::TakesItsTime},
                    {QStringLiteral("Notify"), Mood::TakesItsTime}};
    Desktop desktop;
    QElapsedTimer clock;
    clock.start();
    auto added = desktop.center->add(riskRequest());
    QVERIFY(!added.isReady());
    QTRY_VERIFY(added.isReady());
    QVERIFY2(clock.elapsed() >= 4000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(failureOf(std::move(added)), QString());
    server.invoke(server.lastId(), openKey);
    QTRY_COMPARE(desktop.opened.size(), 1);
}

void TestFreedesktopNotifications::aServerThatFailsToCloseHarmsNothing_data()
{
    QTest::addColumn<Mood>("mood");
    QTest::newRow("it fails") << Mood::Fails;
    QTest::newRow("it never answers") << Mood::IsSilent;
    QTest::newRow("it answers with something else") << Mood::TalksNonsense;
}

void TestFreedesktopNotifications::aServerThatFailsToCloseHarmsNothing()
{
    QFETCH(Mood, mood);
    FakeNotificationServer server;
    server.moods.insert(QStringLiteral("CloseNotification"), mood);
    Desktop desktop;
    QCOMPARE(desktop.add(riskRequest("risk-1")), QString());
    desktop.center->withdraw();
    QTRY_COMPARE(server.closed(), QList<uint>{server.lastId()});
    QCOMPARE(desktop.add(riskRequest("risk-2")), QString());
    QCOMPARE(server.notified().constLast().replacesId, 0U);
}

void TestFreedesktopNotifications::withdrawingFromARestartedServerClosesNobodyElsesNotification()
{
    auto server = std::make_unique<FakeNotificationServer>();
    Desktop desktop;
    Desktop somebodyElse;
    QCOMPARE(desktop.add(), QString());
    const auto ours = server->lastId();
    server.reset();
    server = std::make_unique<FakeNotificationServer>();
    QCOMPARE(somebodyElse.add(riskRequest("theirs")), QString());
    QCOMPARE(server->lastId(), ours);
    desktop.center->withdraw();
    desktop.meetServer();
    QCOMPARE(server->closed(), QList<uint>());
    somebodyElse.center->withdraw();
    QTRY_COMPARE(server->closed(), QList<uint>{ours});
}

// Before the bus has told us that the first one went.
void TestFreedesktopNotifications::withdrawingInTheMomentOfARestartClosesNobodyElsesNotification()
{
    auto server = std::make_unique<FakeNotificationServer>();
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    server.reset();
    server = std::make_unique<FakeNotificationServer>();
    desktop.center->withdraw();
    desktop.meetServer();
    QCOMPARE(server->closed(), QList<uint>());
}

void TestFreedesktopNotifications::aRestartedServerIsAskedAnewAndItsNumbersForgotten()
{
    auto server = std::make_unique<FakeNotificationServer>();
    Desktop desktop;
    QCOMPARE(desktop.add(riskRequest("before")), QString());
    QCOMPARE(server->lastId(), 1U);
    server.reset();
    server = std::make_unique<FakeNotificationServer>();
    server->capabilities.clear();
    QCOMPARE(desktop.add(riskRequest("after")), QString());
    QCOMPARE(server->notified().size(), 1);
    QCOMPARE(server->notified().constFirst().replacesId, 0U);
    QCOMPARE(server->notified().constFirst().actions, QStringList());
    desktop.meetServer();
    QCOMPARE(server->closed(), QList<uint>());
}

void TestFreedesktopNotifications::aServerThatEndsWithoutAnAnswerIsAnError()
{
    auto server = std::make_unique<FakeNotificationServer>();
    server->moods.insert(QStringLiteral("Notify"), Mood::IsSilent);
    Desktop desktop(NotificationPatience{10min, 10min});
    auto added = desktop.center->add(riskRequest());
    QTRY_COMPARE(server->notified().size(), 1);
    server.reset();
    QCOMPARE(failureOf(std::move(added)), QStringLiteral("The notification service does not answer"));
}

// As when one desktop's shell takes the place of another, in the middle of our asking.
void TestFreedesktopNotifications::whoAnsweredTheQuestionsShowsTheReminderThoughAnotherCame()
{
    FakeNotificationServer first;
    std::unique_ptr<FakeNotificationServer> second;
    first.whenAskedWhatItCan = [&] {
        first.giveUpName();
        second = std::make_unique<FakeNotificationServer>();
    };
    Desktop desktop;
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(first.notified().size(), 1);
    QCOMPARE(second->notified().size(), 0);
    first.invoke(first.lastId(), openKey);
    QTRY_COMPARE(desktop.opened.size(), 1);
    QTRY_COMPARE(first.closed(), QList<uint>{first.lastId()});
}

void TestFreedesktopNotifications::aNewBusIsServedLikeTheFirst()
{
    auto server = std::make_unique<FakeNotificationServer>();
    Desktop desktop;
    QSignalSpy lost(&desktop.bus, &SessionBus::disconnected);
    QCOMPARE(desktop.add(), QString());
    m_bus.stop();
    QTRY_COMPARE(lost.size(), 1);
    QCOMPARE(desktop.add(), QStringLiteral("There is no session bus"));
    m_bus.start();
    server = std::make_unique<FakeNotificationServer>();
    QCOMPARE(desktop.add(), QString());
    QCOMPARE(server->notified().constFirst().replacesId, 0U);
    server->invoke(server->lastId(), openKey);
    QTRY_COMPARE(desktop.opened.size(), 1);
}

void TestFreedesktopNotifications::onlyWhileANotificationIsOpenTheBusIsListenedTo()
{
    FakeNotificationServer server;
    Desktop desktop;
    desktop.meetServer();
    QVERIFY(!isListening(desktop));
    QCOMPARE(desktop.add(riskRequest("risk-1")), QString());
    QVERIFY(isListening(desktop));
    desktop.center->withdraw();
    QVERIFY(!isListening(desktop));
    QCOMPARE(desktop.add(riskRequest("risk-2")), QString());
    server.dismiss(server.lastId());
    desktop.meetServer();
    QVERIFY(!isListening(desktop));
    server.moods.insert(QStringLiteral("Notify"), Mood::Fails);
    QCOMPARE(desktop.add(riskRequest("risk-3")), QStringLiteral("Out of order"));
    QVERIFY(!isListening(desktop));
}

void TestFreedesktopNotifications::anAnswerThatComesTooLateForAnybodyDoesNothing()
{
    FakeNotificationServer server;
    Desktop desktop;
    auto added = desktop.center->add(riskRequest());
    auto status = desktop.center->isAuthorized();
    desktop.center.reset();
    await(added);
    QVERIFY(QCoro::waitFor(status));
    QCOMPARE(server.notified().size(), 0);
}

namespace {

// What the bus starts as a server: lives as long as the bus does.
int serveNotifications(QCoreApplication &application)
{
    QDBusConnection::sessionBus().connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                                          QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                                          &application, SLOT(quit()));
    const FakeNotificationServer server;
    return QCoreApplication::exec();
}

int serveOrTest(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(QLatin1String(serveArgument)))
        return serveNotifications(application);
    return runAlone<TestFreedesktopNotifications>(argc, argv);
}

}  // namespace

VELQUARIN_TEST_RUN(serveOrTest)
#include "tst_freedesktopnotifications.moc"
