// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/SniStatusItem.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/Linux/StatusItem/DbusMenuLayout.h"
#include "Platform/Linux/StatusItem/LinuxStatusItem.h"
#include "Platform/Linux/StatusItem/StatusNotifierWatch.h"
#include "Platform/Linux/Windows/DesktopAppearance.h"
#include "support/DbusTesting.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QDBusConnectionInterface>
#include <QMenu>
#include <QScreen>

#include <memory>

#include <sys/prctl.h>

using namespace velquarin;

namespace {

const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuPath = QStringLiteral("/StatusNotifierMenu");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

const StatusItemAppearance syncing{QStringLiteral("arrow.triangle.2.circlepath"), true, QStringLiteral("Syncing"), {}};
const StatusItemAppearance waiting{QStringLiteral("flame"), true, QStringLiteral("Velquarin"), QStringLiteral(" 12")};
const StatusItemAppearance committed{QStringLiteral("flame.fill"), false, QStringLiteral("Velquarin"),
                                     QStringLiteral(" 13")};

// The watcher lives in this process, and hosts are known by their process's name.
class ProcessName
{
public:
    explicit ProcessName(const char *name)
    {
        prctl(PR_GET_NAME, m_before.data());
        prctl(PR_SET_NAME, name);
    }
    ProcessName(const ProcessName &) = delete;
    ProcessName &operator=(const ProcessName &) = delete;
    ~ProcessName() { prctl(PR_SET_NAME, m_before.data()); }

private:
    std::array<char, 16> m_before{};
};

}  // namespace

class TestSniStatusItem : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void whereThereIsNoWatcherThatIsSaidOnce();
    void whereThereIsAWatcherItsHostIsToldOnce();
    void anItemIsAnnouncedToTheWatcher();
    void nothingIsAnnouncedBeforeThereIsSomethingToShow();
    void aWatcherThatSomebodyShowsIsToldAtOnce();
    void aBarThatIsJustStartingIsToldWhenItLooks();
    void aWatcherThatNobodyShowsIsToldInTheEnd();
    void whoShowsWhatIsCollectedComesAndGoes();
    void aBarThatShowsBeforeItsProcessIsKnownIsWaitedFor();
    void aBarOfAnotherWatcherDoesNotCount();
    void aWatcherThatComesLaterIsTold();
    void aWatcherThatDoesNotAnswerYetIsToldWhenItDoes();
    void aWatcherThatRestartsIsToldAgain();
    void aWatcherThatReplacesAnotherIsTold();
    void theItemLeavesTheBusWithTheWatcher();
    void whatNeverChangesIsAlwaysThere_data();
    void whatNeverChangesIsAlwaysThere();
    void aLabelHostGetsANameAndALabel();
    void aCommittedDayIsNoTemplate();
    void aWideHostGetsWidePictures();
    void swaybarGetsNoColourBrighterThanItsAlpha();
    void anUnknownHostGetsSquaresAndTheLabel();
    void withoutATitleThereIsNoLabelAtAll();
    void aHostThatBreaksOnLabelsGetsNone();
    void theToolTipSaysItInWords();
    void theToolTipHoldsNoMarkup();
    void aSinglePropertyCanBeRead();
    void aPropertyThatIsNotThereAnswersWithAnError();
    void noPropertyCanBeSet();
    void aNewTitleIsSignalledWithItsText();
    void aTitleThatEndsIsSignalledEmptyAndInvalidated();
    void aHostThatShowsLabelsIsToldOfItOnceItHasReadTheItem();
    void anEqualAppearanceSignalsNothing();
    void onlyWhatChangedIsSignalled();
    void aChangeOfHostChangesTheMode();
    void aClickActivates_data();
    void aClickActivates();
    void anActivationTokenIsUsedOnce();
    void aRightClickOpensOurMenuWhereTheHostDrawsNone();
    void ourMenuIsAsDarkAsThePanel_data();
    void ourMenuIsAsDarkAsThePanel();
    void scrollingDoesNothing();
    void wrongCallsAnswerWithErrors();
    void theMenuHasThreeEntries();
    void onAMenuOnlyHostTheMenuOpensTheProgram();
    void theItemDescribesItself();

