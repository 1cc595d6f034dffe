// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/StreakManager.h"

#include "support/Engine.h"
#include "support/OtherTimes.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

// A folder of real folders, some of which pass for repositories.
class Workspace
{
public:
    [[nodiscard]] QString path(const QString &name = {}) const
    {
        return name.isEmpty() ? m_folder.path() : m_folder.filePath(name);
    }
    void addRepository(const QString &name) const { QDir().mkpath(path(name) + QStringLiteral("/.git")); }
    void remove(const QString &name) const { QDir(path(name)).removeRecursively(); }

private:
    QTemporaryDir m_folder;
};

QStringList trackedPaths(const Engine &engine)
{
    QStringList paths;
    const auto tracked = engine.settings.trackedRepositories();
    for (const auto &repository : tracked)
        paths << repository.path;
    paths.sort();
    return paths;
}

void setFolderEnabled(Engine &engine, int index, bool isEnabled)
{
    auto folders = engine.settings.watchedFolders();
    folders[index].isEnabled = isEnabled;
    engine.settings.setWatchedFolders(folders);
}

void discover(Engine &engine)
{
    await(engine.manager.runAutoDiscovery());
}

// The log is silent: no folder here is a real repository.
void refresh(Engine &engine)
{
    await(engine.manager.refresh());
}

}  // namespace

class TestAutoDiscovery : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void withoutWatchedFoldersNothingIsScanned();
    void withoutEnabledFoldersNothingChanges();
    void whatIsFoundIsTracked();
    void theStateWhileScanningIsShown();
    void whatARunFoundIsStoredThenToldAndThenTheRunIsOver();
    void aScanIsDueAfterFiveMinutes_data();
    void aScanIsDueAfterFiveMinutes();
    void theSwitchTurnsScansOfTheRefreshOff();
    void newRepositoriesTakePartInTheSameRefresh();
    void foldersAreSearchedInTheirOrder();
    void aRepositoryUnderTwoFoldersIsAddedOnce();
    void repositoriesOfADisabledFolderGoAtTheNextRun();
    void repositoriesThatVanishAreDropped();
    void repositoriesOfARemovedFolderGoAtTheNextRun();
    void whatTheUserAddedIsNeverTouched();
    void aPathThatTheUserAddedTooStaysThoughItIsNotFound();
    void aRemovedRepositoryComesBack();
    void theDepthOfTheFolderCounts();
    void aRunThatFindsNothingNewSaysSo();
    void twoRunsAtOnceTrackNothingTwice();
    void aScanThatSomebodyAsksForReadsEverything();
};

void TestAutoDiscovery::withoutWatchedFoldersNothingIsScanned()
{
    Engine engine;
    refresh(engine);
    QVERIFY(!engine.settings.lastAutoDiscoveryScan().has_value());
    engine.settings.setLastAutoDiscoveryScan(engine.clock.now() - 1h);
    refresh(engine);
    QCOMPARE(engine.settings.lastAutoDiscoveryScan(), std::optional(engine.clock.now() - 1h));
}

void TestAutoDiscovery::withoutEnabledFoldersNothingChanges()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    setFolderEnabled(engine, 0, false);
    const QSignalSpy scanning(&engine.manager, &StreakManager::isScanningWillChange);
    const QSignalSpy discovered(&engine.manager, &StreakManager::lastDiscoveredReposWillChange);
    discover(engine);
    QVERIFY(trackedPaths(engine).isEmpty());
    QVERIFY(!engine.settings.lastAutoDiscoveryScan().has_value());
    QCOMPARE(scanning.count() + discovered.count(), 0);
}

