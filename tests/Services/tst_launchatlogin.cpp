// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/LaunchAtLogin.h"

#include "Platform/Linux/Autostart/AutostartPlace.h"
#include "Platform/Linux/Process/BootTimeTimers.h"
#include "support/FakeTimers.h"
#include "support/FileSnapshot.h"
#include "support/OrdinaryUser.h"
#include "support/RecordingLoginItem.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

#include <sys/stat.h>

using namespace velquarin;
using namespace Qt::StringLiterals;
using velquarin::test::AsOrdinaryUser;
using velquarin::test::AutostartPlace;
using velquarin::test::FakeTimers;
using velquarin::test::namesIn;
using velquarin::test::RecordingLoginItem;
using velquarin::test::snapshotOf;

namespace {

constexpr auto forEver = RecordingLoginItem::forEver;

// A switch and the desktop behind it, with a time of their own. Reading the status at first is not among the calls.
struct World
{
    explicit World(LoginItemStatus status = LoginItemStatus::NotRegistered)
    {
        item.current = status;
        launchAtLogin.emplace(item, timers);
        QObject::connect(&*launchAtLogin, &LaunchAtLogin::isEnabledWillChange,
                         [this](bool newValue) { announced << newValue; });
        atFirst = std::exchange(item.calls, {});
    }

    // Lets corrections fall due until none is; how many there were.
    int correct(int most = 100)
    {
        int rounds = 0;
        while (!timers.live().empty() && rounds++ < most)
            timers.fire(0);
        return rounds;
    }

    RecordingLoginItem item;
    FakeTimers timers;
    std::optional<LaunchAtLogin> launchAtLogin;
    QStringList atFirst;
    QList<bool> announced;
};

}  // namespace

class TestLaunchAtLogin : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void onlyEnabledReadsAsOn_data();
    void onlyEnabledReadsAsOn();
    void beingMadeChangesNothing();
    void anEnabledItemStartsOnAndSwitchingItOffUnregistersIt();
    void switchingOnRegisters();
    void everyAssignmentIsAnnouncedAndAppliedAlsoOfAnEqualValue();
    void theNewValueIsAnnouncedBeforeItIsStoredAndStoredBeforeItIsApplied();
    void itCanBeSetAsAProperty();
    void aRegistrationThatFailsSwitchesBackOffAndUnregistersOnce();
    void anUnregistrationThatFailsSwitchesBackOnAndRegistersOnce();
    void aFailureWhoseStatusIsAsWantedIsAppliedAgain();
    void aStatusThatRequiresApprovalSwitchesBackOff();
    void aFailureIsCorrectedOnALaterTurn();
    void theCycleLastsAsLongAsTheFailures_data();
    void theCycleLastsAsLongAsTheFailures();
    void theCycleBecomesSlowerAndNeverStops();
    void theCycleFollowsWhatTheDesktopSaysMeanwhile();
    void aNewerValueTakesThePlaceOfACorrection();
    void aNewerValueIsCorrectedAtOnceAgain();
    void nothingIsDueAfterASuccess();
    void anEndlessFailureNeitherHoldsUpTheLoopNorKeepsItBusy();
    void aCorrectionThatIsDueDoesNotOutliveItsOwner();
    void whatOthersChangeIsNotSeen();
    void aFolderThatCannotBeWrittenEndsAfterOneCorrection();
    void anEntryThatCannotBeRemovedEndsAfterOneCorrection();
    void anythingInPlaceOfTheEntryEndsAfterOneCorrection();
};

void TestLaunchAtLogin::onlyEnabledReadsAsOn_data()
{
    QTest::addColumn<LoginItemStatus>("status");
    QTest::addColumn<bool>("isOn");
    QTest::newRow("enabled is on") << LoginItemStatus::Enabled << true;
    QTest::newRow("not registered is off") << LoginItemStatus::NotRegistered << false;
    QTest::newRow("requires approval is off") << LoginItemStatus::RequiresApproval << false;
    QTest::newRow("not found is off") << LoginItemStatus::NotFound << false;
}

void TestLaunchAtLogin::onlyEnabledReadsAsOn()
{
    QFETCH(LoginItemStatus, status);
    const World world(status);
    QTEST(world.launchAtLogin->isEnabled(), "isOn");
}