private:
    void makeItem(const StatusItemAppearance &appearance = waiting);
    void showWatcher();
    QDBusMessage ask(const QString &interface, const char *method, const QVariantList &arguments = {});
    QVariantMap properties();
    DbusMenuLayoutItem menu();
    std::unique_ptr<test::SignalRecorder> record();
    void settle() { ask(itemInterface, "Scroll", {0, QStringLiteral("vertical")}); }
    [[nodiscard]] QString address() const { return m_bus->connection().baseService(); }

    std::unique_ptr<test::SecondConnection> m_host;
    std::unique_ptr<test::FakeStatusWatcher> m_watcher;
    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<LinuxStatusItem> m_item;
    int m_refreshed = 0;
};

void TestSniStatusItem::init()
{
    test::failOnAnyWarning();
    qunsetenv("XDG_CURRENT_DESKTOP");
    m_host = std::make_unique<test::SecondConnection>("host");
    m_watcher = std::make_unique<test::FakeStatusWatcher>(**m_host);
    m_bus = std::make_unique<SessionBus>();
    m_refreshed = 0;
}

void TestSniStatusItem::cleanup()
{
    m_item.reset();
    m_bus.reset();
    m_watcher.reset();
    m_host.reset();
}

void TestSniStatusItem::makeItem(const StatusItemAppearance &appearance)
{
    m_item = std::make_unique<LinuxStatusItem>(*m_bus, QStringLiteral("/our/icons"));
    m_item->setMenu({{QStringLiteral("Refresh"), QStringLiteral("r"), [this] { ++m_refreshed; }},
                     {},
                     {QStringLiteral("Quit Velquarin"), QStringLiteral("q"), [] {}}});
    m_item->setAppearance(appearance);
}

void TestSniStatusItem::showWatcher()
{
    const auto before = m_watcher->announced.size();
    m_watcher->appear();
    QTRY_COMPARE(m_watcher->announced.size(), before + 1);
}

QDBusMessage TestSniStatusItem::ask(const QString &interface, const char *method, const QVariantList &arguments)
{
    return test::answerOf(**m_host, address(), itemPath, interface, method, arguments);
}

QVariantMap TestSniStatusItem::properties()
{
    return qdbus_cast<QVariantMap>(ask(propertiesInterface, "GetAll", {itemInterface}).arguments().value(0));
}

DbusMenuLayoutItem TestSniStatusItem::menu()
{
    const auto reply = test::answerOf(**m_host, address(), menuPath, QStringLiteral("com.canonical.dbusmenu"),
                                      "GetLayout", {0, -1, QStringList()});
    return qdbus_cast<DbusMenuLayoutItem>(reply.arguments().value(1));
}

// Listens from now on: the answer to a call that follows the subscription proves that the bus knows of it.
std::unique_ptr<test::SignalRecorder> TestSniStatusItem::record()
{
    auto recorder = std::make_unique<test::SignalRecorder>(
        **m_host, address(), itemPath, itemInterface,
        QStringList{QStringLiteral("NewIcon"), QStringLiteral("NewToolTip"), QStringLiteral("NewTitle"),
                    QStringLiteral("NewStatus"), QStringLiteral("XAyatanaNewLabel")});
    (*m_host)->connect(address(), itemPath, propertiesInterface, QStringLiteral("PropertiesChanged"), recorder.get(),
                       SLOT(record(QDBusMessage)));
    settle();
    return recorder;
}

void TestSniStatusItem::whereThereIsNoWatcherThatIsSaidOnce()
{
    StatusNotifierWatch watch(m_bus->connection());
    QSignalSpy absent(&watch, &StatusNotifierWatch::absent);
    QSignalSpy appeared(&watch, &StatusNotifierWatch::appeared);
    QTRY_COMPARE(absent.size(), 1);
    settle();
    QCOMPARE(absent.size(), 1);
    QCOMPARE(appeared.size(), 0);
}

void TestSniStatusItem::whereThereIsAWatcherItsHostIsToldOnce()
{
    const ProcessName name("waybar");
    m_watcher->appear();
    StatusNotifierWatch watch(m_bus->connection());
    QSignalSpy absent(&watch, &StatusNotifierWatch::absent);
    QSignalSpy appeared(&watch, &StatusNotifierWatch::appeared);
    QTRY_COMPARE(appeared.size(), 1);
    QCOMPARE(appeared.at(0).at(0).value<StatusHost>(), (StatusHost{CountDisplay::Wide, false, false}));
    settle();
    QCOMPARE(appeared.size(), 1);
    QCOMPARE(absent.size(), 0);
}

