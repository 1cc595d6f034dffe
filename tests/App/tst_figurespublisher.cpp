// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/FiguresPublisher.h"
#include "Console/StreakReport.h"
#include "support/Engine.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

class TestFiguresPublisher : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void beforeTheFirstRefreshHasEndedThereIsNothing();
    void theFiguresComeWithTheEndOfARefresh();
    void whatIsOldStaysWhileTheNextRefreshRuns();
    void nothingTrackedIsTold();
};

namespace {

struct World
{
    World() { engine.track(QStringLiteral("/code/garden"), "2026-11-20\n", "2026-11-20\n", {}); }

    Engine engine;
    QList<QVariantMap> published;
    FiguresPublisher publisher{engine.manager, engine.clock,
                               [this](const QVariantMap &properties) { published << properties; }};
};

}  // namespace

void TestFiguresPublisher::beforeTheFirstRefreshHasEndedThereIsNothing()
{
    World world;
    const auto refresh = world.engine.manager.refresh();
    QVERIFY(world.engine.manager.isRefreshing());
    QVERIFY(world.published.isEmpty());
    await(refresh);
    QCOMPARE(world.published.size(), 1);
}

void TestFiguresPublisher::theFiguresComeWithTheEndOfARefresh()
{
    World world;
    world.engine.refresh();
    auto expected = propertiesOf(reportOf(world.engine.manager, world.engine.clock.calendar()));
    QCOMPARE(expected.value(QStringLiteral("CurrentStreak")), QVariant(qint64(1)));
    expected.insert(QStringLiteral("Refreshing"), false);
    expected.insert(QStringLiteral("LastRefresh"), QStringLiteral("2026-11-20T12:00:00Z"));
    QCOMPARE(world.published.constLast(), expected);
}

void TestFiguresPublisher::whatIsOldStaysWhileTheNextRefreshRuns()
{
    World world;
    world.engine.refresh();
    const auto before = world.published.constLast();
    const auto refresh = world.engine.manager.refresh();
    QCOMPARE(world.published.size(), 2);
    auto expected = before;
    expected.insert(QStringLiteral("Refreshing"), true);
    QCOMPARE(world.published.constLast(), expected);
    await(refresh);
    QCOMPARE(world.published.constLast(), before);
    QCOMPARE(world.published.size(), 3);
}

void TestFiguresPublisher::nothingTrackedIsTold()
{
    World world;
    world.engine.settings.setTrackedRepositories({});
    world.engine.refresh();
    const auto report = reportIn(world.published.constLast());
    QVERIFY(report);
    QCOMPARE(*report, StreakReport());
}

VELQUARIN_TEST(TestFiguresPublisher)
#include "tst_figurespublisher.moc"