void TestLaunchAtLogin::beingMadeChangesNothing()
{
    for (const auto status : {LoginItemStatus::Enabled, LoginItemStatus::NotRegistered}) {
        const World world(status);
        QCOMPARE(world.atFirst, QStringList{u"status"_s});
        QCOMPARE(world.announced, QList<bool>());
        QVERIFY(world.timers.live().empty());
    }
}

void TestLaunchAtLogin::anEnabledItemStartsOnAndSwitchingItOffUnregistersIt()
{
    World world(LoginItemStatus::Enabled);
    QVERIFY(world.launchAtLogin->isEnabled());
    world.launchAtLogin->setIsEnabled(false);
    QCOMPARE(world.item.calls, QStringList{u"unregister"_s});
    QCOMPARE(world.item.current, LoginItemStatus::NotRegistered);
    QVERIFY(!world.launchAtLogin->isEnabled());
}

void TestLaunchAtLogin::switchingOnRegisters()
{
    World world;
    world.launchAtLogin->setIsEnabled(true);
    QCOMPARE(world.item.calls, QStringList{u"register"_s});
    QVERIFY(world.launchAtLogin->isEnabled());
}

void TestLaunchAtLogin::everyAssignmentIsAnnouncedAndAppliedAlsoOfAnEqualValue()
{
    World world;
    for (const bool value : {false, true, true, false, false})
        world.launchAtLogin->setIsEnabled(value);
    QCOMPARE(world.announced, (QList<bool>{false, true, true, false, false}));
    QCOMPARE(world.item.calls,
             (QStringList{u"unregister"_s, u"register"_s, u"register"_s, u"unregister"_s, u"unregister"_s}));
}

void TestLaunchAtLogin::theNewValueIsAnnouncedBeforeItIsStoredAndStoredBeforeItIsApplied()
{
    World world;
    QList<bool> valuesMeanwhile;
    QStringList callsMeanwhile;
    connect(&*world.launchAtLogin, &LaunchAtLogin::isEnabledWillChange, this, [&] {
        valuesMeanwhile << world.launchAtLogin->isEnabled();
        callsMeanwhile << world.item.calls;
    });
    world.launchAtLogin->setIsEnabled(true);
    QCOMPARE(valuesMeanwhile, QList{false});
    QCOMPARE(callsMeanwhile, QStringList());
    QCOMPARE(world.item.calls, QStringList{u"register"_s});
}

void TestLaunchAtLogin::itCanBeSetAsAProperty()
{
    World world;
    QVERIFY(world.launchAtLogin->setProperty("isEnabled", true));
    QCOMPARE(world.launchAtLogin->property("isEnabled"), QVariant(true));
    QCOMPARE(world.item.calls, QStringList{u"register"_s});
}

void TestLaunchAtLogin::aRegistrationThatFailsSwitchesBackOffAndUnregistersOnce()
{
    World world;
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(true);
    QCOMPARE(world.correct(), 1);
    QVERIFY(!world.launchAtLogin->isEnabled());
    QCOMPARE(world.announced, (QList<bool>{true, false}));
    QCOMPARE(world.item.calls, (QStringList{u"register"_s, u"status"_s, u"unregister"_s}));
}

void TestLaunchAtLogin::anUnregistrationThatFailsSwitchesBackOnAndRegistersOnce()
{
    World world(LoginItemStatus::Enabled);
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(false);
    QCOMPARE(world.correct(), 1);
    QVERIFY(world.launchAtLogin->isEnabled());
    QCOMPARE(world.announced, (QList<bool>{false, true}));
    QCOMPARE(world.item.calls, (QStringList{u"unregister"_s, u"status"_s, u"register"_s}));
}

void TestLaunchAtLogin::aFailureWhoseStatusIsAsWantedIsAppliedAgain()
{
    World world(LoginItemStatus::Enabled);
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(true);
    QCOMPARE(world.correct(), 1);
    QVERIFY(world.launchAtLogin->isEnabled());
    QCOMPARE(world.announced, (QList<bool>{true, true}));
    QCOMPARE(world.item.calls, (QStringList{u"register"_s, u"status"_s, u"register"_s}));
}