void TestSniStatusItem::anItemIsAnnouncedToTheWatcher()
{
    m_watcher->appear();
    makeItem();
    QTRY_COMPARE(m_watcher->announced, QStringList{address() + itemPath});
}

void TestSniStatusItem::nothingIsAnnouncedBeforeThereIsSomethingToShow()
{
    m_watcher->appear();
    m_item = std::make_unique<LinuxStatusItem>(*m_bus, QStringLiteral("/our/icons"));
    settle();
    settle();
    QVERIFY(m_watcher->announced.isEmpty());
    m_item->setAppearance(syncing);
    QTRY_COMPARE(m_watcher->announced.size(), 1);
}

void TestSniStatusItem::aWatcherThatSomebodyShowsIsToldAtOnce()
{
    m_watcher->viewerComes();
    makeItem();
    showWatcher();
    m_watcher->viewerComes();
    settle();
    QCOMPARE(m_watcher->announced.size(), 1);
}

// One that reads the list and listens for additions only afterwards would never show what came in between.
void TestSniStatusItem::aBarThatIsJustStartingIsToldWhenItLooks()
{
    m_watcher->viewerGoes();
    m_watcher->appear();
    StatusNotifierWatch watch(m_bus->connection());
    QSignalSpy appeared(&watch, &StatusNotifierWatch::appeared);
    QTRY_COMPARE(m_watcher->questions, 1);
    settle();
    QCOMPARE(appeared.size(), 0);
    m_watcher->viewerComes();
    QVERIFY(appeared.wait(1000));
    m_watcher->viewerComes();
    settle();
    QCOMPARE(appeared.size(), 1);
}

void TestSniStatusItem::aWatcherThatNobodyShowsIsToldInTheEnd()
{
    m_watcher->viewerGoes();
    makeItem();
    showWatcher();
    settle();
    QCOMPARE(m_watcher->announced.size(), 1);
}

void TestSniStatusItem::whoShowsWhatIsCollectedComesAndGoes()
{
    m_watcher->viewerGoes();
    m_watcher->appear();
    StatusNotifierWatch watch(m_bus->connection());
    QSignalSpy appeared(&watch, &StatusNotifierWatch::appeared);
    QSignalSpy shown(&watch, &StatusNotifierWatch::shownChanged);
    QTRY_COMPARE(appeared.size(), 1);
    QCOMPARE(appeared.first().at(1).toBool(), false);

    m_watcher->viewerComes();
    QTRY_COMPARE(shown.size(), 1);
    QCOMPARE(shown.last().first().toBool(), true);
    m_watcher->tellThatOneWent();
    QTRY_COMPARE(m_watcher->questions, 2);
    settle();
    QCOMPARE(shown.size(), 1);
    m_watcher->viewerGoes();
    m_watcher->tellThatOneWent();
    QTRY_COMPARE(shown.size(), 2);
    QCOMPARE(shown.last().first().toBool(), false);
    QCOMPARE(appeared.size(), 1);
}

// GNOME's takes its name and says that it shows in one breath.
void TestSniStatusItem::aBarThatShowsBeforeItsProcessIsKnownIsWaitedFor()
{
    const ProcessName name("gnome-shell");
    StatusNotifierWatch watch(m_bus->connection());
    QList<CountDisplay> displays;
    connect(&watch, &StatusNotifierWatch::appeared, this,
            [&](const StatusHost &host) { displays.append(host.display); });
    QSignalSpy absent(&watch, &StatusNotifierWatch::absent);
    QTRY_COMPARE(absent.size(), 1);
    m_watcher->appear();
    m_watcher->viewerComes();
    QTRY_COMPARE(displays, QList{CountDisplay::Label});
    m_watcher->disappear();
    QTRY_COMPARE(absent.size(), 2);
    QCOMPARE(displays.size(), 1);
}

