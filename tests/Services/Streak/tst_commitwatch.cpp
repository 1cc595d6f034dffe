// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/CommitWatch.h"

#include "support/Engine.h"
#include "support/RecordingRepositoryWatch.h"
#include "support/Strict.h"
#include "support/TempRepository.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const QString folder = QStringLiteral("/code");

struct World
{
    World() { engine.track(folder, {}, {}, {}); }

    // How long the timers of the watch run that live, apart from the one that refreshes every five minutes.
    [[nodiscard]] QList<double> waiting() const
    {
        QList<double> intervals;
        for (const auto &timer : engine.timers.live()) {
            if (!timer.repeats)
                intervals << timer.interval.count();
        }
        return intervals;
    }

    void fire(double interval)
    {
        const auto &live = engine.timers.live();
        const auto found =
            std::ranges::find_if(live, [&](const auto &timer) { return timer.interval.count() == interval; });
        QVERIFY(found != live.end());
        engine.timers.fire(std::size_t(found - live.begin()));
    }

    void awaitEnd()
    {
        awaitThat([this] { return !engine.manager.isRefreshing(); });
    }

    RecordingRepositoryWatch watch;
    Engine engine;
    CommitWatch commits{engine.manager, engine.settings, engine.git, watch, engine.timers};
};

}  // namespace

class TestCommitWatch : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aChangeRefreshesOnceItIsQuiet();
    void changesWithoutEndRefreshAllTheSame();
    void aChangeDuringARefreshHasAnotherFollow();
    void whoeverAsksDuringARefreshOfTheWatchIsHeard();
    void whoeverAsksDuringAnotherRefreshIsNot();
    void anotherChoiceOfCommitsIsReadAtOnceAndOnce();
    void anotherChoiceDuringARefreshIsReadAfterIt();
    void whatIsWatchedFollowsTheRepositories();
    void newPlacesAreReadOnceMore();
};

void TestCommitWatch::aChangeRefreshesOnceItIsQuiet()
{
    World world;
    world.watch.tellOfChange();
    QVERIFY(!world.engine.manager.isRefreshing());
    QCOMPARE(world.waiting(), QList<double>({0.1, 2.0}));
    world.watch.tellOfChange();
    QCOMPARE(world.waiting().size(), 2);
    world.fire(0.1);
    QVERIFY(world.engine.manager.isRefreshing());
    QVERIFY(world.waiting().isEmpty());
    world.awaitEnd();
    QVERIFY(world.waiting().isEmpty());
}

void TestCommitWatch::changesWithoutEndRefreshAllTheSame()
{
    World world;
    world.watch.tellOfChange();
    world.watch.tellOfChange();
    world.fire(2.0);
    QVERIFY(world.engine.manager.isRefreshing());
    QVERIFY(world.waiting().isEmpty());
    world.awaitEnd();
}

void TestCommitWatch::aChangeDuringARefreshHasAnotherFollow()
{
    World world;
    world.engine.manager.refresh();
    world.watch.tellOfChange();
    world.fire(0.1);
    QVERIFY(world.waiting().isEmpty());
    world.awaitEnd();
    QCOMPARE(world.waiting(), QList<double>({0.1, 2.0}));
    world.engine.runner.forget();
    world.fire(0.1);
    world.awaitEnd();
    QVERIFY(!world.engine.runner.commands().isEmpty());
    QVERIFY(world.waiting().isEmpty());
}

void TestCommitWatch::whoeverAsksDuringARefreshOfTheWatchIsHeard()
{
    World world;
    world.watch.tellOfChange();
    world.fire(0.1);
    world.engine.manager.refresh();
    world.awaitEnd();
    QCOMPARE(world.waiting(), QList<double>({0.1, 2.0}));
    world.fire(0.1);
    world.awaitEnd();
    QVERIFY(world.waiting().isEmpty());
}

void TestCommitWatch::whoeverAsksDuringAnotherRefreshIsNot()
{
    World world;
    world.engine.manager.refresh();
    world.engine.manager.refresh();
    world.awaitEnd();
    QVERIFY(world.waiting().isEmpty());
}

void TestCommitWatch::anotherChoiceOfCommitsIsReadAtOnceAndOnce()
{
    World world;
    world.engine.settings.setCountedAuthors(CountedAuthors::Me);
    world.engine.settings.setCountedBranches(CountedBranches::All);
    QCOMPARE(world.waiting().size(), 2);
    world.fire(0.1);
    QVERIFY(world.engine.manager.isRefreshing());
    world.awaitEnd();
    QVERIFY(world.waiting().isEmpty());
    world.engine.settings.setCountedBranches(CountedBranches::Default);
    QCOMPARE(world.waiting(), QList<double>({0.1, 2.0}));
}

void TestCommitWatch::anotherChoiceDuringARefreshIsReadAfterIt()
{
    World world;
    world.engine.manager.refresh();
    world.engine.settings.setCountedAuthors(CountedAuthors::Me);
    world.fire(0.1);
    world.awaitEnd();
    QCOMPARE(world.waiting(), QList<double>({0.1, 2.0}));
}

void TestCommitWatch::whatIsWatchedFollowsTheRepositories()
{
    const TempRepository repository(QStringLiteral("trunk"));
    World world;
    world.engine.track(repository.path(), {}, {}, {});
    world.engine.refresh();
    const WatchPlace place{repository.file(QStringLiteral(".git/refs/heads")), QStringLiteral("trunk")};
    awaitThat([&] { return world.watch.places() == QList<WatchPlace>{place}; });
    world.engine.settings.setTrackedRepositories({});
    world.engine.refresh();
    awaitThat([&] { return world.watch.places().isEmpty(); });
}

void TestCommitWatch::newPlacesAreReadOnceMore()
{
    const TempRepository repository;
    World world;
    world.engine.track(repository.path(), {}, {}, {});
    world.engine.refresh();
    awaitThat([&] { return world.waiting() == QList<double>({0.1, 2.0}); });
    world.fire(0.1);
    world.awaitEnd();
    QVERIFY(world.waiting().isEmpty());
}

VELQUARIN_TEST(TestCommitWatch)
#include "tst_commitwatch.moc"
