// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/LaunchAtLogin.h"

#include "Platform/Linux/Autostart/AutostartPlace.h"
#include "support/FileSnapshot.h"
#include "support/OrdinaryUser.h"
#include "support/RecordingLoginItem.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

#include <optional>
#include <utility>

#include <sys/stat.h>

using namespace velquarin;
using namespace Qt::StringLiterals;
using velquarin::test::AsOrdinaryUser;
using velquarin::test::AutostartPlace;
using velquarin::test::namesIn;
using velquarin::test::RecordingLoginItem;
using velquarin::test::snapshotOf;

namespace {

// A switch and the desktop behind it. Reading the status at first is not among the calls.
struct World
{
    explicit World(LoginItemStatus status = LoginItemStatus::NotRegistered)
    {
        item.current = status;
        launchAtLogin.emplace(item);
        QObject::connect(&*launchAtLogin, &LaunchAtLogin::isEnabledWillChange,
                         [this](bool newValue) { announced << newValue; });
        atFirst = std::exchange(item.calls, {});
    }

    RecordingLoginItem item;
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
    void theCycleLastsAsLongAsTheFailures_data();
    void theCycleLastsAsLongAsTheFailures();
    void theCycleFollowsWhatTheDesktopSaysMeanwhile();
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
    QVERIFY(!world.launchAtLogin->isEnabled());
    QCOMPARE(world.announced, (QList<bool>{true, false}));
    QCOMPARE(world.item.calls, (QStringList{u"register"_s, u"status"_s, u"unregister"_s}));
}

void TestLaunchAtLogin::anUnregistrationThatFailsSwitchesBackOnAndRegistersOnce()
{
    World world(LoginItemStatus::Enabled);
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(false);
    QVERIFY(world.launchAtLogin->isEnabled());
    QCOMPARE(world.announced, (QList<bool>{false, true}));
    QCOMPARE(world.item.calls, (QStringList{u"unregister"_s, u"status"_s, u"register"_s}));
}

void TestLaunchAtLogin::aFailureWhoseStatusIsAsWantedIsAppliedAgain()
{
    World world(LoginItemStatus::Enabled);
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(true);
    QVERIFY(world.launchAtLogin->isEnabled());
    QCOMPARE(world.announced, (QList<bool>{true, true}));
    QCOMPARE(world.item.calls, (QStringList{u"register"_s, u"status"_s, u"register"_s}));
}

void TestLaunchAtLogin::aStatusThatRequiresApprovalSwitchesBackOff()
{
    World world(LoginItemStatus::RequiresApproval);
    world.item.failures = 1;
    world.launchAtLogin->setIsEnabled(true);
    QVERIFY(!world.launchAtLogin->isEnabled());
    QCOMPARE(world.item.calls.constLast(), u"unregister"_s);
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
        QCOMPARE(world.announced.size(), failures + 1);
        QCOMPARE(world.launchAtLogin->isEnabled(), failures == 0 ? wanted : !wanted);
        QCOMPARE(world.item.current == LoginItemStatus::Enabled, world.launchAtLogin->isEnabled());
    }
}

void TestLaunchAtLogin::theCycleFollowsWhatTheDesktopSaysMeanwhile()
{
    World world;
    world.item.failures = 3;
    connect(&*world.launchAtLogin, &LaunchAtLogin::isEnabledWillChange, this, [&] {
        if (world.announced.size() == 2)
            world.item.current = LoginItemStatus::Enabled;
    });
    world.launchAtLogin->setIsEnabled(true);
    QCOMPARE(world.announced, (QList<bool>{true, false, true, true}));
    QCOMPARE(world.item.calls.constLast(), u"register"_s);
    QVERIFY(world.launchAtLogin->isEnabled());
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
    LaunchAtLogin launchAtLogin(item);
    launchAtLogin.setIsEnabled(true);
    QVERIFY(!launchAtLogin.isEnabled());
    QCOMPARE(namesIn(place.folder), QStringList());
}

void TestLaunchAtLogin::anEntryThatCannotBeRemovedEndsAfterOneCorrection()
{
    const AutostartPlace place;
    const AsOrdinaryUser user(place.home.path());
    auto item = place.item();
    LaunchAtLogin launchAtLogin(item);
    launchAtLogin.setIsEnabled(true);
    QCOMPARE(::chmod(QFile::encodeName(place.folder).constData(), 0500), 0);
    const auto before = snapshotOf(place.home.path());
    launchAtLogin.setIsEnabled(false);
    QVERIFY(launchAtLogin.isEnabled());
    QCOMPARE(snapshotOf(place.home.path()), before);
    QCOMPARE(::chmod(QFile::encodeName(place.folder).constData(), 0700), 0);
}

void TestLaunchAtLogin::anythingInPlaceOfTheEntryEndsAfterOneCorrection()
{
    const AutostartPlace place;
    QVERIFY(QDir().mkpath(place.entry));
    auto item = place.item();
    LaunchAtLogin launchAtLogin(item);
    QVERIFY(!launchAtLogin.isEnabled());
    launchAtLogin.setIsEnabled(true);
    QVERIFY(!launchAtLogin.isEnabled());
}

VELQUARIN_TEST(TestLaunchAtLogin)
#include "tst_launchatlogin.moc"