void TestSniStatusItem::aBarOfAnotherWatcherDoesNotCount()
{
    m_watcher->viewerGoes();
    m_watcher->appear();
    StatusNotifierWatch watch(m_bus->connection());
    QSignalSpy appeared(&watch, &StatusNotifierWatch::appeared);
    QTRY_COMPARE(m_watcher->questions, 1);
    test::SecondConnection other("other");
    test::FakeStatusWatcher stranger(*other);
    stranger.viewerComes();
    test::answerOf(*other, address(), itemPath, itemInterface, "Scroll");
    settle();
    QCOMPARE(appeared.size(), 0);
}

void TestSniStatusItem::aWatcherThatComesLaterIsTold()
{
    makeItem();
    QVERIFY(properties().isEmpty());
    showWatcher();
    QCOMPARE(m_watcher->announced, QStringList{address() + itemPath});
}

// Budgie's takes its name first and offers its object afterwards.
void TestSniStatusItem::aWatcherThatDoesNotAnswerYetIsToldWhenItDoes()
{
    m_watcher->isReady = false;
    makeItem();
    m_watcher->appear();
    QTRY_COMPARE(m_watcher->refusals, 2);  // whether somebody shows what it collects, and the announcement
    m_watcher->isReady = true;
    m_watcher->viewerComes();
    QTRY_COMPARE(m_watcher->announced, QStringList{address() + itemPath});
    m_watcher->viewerComes();
    settle();
    QCOMPARE(m_watcher->announced.size(), 1);
}

void TestSniStatusItem::aWatcherThatRestartsIsToldAgain()
{
    makeItem();
    showWatcher();
    m_watcher->disappear();
    showWatcher();
    QCOMPARE(m_watcher->announced, (QStringList{address() + itemPath, address() + itemPath}));
    QCOMPARE(properties().value(QStringLiteral("Id")).toString(), QStringLiteral("velquarin"));
}

void TestSniStatusItem::aWatcherThatReplacesAnotherIsTold()
{
    const auto name = QStringLiteral("org.kde.StatusNotifierWatcher");
    QVERIFY((*m_host)->interface()->registerService(name, QDBusConnectionInterface::ReplaceExistingService,
                                                    QDBusConnectionInterface::AllowReplacement));
    makeItem();
    QTRY_COMPARE(m_watcher->announced.size(), 1);

    test::SecondConnection other("other");
    test::FakeStatusWatcher replacement(*other);
    QVERIFY(other->interface()->registerService(name, QDBusConnectionInterface::ReplaceExistingService));
    QTRY_COMPARE(replacement.announced, QStringList{address() + itemPath});
}

void TestSniStatusItem::theItemLeavesTheBusWithTheWatcher()
{
    makeItem();
    showWatcher();
    m_watcher->disappear();
    QTRY_VERIFY(properties().isEmpty());
}

void TestSniStatusItem::whatNeverChangesIsAlwaysThere_data()
{
    QTest::addColumn<QByteArray>("process");
    QTest::newRow("with a label") << QByteArray("gnome-shell");
    QTest::newRow("with a wide picture") << QByteArray("waybar");
    QTest::newRow("with a square picture") << QByteArray("kded5");
}

void TestSniStatusItem::whatNeverChangesIsAlwaysThere()
{
    QFETCH(QByteArray, process);
    const ProcessName name(process.constData());
    makeItem();
    showWatcher();
    const auto all = properties();
    const auto text = [&](const char *key) { return all.value(QLatin1String(key)).toString(); };
    QCOMPARE(text("Category"), QStringLiteral("ApplicationStatus"));
    QCOMPARE(text("Id"), QStringLiteral("velquarin"));
    QCOMPARE(text("Title"), QStringLiteral("Velquarin"));
    QCOMPARE(text("Status"), QStringLiteral("Active"));
    QCOMPARE(text("IconThemePath"), QStringLiteral("/our/icons"));
    QCOMPARE(text("IconAccessibleDesc"), QStringLiteral("Velquarin"));
    QCOMPARE(text("XAyatanaLabel"), QStringLiteral(" 12"));
    QCOMPARE(text("XAyatanaLabelGuide"), QStringLiteral(" 12"));
    QCOMPARE(all.value(QStringLiteral("WindowId")), QVariant(0));
    QCOMPARE(all.value(QStringLiteral("ItemIsMenu")), QVariant(false));
    QCOMPARE(qdbus_cast<QDBusObjectPath>(all.value(QStringLiteral("Menu"))).path(), menuPath);
}