void TestAutoDiscovery::whatIsFoundIsTracked()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    workspace.addRepository(QStringLiteral("deep/two"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    discover(engine);
    QCOMPARE(trackedPaths(engine),
             (QStringList{workspace.path(QStringLiteral("deep/two")), workspace.path(QStringLiteral("one"))}));
    const auto tracked = engine.settings.trackedRepositories();
    QVERIFY(std::ranges::all_of(tracked, &TrackedRepository::isAutoDiscovered));
    QVERIFY(std::ranges::all_of(tracked, &TrackedRepository::isEnabled));
    QCOMPARE(engine.manager.lastDiscoveredRepos().size(), 2);
    QCOMPARE(engine.settings.lastAutoDiscoveryScan(), std::optional(engine.clock.now()));
    QVERIFY(!engine.manager.isRefreshing());
}

void TestAutoDiscovery::theStateWhileScanningIsShown()
{
    const Workspace workspace;
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    const auto run = engine.manager.runAutoDiscovery();
    QVERIFY(engine.manager.isScanning());
    await(run);
    QVERIFY(!engine.manager.isScanning());
}

void TestAutoDiscovery::whatARunFoundIsStoredThenToldAndThenTheRunIsOver()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    QStringList steps;
    const auto note = [&steps](const char *step) { return [&steps, step] { steps << QLatin1String(step); }; };
    connect(&engine.settings, &AppSettings::trackedRepositoriesWillChange, this, note("repositories"));
    connect(&engine.settings, &AppSettings::lastAutoDiscoveryScanWillChange, this, note("time"));
    connect(&engine.manager, &StreakManager::lastDiscoveredReposWillChange, this, note("discovered"));
    connect(&engine.manager, &StreakManager::isScanningWillChange, this, note("scanning"));
    discover(engine);
    // The one is added, and then those that are gone are taken out.
    QCOMPARE(steps.join(u' '), QStringLiteral("scanning repositories repositories time discovered scanning"));
}

void TestAutoDiscovery::aScanIsDueAfterFiveMinutes_data()
{
    QTest::addColumn<qint64>("secondsAgo");
    QTest::addColumn<bool>("isScanned");
    QTest::newRow("299 seconds ago is too soon") << qint64(299) << false;
    QTest::newRow("300 seconds ago is due") << qint64(300) << true;
    QTest::newRow("long ago is due") << qint64(86'400) << true;
    QTest::newRow("a time ahead is not due") << qint64(-3600) << false;
}

void TestAutoDiscovery::aScanIsDueAfterFiveMinutes()
{
    QFETCH(qint64, secondsAgo);
    QFETCH(bool, isScanned);
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    engine.settings.setLastAutoDiscoveryScan(engine.clock.now() - std::chrono::seconds(secondsAgo));
    refresh(engine);
    QCOMPARE(trackedPaths(engine).isEmpty(), !isScanned);
}

void TestAutoDiscovery::theSwitchTurnsScansOfTheRefreshOff()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    engine.settings.setAutoDiscoveryEnabled(false);
    refresh(engine);
    QVERIFY(trackedPaths(engine).isEmpty());
    discover(engine);
    QCOMPARE(trackedPaths(engine).size(), 1);
}

void TestAutoDiscovery::newRepositoriesTakePartInTheSameRefresh()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    engine.script(workspace.path(QStringLiteral("one")), "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    refresh(engine);
    QCOMPARE(engine.manager.currentStreak(), 1);
}

void TestAutoDiscovery::foldersAreSearchedInTheirOrder()
{
    const Workspace left;
    const Workspace right;
    left.addRepository(QStringLiteral("one"));
    right.addRepository(QStringLiteral("two"));
    for (const auto &folders : {QStringList{left.path(), right.path()}, QStringList{right.path(), left.path()}}) {
        Engine engine;
        for (const auto &folder : folders)
            engine.settings.addWatchedFolder(folder, 5);
        discover(engine);
        const auto discovered = engine.manager.lastDiscoveredRepos();
        QCOMPARE(discovered.size(), 2);
        QVERIFY(discovered.first().startsWith(folders.first()));
    }
}

void TestAutoDiscovery::aRepositoryUnderTwoFoldersIsAddedOnce()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("inner/one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    engine.settings.addWatchedFolder(workspace.path(QStringLiteral("inner")), 5);
    discover(engine);
    QCOMPARE(trackedPaths(engine), QStringList{workspace.path(QStringLiteral("inner/one"))});
    QCOMPARE(engine.manager.lastDiscoveredRepos(), QStringList{workspace.path(QStringLiteral("inner/one"))});
}

void TestAutoDiscovery::repositoriesOfADisabledFolderGoAtTheNextRun()
{
    const Workspace left;
    const Workspace right;
    left.addRepository(QStringLiteral("one"));
    right.addRepository(QStringLiteral("two"));
    Engine engine;
    engine.settings.addWatchedFolder(left.path(), 5);
    engine.settings.addWatchedFolder(right.path(), 5);
    discover(engine);
    QCOMPARE(trackedPaths(engine).size(), 2);
    setFolderEnabled(engine, 0, false);
    QCOMPARE(trackedPaths(engine).size(), 2);
    discover(engine);
    QCOMPARE(trackedPaths(engine), QStringList{right.path(QStringLiteral("two"))});
}

