// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/AppDelegate.h"
#include "App/Shared.h"
#include "App/StatusItemPlan.h"
#include "Platform/Linux/Process/SystemClock.h"
#include "support/Engine.h"
#include "support/Offscreen.h"
#include "support/RecordingFileViewer.h"
#include "support/RecordingLoginItem.h"
#include "support/RecordingRepositoryWatch.h"
#include "support/RecordingStatusItem.h"
#include "support/ScriptedFolderChooser.h"
#include "support/TestProgram.h"
#include "Views/Dashboard/Popover.h"
#include "Views/Dashboard/RepositoriesSection.h"

#include <QApplication>
#include <QScopeGuard>
#include <QSemaphore>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

using Change = std::function<void(StreakManager &)>;

// The application around faked adapters.
struct World
{
    World()
        : World(nullptr)
    {
    }
    explicit World(Timers &others)
        : World(&others)
    {
    }

    FakeProcessRunner processes;
    PosixFileTree files;
    FakeClock clock{instant("2026-11-20T12:00:00Z")};
    BootTimeTimers bootTimers;
    Timers &timers;
    RecordingOutput output;
    MemoryPreferences preferences;
    RecordingNotificationCenter center;
    RecordingFileViewer viewer;
    RecordingLoginItem loginItem;
    ScriptedFolderChooser chooser;
    RecordingRepositoryWatch watch;
    Shared shared{{processes, files, clock, timers, output, preferences, center, viewer, loginItem, chooser, watch}};
    RecordingStatusItem *item = nullptr;
    int terminations = 0;
    QList<QPoint> repeatedClicks;
    AppDelegate delegate{shared,
                         {[this] {
                              auto made = std::make_unique<RecordingStatusItem>();
                              item = made.get();
                              return made;
                          },
                          [this] { ++terminations; }, [this](QPoint position) { repeatedClicks.append(position); }}};

    void trackOneWithACommitToday()
    {
        shared.appSettings().addRepository(QStringLiteral("/repos/one"), false);
        processes.answer(QStringLiteral("rev-parse --git-dir"), {});
        for (const auto &since : {QStringLiteral("2026-11-14"), QStringLiteral("2024-11-20")})
            processes.answer(QStringLiteral("log HEAD --format=%ad --date=short --since=") + since +
                                 QStringLiteral(" --until=2026-11-21"),
                             "2026-11-20\n");
        processes.answer(QStringLiteral("log HEAD -1 --format=%aI"), {});
    }

    void hangIn(const QString &path, QSemaphore &hang)
    {
        processes.answerWith(path + QStringLiteral("|rev-parse --git-dir"), [&hang] {
            hang.acquire();
            return QByteArray();
        });
    }

    void trigger(const QString &text) const
    {
        const auto entries = item->entries();
        const auto found = std::ranges::find(entries, text, &MenuEntry::text);
        QVERIFY(found != entries.end());
        found->action();
    }

private:
    explicit World(Timers *others)
        : timers(others != nullptr ? *others : bootTimers)
    {
    }
};

constexpr double halfAMinute = 30;
constexpr double untilItIsQuiet = 0.2;

QList<double> intervals(const FakeTimers &timers)
{
    QList<double> found;
    for (const auto &timer : timers.live())
        found << timer.interval.count();
    return found;
}

QWidget *windowTitled(const QString &title)
{
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find_if(
        windows, [&title](const QWidget *window) { return window->isVisible() && window->windowTitle() == title; });
    return found == windows.end() ? nullptr : *found;
}

// Whether a window comes before the others.
class RaiseWatch : public QObject
{
public:
    explicit RaiseWatch(QWidget &window) { window.installEventFilter(this); }
    [[nodiscard]] bool wasRaised() const { return m_wasRaised; }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        m_wasRaised = m_wasRaised || event->type() == QEvent::ZOrderChange;
        return false;
    }

private:
    bool m_wasRaised = false;
};

QString text(const StatusItemAppearance &appearance)
{
    return QStringLiteral("%1 %2 \"%3\" '%4'")
        .arg(appearance.symbolName, appearance.isTemplate ? QStringLiteral("template") : QStringLiteral("orange"),
             appearance.title, appearance.accessibilityDescription);
}

}  // namespace