void TestSniStatusItem::aLabelHostGetsANameAndALabel()
{
    const ProcessName name("gnome-shell");
    makeItem();
    showWatcher();
    const auto all = properties();
    QCOMPARE(all.value(QStringLiteral("IconName")).toString(), QStringLiteral("flame-symbolic"));
    QVERIFY(qdbus_cast<QList<SniPixmap>>(all.value(QStringLiteral("IconPixmap"))).isEmpty());
    m_item->setAppearance(syncing);
    QCOMPARE(properties().value(QStringLiteral("IconName")).toString(),
             QStringLiteral("arrow.triangle.2.circlepath-symbolic"));
    QCOMPARE(properties().value(QStringLiteral("IconAccessibleDesc")).toString(), QStringLiteral("Syncing"));
}

void TestSniStatusItem::aCommittedDayIsNoTemplate()
{
    const ProcessName name("gnome-shell");
    makeItem(committed);
    showWatcher();
    QCOMPARE(properties().value(QStringLiteral("IconName")).toString(), QStringLiteral("flame.fill"));
}

void TestSniStatusItem::aWideHostGetsWidePictures()
{
    const ProcessName name("waybar");
    makeItem();
    showWatcher();
    const auto all = properties();
    QCOMPARE(all.value(QStringLiteral("IconName")).toString(), QString());
    const auto pictures = qdbus_cast<QList<SniPixmap>>(all.value(QStringLiteral("IconPixmap")));
    QCOMPARE(pictures.size(), 2);
    QCOMPARE(QSize(pictures.at(0).width, pictures.at(0).height), QSize(48, 24));
    QCOMPARE(pictures.at(0).bytes.size(), 48 * 24 * 4);
}

// Its edges, where the picture is half transparent, would else shine.
void TestSniStatusItem::swaybarGetsNoColourBrighterThanItsAlpha()
{
    const ProcessName name("swaybar");
    makeItem(committed);
    showWatcher();
    const auto pictures = qdbus_cast<QList<SniPixmap>>(properties().value(QStringLiteral("IconPixmap")));
    QCOMPARE(pictures.size(), 6);
    for (const auto &picture : pictures) {
        for (qsizetype pixel = 0; pixel < picture.bytes.size(); pixel += 4) {
            const auto alpha = static_cast<uchar>(picture.bytes.at(pixel));
            QVERIFY(static_cast<uchar>(picture.bytes.at(pixel + 1)) <= alpha);
        }
    }
}

void TestSniStatusItem::anUnknownHostGetsSquaresAndTheLabel()
{
    const ProcessName name("nobody-knows-me");
    makeItem();
    showWatcher();
    const auto all = properties();
    QCOMPARE(all.value(QStringLiteral("IconName")).toString(), QString());
    QCOMPARE(all.value(QStringLiteral("XAyatanaLabel")).toString(), QStringLiteral(" 12"));
    const auto pictures = qdbus_cast<QList<SniPixmap>>(all.value(QStringLiteral("IconPixmap")));
    QCOMPARE(pictures.size(), 6);
    for (const auto &picture : pictures) {
        QCOMPARE(picture.width, picture.height);
        QCOMPARE(picture.bytes.size(), picture.width * picture.height * 4);
    }
}

void TestSniStatusItem::withoutATitleThereIsNoLabelAtAll()
{
    makeItem(syncing);
    showWatcher();
    QVERIFY(!properties().contains(QStringLiteral("XAyatanaLabel")));
    QVERIFY(!properties().contains(QStringLiteral("XAyatanaLabelGuide")));
}

void TestSniStatusItem::aHostThatBreaksOnLabelsGetsNone()
{
    const StatusHost host{CountDisplay::Square, false, true};
    QVERIFY(!sniProperties(waiting, host, {}).contains(QStringLiteral("XAyatanaLabel")));
    QVERIFY(sniProperties(waiting, {}, {}).contains(QStringLiteral("XAyatanaLabel")));
}

void TestSniStatusItem::theToolTipSaysItInWords()
{
    makeItem();
    showWatcher();
    const auto toolTip = qdbus_cast<SniToolTip>(properties().value(QStringLiteral("ToolTip")));
    QCOMPARE(toolTip, (SniToolTip{{}, {}, QStringLiteral("12-day streak"), QStringLiteral("No commit today yet")}));
}