void TestLaunchAtLogin::aStatusThatRequiresApprovalSwitchesBackOff()
{
    World world(LoginItemStatus::RequiresApproval);
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(true);
    QCOMPARE(world.correct(), 1);
    QVERIFY(!world.launchAtLogin->isEnabled());
    QCOMPARE(world.item.calls.constLast(), u"unregister"_s);
}

void TestLaunchAtLogin::aFailureIsCorrectedOnALaterTurn()
{
    World world;
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(true);
    QVERIFY(world.launchAtLogin->isEnabled());
    QCOMPARE(world.item.calls, QStringList{u"register"_s});
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    QCOMPARE(world.timers.live().front().interval.count(), 0.0);
}

void TestLaunchAtLogin::theCycleLastsAsLongAsTheFailures_data()
{
    QTest::addColumn<int>("failures");
    for (const int failures : {0, 1, 2, 3, 10, 90})
        QTest::addRow("of %d failures", failures) << failures;
}

void TestLaunchAtLogin::theCycleLastsAsLongAsTheFailures()
{
    QFETCH(int, failures);
    for (const bool wanted : {true, false}) {
        World world(wanted ? LoginItemStatus::NotRegistered : LoginItemStatus::Enabled);
        world.item.failures = failures;
        world.launchAtLogin->setIsEnabled(wanted);
        QCOMPARE(world.correct(), failures);
        QCOMPARE(world.announced.size(), failures + 1);
        QCOMPARE(world.launchAtLogin->isEnabled(), failures == 0 ? wanted : !wanted);
        QCOMPARE(world.item.current == LoginItemStatus::Enabled, world.launchAtLogin->isEnabled());
    }
}

void TestLaunchAtLogin::theCycleBecomesSlowerAndNeverStops()
{
    World world;
    world.item.failures = forEver;
    world.launchAtLogin->setIsEnabled(true);
    QList<double> pauses;
    for (int round = 0; round < 10; ++round) {
        QCOMPARE(world.timers.live().size(), std::size_t(1));
        pauses << world.timers.live().front().interval.count();
        world.timers.fire(0);
    }
    QCOMPARE(pauses, (QList<double>{0, 1, 2, 4, 8, 16, 32, 60, 60, 60}));
    constexpr int many = 100'000;
    QCOMPARE(world.correct(many), many + 1);
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    QCOMPARE(world.announced.size(), many + 11);
}

void TestLaunchAtLogin::theCycleFollowsWhatTheDesktopSaysMeanwhile()
{
    World world;
    world.item.failures = 3;
    world.launchAtLogin->setIsEnabled(true);
    world.timers.fire(0);
    QVERIFY(!world.launchAtLogin->isEnabled());
    world.item.current = LoginItemStatus::Enabled;
    world.timers.fire(0);
    QVERIFY(world.launchAtLogin->isEnabled());
    QCOMPARE(world.item.calls.constLast(), u"register"_s);
    QCOMPARE(world.correct(), 1);
    QVERIFY(world.launchAtLogin->isEnabled());
}

void TestLaunchAtLogin::aNewerValueTakesThePlaceOfACorrection()
{
    World world;
    world.item.failures = 2;
    world.launchAtLogin->setIsEnabled(true);
    world.timers.fire(0);
    QVERIFY(!world.launchAtLogin->isEnabled());
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    world.launchAtLogin->setIsEnabled(true);
    QVERIFY(world.timers.live().empty());
    QVERIFY(world.launchAtLogin->isEnabled());
    QCOMPARE(world.item.current, LoginItemStatus::Enabled);
}

void TestLaunchAtLogin::aNewerValueIsCorrectedAtOnceAgain()
{
    World world;
    world.item.failures = forEver;
    world.launchAtLogin->setIsEnabled(true);
    world.correct(5);
    QCOMPARE(world.timers.live().front().interval.count(), 16.0);
    world.launchAtLogin->setIsEnabled(true);
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    QCOMPARE(world.timers.live().front().interval.count(), 0.0);
}

void TestLaunchAtLogin::nothingIsDueAfterASuccess()
{
    World world;
    world.launchAtLogin->setIsEnabled(true);
    QVERIFY(world.timers.live().empty());
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(false);
    world.timers.fire(0);
    QVERIFY(world.timers.live().empty());
}