class TestAppDelegate : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }
    void theItemShows_data();
    void theItemShows();
    void theNoteNamesARepositoryWithoutAnAddress();
    void atLaunchTheItemShowsTheSyncingSymbolAlone();
    void theFirstRefreshStartsAtLaunch();
    void theItemFollowsTheStreakOnceItIsQuiet();
    void everyChangeStartsTheQuietAnew();
    void everyValueOfTheItemIsWatched_data();
    void everyValueOfTheItemIsWatched();
    void aBurstOfChangesIsSeenOnce();
    void aRepositoryThatGitHangsOnIsNamedAfterHalfAMinute();
    void eachRepositoryHasHalfAMinuteOfItsOwn();
    void theItemSaysWhichRepositoryGitHangsOn();
    void theItemNamesTheRepositoryInWhichGitRunsAndNotTheNextOne();
    void outsideARefreshTheItemKeepsItsFlameWhereGitHangs();
    void aRefreshThatFindsGitHangingSaysWhereFromTheBeginning();
    void aStreakOfNoughtShowsTheFlameAlone();
    void theCountIsShownWhateverItsSettingSays();
    void theCountStaysWhenItsSettingChanges();
    void theMenuHasTwoEntriesAndASeparator();
    void refreshStartsARefresh();
    void quitEndsTheProgram();
    void aClickOpensTheDashboardAndASecondOneClosesIt();
    void theMenuOpensTheDashboardAndNeverClosesIt();
    void aSecondStartOpensTheDashboardAndLeavesItOpen();
    void theGearClosesTheDashboardAndOpensTheSettings();
    void theDashboardMakesWayOnceTheFolderOfARepositoryIsFound();
    void theGearBringsSettingsBackThatWerePutAway();
    void theGearBringsSettingsBeforeOtherWindows();
    void aRightClickThatTheDashboardKeptIsRepeatedOnceItIsGone();
    void theDashboardClosesWhenTheBarOpensTheMenu();
    void theServicesAreMadeOnce();
    void theLoginItemIsReadWhenSomebodyFirstAsksForIt();
};

void TestAppDelegate::theItemShows_data()
{
    QTest::addColumn<bool>("isRefreshing");
    QTest::addColumn<bool>("hasCommittedToday");
    QTest::addColumn<qint64>("streak");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, bool isRefreshing, bool hasCommittedToday, qint64 streak,
                        const char *expected) {
        QTest::newRow(name) << isRefreshing << hasCommittedToday << streak << QString::fromLatin1(expected);
    };
    row("the syncing symbol while refreshing", true, false, 0, "arrow.triangle.2.circlepath template \"\" 'Syncing'");
    row("the syncing symbol whatever the streak", true, true, 12,
        "arrow.triangle.2.circlepath template \"\" 'Syncing'");
    row("an orange flame and the streak", false, true, 12, "flame.fill orange \" 12\" 'Velquarin'");
    row("an orange flame alone", false, true, 0, "flame.fill orange \"\" 'Velquarin'");
    row("a flame and the streak", false, false, 1, "flame template \" 1\" 'Velquarin'");
    row("a flame alone", false, false, 0, "flame template \"\" 'Velquarin'");
    row("a flame alone below nought", false, false, -3, "flame template \"\" 'Velquarin'");
    row("a long streak in full", false, true, 1234, "flame.fill orange \" 1234\" 'Velquarin'");
}

void TestAppDelegate::theItemShows()
{
    QFETCH(bool, isRefreshing);
    QFETCH(bool, hasCommittedToday);
    QFETCH(qint64, streak);
    QTEST(text(statusItemAppearance(streak, isRefreshing, hasCommittedToday, {})), "expected");
}

void TestAppDelegate::theNoteNamesARepositoryWithoutAnAddress()
{
    const auto note = [](bool isRefreshing, const QStringList &names) {
        return statusItemAppearance(1, isRefreshing, true, names).note;
    };
    QCOMPARE(note(false, {}), QString());
    QCOMPARE(note(true, {QStringLiteral("api")}), QString());
    QCOMPARE(note(false, {QStringLiteral("api")}),
             QStringLiteral("Everyone's commits count in api: git knows no address of yours there"));
    QCOMPARE(note(false, {QStringLiteral("%2"), QStringLiteral("b"), QStringLiteral("c")}),
             QStringLiteral("Everyone's commits count in %2 and 2 more: git knows no address of yours there"));
}

void TestAppDelegate::atLaunchTheItemShowsTheSyncingSymbolAlone()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    QCOMPARE(world.item->appearances(), QList{syncingAppearance()});
}

void TestAppDelegate::theFirstRefreshStartsAtLaunch()
{
    World world;
    QVERIFY(!world.delegate.streakManager().isRefreshing());
    world.delegate.applicationDidFinishLaunching();
    QTRY_VERIFY(world.delegate.streakManager().lastRefresh().has_value());
}