void TestSniStatusItem::theToolTipHoldsNoMarkup()
{
    const StatusItemAppearance hanging{
        QStringLiteral("arrow.triangle.2.circlepath"), true, QStringLiteral("Waiting for git in /src/<b>&co"), {}};
    const auto properties = sniProperties(hanging, {}, {});
    const auto toolTip = qvariant_cast<SniToolTip>(properties.value(QStringLiteral("ToolTip")));
    QCOMPARE(toolTip.text, QStringLiteral("Waiting for git in /src/&lt;b&gt;&amp;co"));
    QCOMPARE(properties.value(QStringLiteral("IconAccessibleDesc")).toString(), hanging.accessibilityDescription);
}

void TestSniStatusItem::aSinglePropertyCanBeRead()
{
    makeItem();
    showWatcher();
    const auto reply = ask(propertiesInterface, "Get", {itemInterface, QStringLiteral("XAyatanaLabel")});
    QCOMPARE(qvariant_cast<QDBusVariant>(reply.arguments().value(0)).variant().toString(), QStringLiteral(" 12"));
}

void TestSniStatusItem::aPropertyThatIsNotThereAnswersWithAnError()
{
    makeItem(syncing);
    showWatcher();
    const auto reply = ask(propertiesInterface, "Get", {itemInterface, QStringLiteral("XAyatanaLabel")});
    QCOMPARE(reply.errorName(), QStringLiteral("org.freedesktop.DBus.Error.UnknownProperty"));
    const auto foreign = ask(propertiesInterface, "Get", {QStringLiteral("org.example"), QStringLiteral("Id")});
    QCOMPARE(foreign.errorName(), QStringLiteral("org.freedesktop.DBus.Error.UnknownProperty"));
}

void TestSniStatusItem::noPropertyCanBeSet()
{
    makeItem();
    showWatcher();
    const auto value = QVariant::fromValue(QDBusVariant(QStringLiteral("Passive")));
    const auto reply = ask(propertiesInterface, "Set", {itemInterface, QStringLiteral("Status"), value});
    QCOMPARE(reply.errorName(), QStringLiteral("org.freedesktop.DBus.Error.PropertyReadOnly"));
    QCOMPARE(properties().value(QStringLiteral("Status")).toString(), QStringLiteral("Active"));
}

void TestSniStatusItem::aNewTitleIsSignalledWithItsText()
{
    const ProcessName name("gnome-shell");
    makeItem(syncing);
    showWatcher();
    const auto recorder = record();
    m_item->setAppearance(waiting);
    QTRY_COMPARE(recorder->names(),
                 (QStringList{QStringLiteral("NewIcon"), QStringLiteral("NewToolTip"),
                              QStringLiteral("XAyatanaNewLabel"), QStringLiteral("PropertiesChanged")}));
    QCOMPARE(recorder->argumentsOf("XAyatanaNewLabel"), (QVariantList{QStringLiteral(" 12"), QStringLiteral(" 12")}));
    const auto changed = qdbus_cast<QVariantMap>(recorder->argumentsOf("PropertiesChanged").at(1));
    QCOMPARE(changed.value(QStringLiteral("XAyatanaLabel")).toString(), QStringLiteral(" 12"));
    QCOMPARE(changed.value(QStringLiteral("IconName")).toString(), QStringLiteral("flame-symbolic"));
}

void TestSniStatusItem::aTitleThatEndsIsSignalledEmptyAndInvalidated()
{
    const ProcessName name("gnome-shell");
    makeItem(waiting);
    showWatcher();
    const auto recorder = record();
    m_item->setAppearance(syncing);
    QTRY_VERIFY(recorder->names().contains(QStringLiteral("PropertiesChanged")));
    QCOMPARE(recorder->argumentsOf("XAyatanaNewLabel"), (QVariantList{QString(), QString()}));
    const auto invalidated = recorder->argumentsOf("PropertiesChanged").at(2).toStringList();
    QCOMPARE(invalidated, (QStringList{QStringLiteral("XAyatanaLabel"), QStringLiteral("XAyatanaLabelGuide")}));
}

