// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/Reports.h"
#include "Console/StreakReport.h"
#include "support/Engine.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

#include <limits>

using namespace velquarin;
using namespace velquarin::test;

class TestStreakReport : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void itTellsWhatARefreshHasFound();
    void dayNamesFollowTheZone();
    void propertiesTellAllOfIt();
    void aProgramWithoutFiguresHasNoReport();
    void whatAnotherProgramPutsThereBreaksNothing();
    void datesThatAZoneLeftOutAreLeftOut();
    void numbersAreCountedInWords();
};

void TestStreakReport::itTellsWhatARefreshHasFound()
{
    Engine engine;
    engine.track(QStringLiteral("/code/garden"), "2026-11-20\n2026-11-19\n2026-11-19\n",
                 "2026-11-20\n2026-11-19\n2026-11-19\n2026-10-01\n", "2026-11-20T11:02:03+00:00\n");
    engine.track(QStringLiteral("/code/empty"), {}, {}, {});
    engine.refresh();
    const auto report = reportOf(engine.manager, engine.clock.calendar());
    QCOMPARE(report.currentStreak, 2);
    QCOMPARE(report.longestStreak, 2);
    QVERIFY(report.hasCommittedToday);
    QCOMPARE(report.commitsThisWeek, 3);
    QCOMPARE(report.lastSevenDays.size(), 7);
    QCOMPARE(report.lastSevenDays.value(date("2026-11-19")), 2);
    QCOMPARE(report.lastSevenDays.value(date("2026-11-14"), -1), 0);
    QCOMPARE(report.days,
             (QMap<QDate, qint64>{{date("2026-10-01"), 1}, {date("2026-11-19"), 2}, {date("2026-11-20"), 1}}));
    QCOMPARE(report.repositories,
             (QList<RepositoryReport>{{QStringLiteral("garden"), QStringLiteral("/code/garden"), 1, 3,
                                       QStringLiteral("2026-11-20T11:02:03Z")},
                                      {QStringLiteral("empty"), QStringLiteral("/code/empty"), 0, 0, {}}}));
}

void TestStreakReport::dayNamesFollowTheZone()
{
    // A day begins an hour before that of Greenwich, where git looks the dates up.
    Engine engine;
    engine.clock.setZone("Europe/Berlin");
    const auto path = QStringLiteral("/code/garden");
    engine.settings.addRepository(path, false);
    engine.runner.answerIn(path, QStringLiteral("rev-parse --git-dir"), ".git\n");
    for (const auto *const since : {"2026-11-13", "2024-11-19"})
        engine.runner.answerIn(path,
                               QStringLiteral("log HEAD --format=%ad --date=short --since=%1 --until=2026-11-21")
                                   .arg(QLatin1String(since)),
                               "2026-11-20\n");
    engine.refresh();
    const auto report = reportOf(engine.manager, engine.clock.calendar());
    QVERIFY(report.hasCommittedToday);
    QCOMPARE(report.days.keys(), QList<QDate>{date("2026-11-20")});
    QCOMPARE(report.lastSevenDays.lastKey(), date("2026-11-20"));
}

void TestStreakReport::propertiesTellAllOfIt()
{
    QCOMPARE(reportIn(propertiesOf(fullReport())), fullReport());
    QCOMPARE(reportIn(propertiesOf(StreakReport())), StreakReport());
}

void TestStreakReport::aProgramWithoutFiguresHasNoReport()
{
    QVERIFY(!reportIn({}));
    QVERIFY(!reportIn({{QStringLiteral("Refreshing"), true}}));
}

void TestStreakReport::whatAnotherProgramPutsThereBreaksNothing()
{
    const QMap<QString, qint64> odd{{QStringLiteral("yesterday"), 4}, {QStringLiteral("2026-11-20"), 2}};
    QVERIFY(!reportIn({{QStringLiteral("CurrentStreak"), QStringLiteral("many")}}));
    QVERIFY(!reportIn({{QStringLiteral("CurrentStreak"), qQNaN()}}));
    const auto report = reportIn({{QStringLiteral("CurrentStreak"), qint64(-4)},
                                  {QStringLiteral("LongestStreak"), true},
                                  {QStringLiteral("CommitsThisWeek"), std::numeric_limits<qint64>::max()},
                                  {QStringLiteral("CommitsPerDay"), QVariant::fromValue(odd)},
                                  {QStringLiteral("LastSevenDays"), 7},
                                  {QStringLiteral("Repositories"), QStringLiteral("all")}});
    QVERIFY(report);
    StreakReport expected;
    expected.commitsThisWeek = qint64(1) << 53;
    expected.days = {{date("2026-11-20"), 2}};
    QCOMPARE(*report, expected);
}

void TestStreakReport::datesThatAZoneLeftOutAreLeftOut()
{
    StreakReport report;
    report.days = {{date("2011-12-29"), 1}, {date("2011-12-30"), 2}, {date("2011-12-31"), 3}};
    QCOMPARE(dayCounts(report, calendarIn("Pacific/Apia")).values(), (QList<qint64>{1, 3}));
    QCOMPARE(dayCounts(report, calendarIn("UTC")).values(), (QList<qint64>{1, 2, 3}));
}

void TestStreakReport::numbersAreCountedInWords()
{
    QCOMPARE(counted(0, "day"), QStringLiteral("0 days"));
    QCOMPARE(counted(1, "day"), QStringLiteral("1 day"));
    QCOMPARE(counted(12, "commit"), QStringLiteral("12 commits"));
}

VELQUARIN_TEST(TestStreakReport)
#include "tst_streakreport.moc"