void TestAppDelegate::theItemFollowsTheStreakOnceItIsQuiet()
{
    World world;
    world.trackOneWithACommitToday();
    world.delegate.applicationDidFinishLaunching();
    QTRY_COMPARE(world.item->appearances().constLast(), statusItemAppearance(1, false, true, {}));
}

void TestAppDelegate::everyChangeStartsTheQuietAnew()
{
    Engine engine;
    FakeTimers timers;
    int deliveries = 0;
    const StreakObserver observer(engine.manager, timers, [&](qint64, bool, bool) { ++deliveries; });
    QCOMPARE(timers.live().size(), std::size_t(1));
    QCOMPARE(timers.live().front().interval.count(), 0.2);
    const auto first = timers.live().front().number;
    engine.refresh();
    QCOMPARE(timers.live().size(), std::size_t(1));
    QVERIFY(timers.live().front().number > first);
    QCOMPARE(deliveries, 0);
    timers.fire(0);
    QCOMPARE(deliveries, 1);
    QVERIFY(timers.live().empty());
}

void TestAppDelegate::everyValueOfTheItemIsWatched_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("the streak") << Change([](auto &manager) { Q_EMIT manager.currentStreakWillChange(3); });
    QTest::newRow("refreshing") << Change([](auto &manager) { Q_EMIT manager.isRefreshingWillChange(true); });
    QTest::newRow("today") << Change([](auto &manager) { Q_EMIT manager.hasCommittedTodayWillChange(true); });
}

void TestAppDelegate::everyValueOfTheItemIsWatched()
{
    QFETCH(Change, change);
    Engine engine;
    FakeTimers timers;
    int deliveries = 0;
    const StreakObserver observer(engine.manager, timers, [&](qint64, bool, bool) { ++deliveries; });
    timers.fire(0);
    change(engine.manager);
    QCOMPARE(timers.live().size(), std::size_t(1));
    timers.fire(0);
    QCOMPARE(deliveries, 2);
}

void TestAppDelegate::aBurstOfChangesIsSeenOnce()
{
    Engine engine;
    QStringList deliveries;
    BootTimeTimers timers;
    std::unique_ptr<StreakObserver> observer;
    const auto deliver = [&](qint64 streak, bool isRefreshing, bool hasCommittedToday) {
        deliveries << text(statusItemAppearance(streak, isRefreshing, hasCommittedToday, {}));
    };
    // From the first value of a refresh to its last the event loop does not turn.
    connect(&engine.manager, &StreakManager::currentStreakWillChange, this,
            [&] { observer = std::make_unique<StreakObserver>(engine.manager, timers, deliver); });
    engine.track(QStringLiteral("/repos/one"), "2026-11-20\n", "2026-11-20\n2026-11-19\n", {});
    engine.refresh();
    QTRY_VERIFY(!deliveries.isEmpty());
    QCOMPARE(deliveries, QStringList{QStringLiteral("flame.fill orange \" 2\" 'Velquarin'")});
}

void TestAppDelegate::aRepositoryThatGitHangsOnIsNamedAfterHalfAMinute()
{
    Engine engine;
    FakeTimers timers;
    QStringList deliveries;
    const HangObserver observer(engine.git, timers, [&](const std::optional<QString> &path) {
        deliveries << path.value_or(QStringLiteral("over"));
    });
    QVERIFY(timers.live().empty());
    QSemaphore hang;
    const QScopeGuard letItEnd([&hang] { hang.release(); });
    const QStringList paths{QStringLiteral("/repos/quick"), QStringLiteral("/repos/one")};
    const auto hanging = engine.git.askUntilGitStarts(paths, {}, [&hang](GitQueries &, qsizetype number) {
        if (number == 1)
            hang.acquire();
        return true;
    });
    QTRY_COMPARE(timers.live().size(), std::size_t(1));
    QCOMPARE(timers.live().front().interval.count(), 30.0);
    QTRY_COMPARE(engine.git.repositoryBeingRead(), std::optional(paths[1]));
    timers.fire(0);
    QCOMPARE(deliveries, QStringList{QStringLiteral("/repos/one")});
    QVERIFY(timers.live().empty());
    hang.release();
    QTRY_COMPARE(deliveries, (QStringList{QStringLiteral("/repos/one"), QStringLiteral("over")}));
    QVERIFY(timers.live().empty());
}