// GNOME's extension leaves a label out that was there before it looked, as after the lock screen.
void TestSniStatusItem::aHostThatShowsLabelsIsToldOfItOnceItHasReadTheItem()
{
    const ProcessName name("gnome-shell");
    makeItem(waiting);
    for (int time = 0; time < 2; ++time) {
        showWatcher();
        const auto recorder = record();
        QCOMPARE(recorder->names(), QStringList());
        QCOMPARE(properties().value(QStringLiteral("XAyatanaLabel")).toString(), QStringLiteral(" 12"));
        QTRY_COMPARE(recorder->names(),
                     (QStringList{QStringLiteral("XAyatanaNewLabel"), QStringLiteral("PropertiesChanged")}));
        QCOMPARE(recorder->argumentsOf("XAyatanaNewLabel"),
                 (QVariantList{QStringLiteral(" 12"), QStringLiteral(" 12")}));
        const auto changed = qdbus_cast<QVariantMap>(recorder->argumentsOf("PropertiesChanged").at(1));
        QCOMPARE(changed.value(QStringLiteral("XAyatanaLabel")).toString(), QStringLiteral(" 12"));
        m_watcher->disappear();
        QTRY_VERIFY(properties().isEmpty());
    }
}

void TestSniStatusItem::anEqualAppearanceSignalsNothing()
{
    makeItem();
    showWatcher();
    const auto recorder = record();
    m_item->setAppearance(waiting);
    settle();
    QCOMPARE(recorder->names(), QStringList());
}

void TestSniStatusItem::onlyWhatChangedIsSignalled()
{
    const ProcessName name("gnome-shell");
    makeItem(waiting);
    showWatcher();
    const auto recorder = record();
    auto later = waiting;
    later.title = QStringLiteral(" 13");
    m_item->setAppearance(later);
    QTRY_VERIFY(recorder->names().contains(QStringLiteral("PropertiesChanged")));
    QVERIFY(!recorder->names().contains(QStringLiteral("NewIcon")));
    const auto changed = qdbus_cast<QVariantMap>(recorder->argumentsOf("PropertiesChanged").at(1));
    QCOMPARE(changed.keys(), (QStringList{QStringLiteral("ToolTip"), QStringLiteral("XAyatanaLabel"),
                                          QStringLiteral("XAyatanaLabelGuide")}));
}

void TestSniStatusItem::aChangeOfHostChangesTheMode()
{
    makeItem();
    {
        const ProcessName name("gnome-shell");
        showWatcher();
    }
    QCOMPARE(properties().value(QStringLiteral("IconName")).toString(), QStringLiteral("flame-symbolic"));
    m_watcher->disappear();
    showWatcher();
    QCOMPARE(properties().value(QStringLiteral("IconName")).toString(), QString());
}

void TestSniStatusItem::aClickActivates_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("a left click") << QByteArray("Activate") << QVariantList{300, 200};
    QTest::newRow("a middle click") << QByteArray("SecondaryActivate") << QVariantList{300, 200};
    QTest::newRow("a middle click on an indicator") << QByteArray("XAyatanaSecondaryActivate") << QVariantList{99U};
}

void TestSniStatusItem::aClickActivates()
{
    QFETCH(QByteArray, method);
    QFETCH(QVariantList, arguments);
    makeItem();
    showWatcher();
    QSignalSpy activated(m_item.get(), &StatusItem::activated);
    ask(itemInterface, "ProvideXdgActivationToken", {QStringLiteral("a-token")});
    QCOMPARE(ask(itemInterface, method.constData(), arguments).type(), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(activated.size(), 1);
    if (arguments.size() == 2)
        QCOMPARE(activated.at(0).at(0).toPoint(), QPoint(300, 200));
    QCOMPARE(activated.at(0).at(1).toString(), QStringLiteral("a-token"));
}

void TestSniStatusItem::anActivationTokenIsUsedOnce()
{
    makeItem();
    showWatcher();
    QSignalSpy activated(m_item.get(), &StatusItem::activated);
    ask(itemInterface, "ProvideXdgActivationToken", {QStringLiteral("a-token")});
    ask(itemInterface, "Activate", {300, 200});
    ask(itemInterface, "Activate", {300, 200});
    QTRY_COMPARE(activated.size(), 2);
    QCOMPARE(activated.at(1).at(1).toString(), QString());
}

void TestSniStatusItem::aRightClickOpensOurMenuWhereTheHostDrawsNone()
{
    makeItem();
    showWatcher();
    // What every pop-up meets on a platform without windows.
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    QSignalSpy opens(m_item.get(), &StatusItem::ownMenuOpens);
    ask(itemInterface, "ContextMenu", {300, 200});
    QTRY_VERIFY(QApplication::activePopupWidget());
    QCOMPARE(opens.size(), 1);
    auto *opened = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(opened);
    QCOMPARE(opened->pos(), QPoint(300, 200));
    QCOMPARE(opened->actions().size(), 3);
    opened->actions().at(0)->trigger();
    QCOMPARE(m_refreshed, 1);
    opened->close();
}

void TestSniStatusItem::ourMenuIsAsDarkAsThePanel_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<bool>("expected");
    QTest::newRow("a dark panel") << QColor(53, 53, 53) << true;
    QTest::newRow("a light panel") << QColor(246, 245, 244) << false;
}