void TestAutoDiscovery::repositoriesThatVanishAreDropped()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    discover(engine);
    const auto id = engine.settings.trackedRepositories().constFirst().id;
    workspace.remove(QStringLiteral("one"));
    discover(engine);
    QVERIFY(trackedPaths(engine).isEmpty());
    workspace.addRepository(QStringLiteral("one"));
    discover(engine);
    QVERIFY(engine.settings.trackedRepositories().constFirst().id != id);
}

void TestAutoDiscovery::repositoriesOfARemovedFolderGoAtTheNextRun()
{
    const Workspace left;
    const Workspace right;
    left.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(left.path(), 5);
    engine.settings.addWatchedFolder(right.path(), 5);
    discover(engine);
    engine.settings.removeWatchedFolder(engine.settings.watchedFolders().constFirst());
    QCOMPARE(trackedPaths(engine).size(), 1);
    discover(engine);
    QVERIFY(trackedPaths(engine).isEmpty());
}

void TestAutoDiscovery::whatTheUserAddedIsNeverTouched()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addRepository(workspace.path(QStringLiteral("one")), false);
    engine.settings.addRepository(QStringLiteral("/gone"), false);
    engine.settings.addWatchedFolder(workspace.path(), 5);
    const auto before = engine.settings.trackedRepositories();
    discover(engine);
    QCOMPARE(engine.settings.trackedRepositories(), before);
    QVERIFY(engine.manager.lastDiscoveredRepos().isEmpty());
}

// A file of settings that somebody wrote by hand may name it twice.
void TestAutoDiscovery::aPathThatTheUserAddedTooStaysThoughItIsNotFound()
{
    const Workspace workspace;
    Engine engine;
    engine.settings.addRepository(QStringLiteral("/elsewhere"), false);
    auto twice = engine.settings.trackedRepositories();
    twice.append({QUuid::createUuid(), QStringLiteral("/elsewhere"), QStringLiteral("elsewhere"), true, true});
    engine.settings.setTrackedRepositories(twice);
    engine.settings.addWatchedFolder(workspace.path(), 5);
    discover(engine);
    QCOMPARE(engine.settings.trackedRepositories(), twice);
}

void TestAutoDiscovery::aRemovedRepositoryComesBack()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    discover(engine);
    engine.settings.removeRepository(engine.settings.trackedRepositories().constFirst());
    discover(engine);
    QCOMPARE(trackedPaths(engine).size(), 1);
}

void TestAutoDiscovery::theDepthOfTheFolderCounts()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("a/b/one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 3);
    discover(engine);
    QVERIFY(trackedPaths(engine).isEmpty());
    auto folders = engine.settings.watchedFolders();
    folders[0].maxDepth = 4;
    engine.settings.setWatchedFolders(folders);
    discover(engine);
    QCOMPARE(trackedPaths(engine).size(), 1);
}

void TestAutoDiscovery::aRunThatFindsNothingNewSaysSo()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    discover(engine);
    QCOMPARE(engine.manager.lastDiscoveredRepos().size(), 1);
    discover(engine);
    QVERIFY(engine.manager.lastDiscoveredRepos().isEmpty());
    QCOMPARE(trackedPaths(engine).size(), 1);
}

void TestAutoDiscovery::twoRunsAtOnceTrackNothingTwice()
{
    const Workspace workspace;
    workspace.addRepository(QStringLiteral("one"));
    Engine engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    const auto first = engine.manager.runAutoDiscovery();
    const auto second = engine.manager.runAutoDiscovery();
    await(first);
    await(second);
    QCOMPARE(trackedPaths(engine).size(), 1);
}

void TestAutoDiscovery::aScanThatSomebodyAsksForReadsEverything()
{
    const Workspace workspace;
    EngineWith<FakeProcessRunner, SilentTree> engine;
    engine.settings.addWatchedFolder(workspace.path(), 5);
    for (int run = 0; run < 2; ++run)
        await(engine.manager.runAutoDiscovery());
    workspace.addRepository(QStringLiteral("one"));
    await(engine.manager.runAutoDiscovery());
    QVERIFY(engine.settings.trackedRepositories().isEmpty());
    engine.settings.setLastAutoDiscoveryScan(std::nullopt);
    await(engine.manager.runAutoDiscovery());
    QCOMPARE(engine.settings.trackedRepositories().size(), 1);
}

VELQUARIN_TEST(TestAutoDiscovery)
#include "tst_autodiscovery.moc"