void TestAppDelegate::eachRepositoryHasHalfAMinuteOfItsOwn()
{
    Engine engine;
    FakeTimers timers;
    int deliveries = 0;
    const HangObserver observer(engine.git, timers, [&](const auto &) { ++deliveries; });
    Q_EMIT engine.git.repositoryBeingReadChanged(QStringLiteral("/repos/one"));
    const auto first = timers.live().front().number;
    Q_EMIT engine.git.repositoryBeingReadChanged(QStringLiteral("/repos/two"));
    QCOMPARE(timers.live().size(), std::size_t(1));
    QVERIFY(timers.live().front().number > first);
    Q_EMIT engine.git.repositoryBeingReadChanged(std::nullopt);
    QVERIFY(timers.live().empty());
    QCOMPARE(deliveries, 0);
}

void TestAppDelegate::theItemSaysWhichRepositoryGitHangsOn()
{
    QSemaphore hang;
    FakeTimers timers;
    World world(timers);
    const QScopeGuard letItEnd([&hang] { hang.release(); });
    world.trackOneWithACommitToday();
    world.hangIn(QStringLiteral("/repos/one"), hang);
    world.delegate.applicationDidFinishLaunching();
    QTRY_VERIFY(intervals(timers).contains(halfAMinute));
    timers.fire(std::size_t(intervals(timers).indexOf(halfAMinute)));
    QCOMPARE(world.item->appearances().constLast(), waitingAppearance(QStringLiteral("/repos/one")));
    hang.release();
    QTRY_VERIFY(!world.delegate.streakManager().isRefreshing());
    QCOMPARE(world.item->appearances().constLast(), syncingAppearance());
    QVERIFY(!intervals(timers).contains(halfAMinute));
}

void TestAppDelegate::theItemNamesTheRepositoryInWhichGitRunsAndNotTheNextOne()
{
    QSemaphore hang;
    FakeTimers timers;
    World world(timers);
    const QScopeGuard letItEnd([&hang] { hang.release(); });
    world.trackOneWithACommitToday();
    world.hangIn(QStringLiteral("/repos/slow"), hang);
    const auto hanging = world.shared.gitService().isGitRepository(QStringLiteral("/repos/slow"));
    world.delegate.applicationDidFinishLaunching();
    QTRY_VERIFY(intervals(timers).contains(halfAMinute));
    timers.fire(std::size_t(intervals(timers).indexOf(halfAMinute)));
    QCOMPARE(world.item->appearances().constLast(), waitingAppearance(QStringLiteral("/repos/slow")));
    hang.release();
    QTRY_VERIFY(!world.delegate.streakManager().isRefreshing());
    QCOMPARE(world.item->appearances().constLast(), syncingAppearance());
}

void TestAppDelegate::outsideARefreshTheItemKeepsItsFlameWhereGitHangs()
{
    QSemaphore hang;
    FakeTimers timers;
    World world(timers);
    const QScopeGuard letItEnd([&hang] { hang.release(); });
    world.delegate.applicationDidFinishLaunching();
    QTRY_VERIFY(!world.delegate.streakManager().isRefreshing());
    timers.fire(std::size_t(intervals(timers).indexOf(untilItIsQuiet)));
    QCOMPARE(world.item->appearances().constLast(), statusItemAppearance(0, false, false, {}));
    world.hangIn(QStringLiteral("/repos/slow"), hang);
    const auto hanging = world.shared.gitService().isGitRepository(QStringLiteral("/repos/slow"));
    QTRY_VERIFY(intervals(timers).contains(halfAMinute));
    timers.fire(std::size_t(intervals(timers).indexOf(halfAMinute)));
    QCOMPARE(world.item->appearances().constLast(), statusItemAppearance(0, false, false, {}));
}