void TestLaunchAtLogin::anEndlessFailureNeitherHoldsUpTheLoopNorKeepsItBusy()
{
    RecordingLoginItem item;
    item.failures = forEver;
    BootTimeTimers timers;
    LaunchAtLogin launchAtLogin(item, timers);
    const auto begin = std::chrono::steady_clock::now();
    QSignalSpy announced(&launchAtLogin, &LaunchAtLogin::isEnabledWillChange);
    launchAtLogin.setIsEnabled(true);
    QCOMPARE(announced.size(), 1);
    QVERIFY(announced.wait());
    QVERIFY(!launchAtLogin.isEnabled());
    // The next round is a second away, and the one after it two more: turns alone bring none.
    int turns = 0;
    std::function<void()> turn = [&] {
        if (++turns < 1000)
            QMetaObject::invokeMethod(this, turn, Qt::QueuedConnection);
    };
    turn();
    QTRY_COMPARE(turns, 1000);
    const auto rounds = announced.size() - 2;
    QVERIFY(std::chrono::seconds(rounds) <= std::chrono::steady_clock::now() - begin);
    QVERIFY(rounds > 0 || announced.wait());
}

void TestLaunchAtLogin::aCorrectionThatIsDueDoesNotOutliveItsOwner()
{
    World world;
    world.item.failures = forEver;
    world.launchAtLogin->setIsEnabled(true);
    QCOMPARE(world.timers.live().size(), std::size_t(1));
    world.launchAtLogin.reset();
    QVERIFY(world.timers.live().empty());
}

void TestLaunchAtLogin::whatOthersChangeIsNotSeen()
{
    World world;
    world.item.current = LoginItemStatus::Enabled;
    QVERIFY(!world.launchAtLogin->isEnabled());
    QCOMPARE(world.item.calls, QStringList());
}

void TestLaunchAtLogin::aFolderThatCannotBeWrittenEndsAfterOneCorrection()
{
    const AutostartPlace place;
    const AsOrdinaryUser user(place.home.path());
    QVERIFY(QDir().mkpath(place.folder));
    QCOMPARE(::chmod(QFile::encodeName(place.folder).constData(), 0500), 0);
    auto item = place.item();
    FakeTimers timers;
    LaunchAtLogin launchAtLogin(item, timers);
    launchAtLogin.setIsEnabled(true);
    timers.fire(0);
    QVERIFY(!launchAtLogin.isEnabled());
    QVERIFY(timers.live().empty());
    QCOMPARE(namesIn(place.folder), QStringList());
}

void TestLaunchAtLogin::anEntryThatCannotBeRemovedEndsAfterOneCorrection()
{
    const AutostartPlace place;
    const AsOrdinaryUser user(place.home.path());
    auto item = place.item();
    FakeTimers timers;
    LaunchAtLogin launchAtLogin(item, timers);
    launchAtLogin.setIsEnabled(true);
    QCOMPARE(::chmod(QFile::encodeName(place.folder).constData(), 0500), 0);
    const auto before = snapshotOf(place.home.path());
    launchAtLogin.setIsEnabled(false);
    timers.fire(0);
    QVERIFY(launchAtLogin.isEnabled());
    QVERIFY(timers.live().empty());
    QCOMPARE(snapshotOf(place.home.path()), before);
    QCOMPARE(::chmod(QFile::encodeName(place.folder).constData(), 0700), 0);
}

void TestLaunchAtLogin::anythingInPlaceOfTheEntryEndsAfterOneCorrection()
{
    const AutostartPlace place;
    QVERIFY(QDir().mkpath(place.entry));
    auto item = place.item();
    FakeTimers timers;
    LaunchAtLogin launchAtLogin(item, timers);
    QVERIFY(!launchAtLogin.isEnabled());
    launchAtLogin.setIsEnabled(true);
    timers.fire(0);
    QVERIFY(!launchAtLogin.isEnabled());
    QVERIFY(timers.live().empty());
}

VELQUARIN_TEST(TestLaunchAtLogin)
#include "tst_launchatlogin.moc"