void TestSniStatusItem::ourMenuIsAsDarkAsThePanel()
{
    QFETCH(QColor, color);
    QFETCH(bool, expected);
    QWidget panel(nullptr, Qt::FramelessWindowHint);
    panel.setPalette(color);
    panel.setGeometry(0, 0, QGuiApplication::primaryScreen()->geometry().width(), 30);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    makeItem();
    showWatcher();
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    ask(itemInterface, "ContextMenu", {300, 15});
    QTRY_VERIFY(QApplication::activePopupWidget());
    QCOMPARE(isDark(QApplication::activePopupWidget()->palette()), expected);
    QApplication::activePopupWidget()->close();
}

void TestSniStatusItem::scrollingDoesNothing()
{
    makeItem();
    showWatcher();
    QSignalSpy activated(m_item.get(), &StatusItem::activated);
    const auto reply = ask(itemInterface, "Scroll", {120, QStringLiteral("vertical")});
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    settle();
    QVERIFY(activated.isEmpty());
}

void TestSniStatusItem::wrongCallsAnswerWithErrors()
{
    makeItem();
    showWatcher();
    QCOMPARE(ask(itemInterface, "Explode").errorName(), QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"));
    QCOMPARE(ask(itemInterface, "Activate", {QStringLiteral("here")}).errorName(),
             QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    QCOMPARE(ask(propertiesInterface, "Get", {1}).type(), QDBusMessage::ErrorMessage);
    QCOMPARE(ask(QStringLiteral("org.example.Other"), "Activate", {1, 1}).type(), QDBusMessage::ErrorMessage);
}

void TestSniStatusItem::theMenuHasThreeEntries()
{
    makeItem();
    showWatcher();
    const auto root = menu();
    QCOMPARE(root.children.size(), 3U);
    QCOMPARE(root.children.at(0).properties.value(QStringLiteral("label")).toString(), QStringLiteral("Refresh"));
}

void TestSniStatusItem::onAMenuOnlyHostTheMenuOpensTheProgram()
{
    const ProcessName name("gnome-shell");
    makeItem();
    showWatcher();
    QSignalSpy asked(m_item.get(), &StatusItem::openRequested);
    const auto first = menu().children.at(0);
    QCOMPARE(first.properties.value(QStringLiteral("label")).toString(), QStringLiteral("Open Velquarin"));
    ask(itemInterface, "ProvideXdgActivationToken", {QStringLiteral("a-token")});
    test::answerOf(**m_host, address(), menuPath, QStringLiteral("com.canonical.dbusmenu"), "Event",
                   {first.id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    QTRY_COMPARE(asked.size(), 1);
    QCOMPARE(asked.at(0).at(1).toString(), QStringLiteral("a-token"));
}

void TestSniStatusItem::theItemDescribesItself()
{
    makeItem();
    showWatcher();
    const auto reply = ask(QStringLiteral("org.freedesktop.DBus.Introspectable"), "Introspect");
    const auto description = reply.arguments().value(0).toString();
    QVERIFY(description.contains(QLatin1String("org.kde.StatusNotifierItem")));
    QVERIFY(description.contains(QLatin1String("XAyatanaNewLabel")));
    QVERIFY(description.contains(QLatin1String("org.freedesktop.DBus.Properties")));
}

VELQUARIN_WINDOW_TEST(TestSniStatusItem)
#include "tst_snistatusitem.moc"