void TestAppDelegate::aRefreshThatFindsGitHangingSaysWhereFromTheBeginning()
{
    QSemaphore hang;
    FakeTimers timers;
    World world(timers);
    const QScopeGuard letItEnd([&hang] { hang.release(); });
    world.trackOneWithACommitToday();
    world.delegate.applicationDidFinishLaunching();
    QTRY_VERIFY(!world.delegate.streakManager().isRefreshing());
    timers.fire(std::size_t(intervals(timers).indexOf(untilItIsQuiet)));
    world.hangIn(QStringLiteral("/repos/slow"), hang);
    const auto hanging = world.shared.gitService().isGitRepository(QStringLiteral("/repos/slow"));
    QTRY_VERIFY(intervals(timers).contains(halfAMinute));
    timers.fire(std::size_t(intervals(timers).indexOf(halfAMinute)));
    world.trigger(QStringLiteral("Refresh"));
    QVERIFY(world.delegate.streakManager().isRefreshing());
    timers.fire(std::size_t(intervals(timers).indexOf(untilItIsQuiet)));
    QCOMPARE(world.item->appearances().constLast(), waitingAppearance(QStringLiteral("/repos/slow")));
    hang.release();
    QTRY_VERIFY(!world.delegate.streakManager().isRefreshing());
    timers.fire(std::size_t(intervals(timers).indexOf(untilItIsQuiet)));
    QCOMPARE(world.item->appearances().constLast(), statusItemAppearance(1, false, true, {}));
}

void TestAppDelegate::aStreakOfNoughtShowsTheFlameAlone()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    QTRY_COMPARE(world.item->appearances().constLast(), statusItemAppearance(0, false, false, {}));
}

void TestAppDelegate::theCountIsShownWhateverItsSettingSays()
{
    World world;
    world.trackOneWithACommitToday();
    world.shared.appSettings().setShowStreakInMenuBar(false);
    world.delegate.applicationDidFinishLaunching();
    QTRY_COMPARE(world.item->appearances().constLast().title, QStringLiteral(" 1"));
}

void TestAppDelegate::theCountStaysWhenItsSettingChanges()
{
    World world;
    world.trackOneWithACommitToday();
    world.delegate.applicationDidFinishLaunching();
    const auto withCount = statusItemAppearance(1, false, true, {});
    QTRY_COMPARE(world.item->appearances().constLast(), withCount);
    for (const bool isShown : {false, true}) {
        const auto before = world.item->appearances().size();
        world.shared.appSettings().setShowStreakInMenuBar(isShown);
        QCOMPARE(world.item->appearances().size(), before);
        // The next refresh shows the item anew.
        world.trigger(QStringLiteral("Refresh"));
        QTRY_VERIFY(world.item->appearances().size() > before);
        QTRY_COMPARE(world.item->appearances().constLast(), withCount);
    }
}

void TestAppDelegate::theMenuHasTwoEntriesAndASeparator()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    QStringList lines;
    const auto entries = world.item->entries();
    for (const auto &entry : entries)
        lines << (entry.isSeparator() ? QStringLiteral("-") : entry.text + u' ' + entry.keyEquivalent);
    QCOMPARE(lines,
             (QStringList{QStringLiteral("Refresh r"), QStringLiteral("-"), QStringLiteral("Quit Velquarin q")}));
}

void TestAppDelegate::refreshStartsARefresh()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    QTRY_VERIFY(!world.delegate.streakManager().isRefreshing());
    world.clock.advance(10s);
    world.trigger(QStringLiteral("Refresh"));
    QTRY_COMPARE(world.delegate.streakManager().lastRefresh(), std::optional(world.clock.now()));
}

void TestAppDelegate::quitEndsTheProgram()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    world.trigger(QStringLiteral("Quit Velquarin"));
    QCOMPARE(world.terminations, 1);
}

void TestAppDelegate::aClickOpensTheDashboardAndASecondOneClosesIt()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    QVERIFY(!windowTitled(QStringLiteral("Velquarin")));
    Q_EMIT world.item->activated(QPoint(3, 4), {});
    QVERIFY(windowTitled(QStringLiteral("Velquarin")));
    Q_EMIT world.item->activated(QPoint(3, 4), {});
    QVERIFY(!windowTitled(QStringLiteral("Velquarin")));
}

void TestAppDelegate::theMenuOpensTheDashboardAndNeverClosesIt()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    for (int times = 0; times < 2; ++times) {
        Q_EMIT world.item->openRequested(QPoint(3, 4), {});
        QVERIFY(windowTitled(QStringLiteral("Velquarin")));
    }
}

void TestAppDelegate::aSecondStartOpensTheDashboardAndLeavesItOpen()
{
    World world;
    world.delegate.openDashboard({});
    world.delegate.applicationDidFinishLaunching();
    world.delegate.openDashboard({});
    QVERIFY(windowTitled(QStringLiteral("Velquarin")));
    world.delegate.openDashboard({});
    QVERIFY(windowTitled(QStringLiteral("Velquarin")));
}

void TestAppDelegate::theGearClosesTheDashboardAndOpensTheSettings()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    world.delegate.openDashboard({});
    world.delegate.openSettings();
    QVERIFY(!windowTitled(QStringLiteral("Velquarin")));
    auto *settings = windowTitled(QStringLiteral("Settings"));
    QVERIFY(settings);
    world.delegate.openSettings();
    QCOMPARE(windowTitled(QStringLiteral("Settings")), settings);
    QTest::keyClick(settings, Qt::Key_Escape);
    QVERIFY(!windowTitled(QStringLiteral("Settings")));
}

// On X11 the dashboard takes every click and every key while it is open: the file manager's would not get any. A folder
// that is gone is never found, and nothing moves.
void TestAppDelegate::theDashboardMakesWayOnceTheFolderOfARepositoryIsFound()
{
    World world;
    world.trackOneWithACommitToday();
    world.delegate.applicationDidFinishLaunching();
    QTRY_VERIFY(world.delegate.streakManager().lastRefresh().has_value());
    world.delegate.openDashboard({});
    auto *dashboard = windowTitled(QStringLiteral("Velquarin"));
    QVERIFY(dashboard);
    auto *row = dashboard->findChild<RepoRow *>();
    QTRY_VERIFY(row->isVisible());
    QTest::mouseClick(row, Qt::LeftButton);
    QCOMPARE(world.viewer.shown, QStringList{QStringLiteral("/repos/one")});
    QCOMPARE(windowTitled(QStringLiteral("Velquarin")), dashboard);
    world.viewer.findFolder();
    QVERIFY(!windowTitled(QStringLiteral("Velquarin")));
}

void TestAppDelegate::theGearBringsSettingsBackThatWerePutAway()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    world.delegate.openSettings();
    auto *settings = windowTitled(QStringLiteral("Settings"));
    settings->showMinimized();
    QVERIFY(settings->isMinimized());
    world.delegate.openSettings();
    QVERIFY(!settings->isMinimized());
    QCOMPARE(windowTitled(QStringLiteral("Settings")), settings);
}

void TestAppDelegate::theGearBringsSettingsBeforeOtherWindows()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    world.delegate.openSettings();
    auto *const settings = windowTitled(QStringLiteral("Settings"));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    const RaiseWatch watch(*settings);
    world.delegate.openSettings();
    QVERIFY(watch.wasRaised());
    QTRY_VERIFY(settings->isActiveWindow());
}

void TestAppDelegate::aRightClickThatTheDashboardKeptIsRepeatedOnceItIsGone()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    world.delegate.openDashboard({});
    auto *popover = qobject_cast<Popover *>(windowTitled(QStringLiteral("Velquarin")));
    QVERIFY(popover);
    popover->hide();
    Q_EMIT popover->rightClickKept(QPoint(5, 6));
    QVERIFY(world.repeatedClicks.isEmpty());
    QTRY_COMPARE(world.repeatedClicks, QList{QPoint(5, 6)});
}

void TestAppDelegate::theDashboardClosesWhenTheBarOpensTheMenu()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    Q_EMIT world.item->menuOpened();
    QVERIFY(!windowTitled(QStringLiteral("Velquarin")));
    world.delegate.openDashboard({});
    QVERIFY(windowTitled(QStringLiteral("Velquarin")));
    const auto hasClosed = [&world] {
        Q_EMIT world.item->menuOpened();
        return !windowTitled(QStringLiteral("Velquarin"));
    };
    QTRY_VERIFY(hasClosed());
    world.delegate.openDashboard({});
    Q_EMIT world.item->ownMenuOpens();
    QVERIFY(!windowTitled(QStringLiteral("Velquarin")));
}

void TestAppDelegate::theServicesAreMadeOnce()
{
    World world;
    QCOMPARE(&world.shared.gitService(), &world.shared.gitService());
    QCOMPARE(&world.shared.appSettings(), &world.shared.appSettings());
    QCOMPARE(&world.shared.notificationService(), &world.shared.notificationService());
    QCOMPARE(&world.shared.launchAtLogin(), &world.shared.launchAtLogin());
}

void TestAppDelegate::theLoginItemIsReadWhenSomebodyFirstAsksForIt()
{
    World world;
    world.delegate.applicationDidFinishLaunching();
    QCOMPARE(world.loginItem.calls, QStringList());
    world.loginItem.current = LoginItemStatus::Enabled;
    QVERIFY(world.shared.launchAtLogin().isEnabled());
    QCOMPARE(world.loginItem.calls, QStringList{QStringLiteral("status")});
}

VELQUARIN_WINDOW_TEST(TestAppDelegate)
#include "tst_appdelegate.moc"
