// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/FakeProgram.h"
#include "Console/FigureSource.h"
#include "Console/OwnReading.h"
#include "Console/Reports.h"
#include "support/Engine.h"
#include "support/RecordingRepositoryWatch.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

using State = RunningProgram::State;
const QString path = QStringLiteral("/code/garden");

// A source, and repositories in which git tells of a commit today and of one on another day.
struct World
{
    World()
    {
        // What it stores is what a reading finds.
        Engine engine;
        engine.settings.addRepository(path, false);
        engine.settings.setNotifyOnStreakRisk(true);
        preferences.values = engine.preferences.values;
        program.answer = {State::Absent, {}};
        QObject::connect(&source, &FigureSource::reported, [this](const StreakReport &report) { reports << report; });
        QObject::connect(&source, &FigureSource::failed, [this] { ++failures; });
    }

    std::unique_ptr<OwnReading> reading()
    {
        if (!canRead)
            return nullptr;
        ++readings;
        runner = std::make_unique<FakeProcessRunner>();
        Engine names;
        names.clock.setNow(clock.now());
        runner->answerIn(path, QStringLiteral("rev-parse --git-dir"), ".git\n");
        for (const auto days : {-6, -730})
            runner->answerIn(path, names.logSince(days), "2026-11-20\n2026-11-19\n");
        runner->answerIn(path, QStringLiteral("log HEAD -1 --format=%aI"), "2026-11-20T11:02:03+00:00\n");
        return std::make_unique<OwnReading>(ReadingPlatform{*runner, files, clock, timers, output, preferences, watch});
    }

    void awaitReports(qsizetype number)
    {
        awaitThat([this, number] { return reports.size() >= number; });
    }

    std::unique_ptr<FakeProcessRunner> runner;
    PosixFileTree files;
    FakeClock clock{instant("2026-11-20T20:00:00Z")};
    FakeTimers timers;
    MemoryPreferences preferences;
    RecordingRepositoryWatch watch;
    RecordingOutput output;
    FakeProgram program;
    bool canRead = true;
    int readings = 0;
    int failures = 0;
    QList<StreakReport> reports;
    FigureSource source{{program, {QStringLiteral("CurrentStreak")}}, clock, [this] { return reading(); }, output};
};

RunningProgram::Answer answered(const StreakReport &report)
{
    return {State::Answered, propertiesOf(report)};
}

}  // namespace

class TestFigureSource : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aRunningProgramTells();
    void withoutOneTheRepositoriesAreRead();
    void oneThatHasNoFiguresYetIsNotWaitedFor();
    void oneThatDoesNotAnswerIsSaidOnce();
    void figuresOfYesterdayAreNotTaken();
    void eachReadingIsAnOccasionToAsk();
    void whereNothingCanBeReadItFails();
    void itFollowsTheProgramThatBeginsAndEnds();
    void whatChangesDuringAQuestionIsAskedAgain();
    void aCommitIsNoticedWithoutTheProgram();
    void aReadingRemindsOfNothing();
    void aSourceThatGoesWhileItAsksHarmsNothing();
};

void TestFigureSource::aRunningProgramTells()
{
    World world;
    world.program.answer = answered(fullReport());
    world.source.start();
    QCOMPARE(world.reports, QList<StreakReport>{fullReport()});
    QCOMPARE(world.readings, 0);
    QCOMPARE(world.program.askedFor, QStringList(QStringLiteral("CurrentStreak")));
}

void TestFigureSource::withoutOneTheRepositoriesAreRead()
{
    World world;
    world.source.start();
    world.awaitReports(1);
    QCOMPARE(world.reports.constFirst().currentStreak, 2);
    QVERIFY(world.reports.constFirst().hasCommittedToday);
    QCOMPARE(world.reports.constFirst().repositories.constFirst().path, path);
    QCOMPARE(world.output.lines(), QStringList());
}

void TestFigureSource::oneThatHasNoFiguresYetIsNotWaitedFor()
{
    World world;
    world.program.answer = {State::Answered, {}};
    world.source.start();
    world.awaitReports(1);
    QCOMPARE(world.readings, 1);
    world.program.change({State::Answered, {}});
    QCOMPARE(world.readings, 1);
    world.program.change(answered(fullReport()));
    QCOMPARE(world.reports.constLast(), fullReport());
    QCOMPARE(world.output.lines(), QStringList());
}

void TestFigureSource::oneThatDoesNotAnswerIsSaidOnce()
{
    World world;
    world.program.answer = {State::Silent, {}};
    world.source.start();
    world.awaitReports(1);
    world.program.change({State::Silent, {}});
    QCOMPARE(world.output.lines(),
             QStringList(QStringLiteral("The running program does not answer; the repositories are read here.")));
    QCOMPARE(world.reports.size(), 1);
}

void TestFigureSource::figuresOfYesterdayAreNotTaken()
{
    World world;
    world.clock.setNow(instant("2026-11-21T00:00:01Z"));
    world.program.answer = answered(fullReport());
    world.source.start();
    world.awaitReports(1);
    QVERIFY(!world.reports.constFirst().hasCommittedToday);
    QCOMPARE(world.readings, 1);
    auto ofToday = fullReport();
    ofToday.lastSevenDays = {{date("2026-11-21"), 0}};
    world.program.change(answered(ofToday));
    QCOMPARE(world.reports.constLast(), ofToday);
}

// A bus that comes back is heard of by nobody.
void TestFigureSource::eachReadingIsAnOccasionToAsk()
{
    World world;
    world.source.start();
    world.awaitReports(1);
    world.program.answer = answered(fullReport());
    world.awaitReports(2);
    QCOMPARE(world.reports.constLast(), fullReport());
}

void TestFigureSource::whereNothingCanBeReadItFails()
{
    World world;
    world.canRead = false;
    world.source.start();
    QCOMPARE(world.failures, 1);
    QVERIFY(world.reports.isEmpty());
}

void TestFigureSource::itFollowsTheProgramThatBeginsAndEnds()
{
    World world;
    world.source.start();
    world.awaitReports(1);
    world.program.change(answered(fullReport()));
    QCOMPARE(world.reports.constLast(), fullReport());
    QVERIFY2(world.timers.live().empty(), "the reading goes on beside the program");
    world.program.change({State::Absent, {}});
    world.awaitReports(3);
    QCOMPARE(world.reports.constLast(), world.reports.constFirst());
    world.program.change(answered(fullReport()));
    QCOMPARE(world.reports.constLast(), fullReport());
    QCOMPARE(world.readings, 2);
}

void TestFigureSource::whatChangesDuringAQuestionIsAskedAgain()
{
    World world;
    world.program.isPrompt = false;
    world.program.answer = answered(StreakReport());
    world.source.start();
    QCOMPARE(world.program.questions, 1);
    world.program.change(answered(fullReport()));
    world.program.change(answered(fullReport()));
    QCOMPARE(world.program.questions, 1);
    world.program.answerNow();
    awaitThat([&] { return world.program.questions == 2; });
    world.program.answerNow();
    world.awaitReports(1);
    QCOMPARE(world.program.questions, 2);
    QCOMPARE(world.reports, QList<StreakReport>{fullReport()});
}

void TestFigureSource::aCommitIsNoticedWithoutTheProgram()
{
    World world;
    world.source.start();
    world.awaitReports(1);
    world.watch.tellOfChange();
    awaitThat([&] { return world.timers.live().size() > 1; });
    const auto isQuiet = [](const FakeTimers::Live &timer) { return timer.interval.count() == 0.1; };
    const auto &live = world.timers.live();
    const auto quiet = std::ranges::find_if(live, isQuiet);
    QVERIFY(quiet != live.end());
    world.timers.fire(std::size_t(quiet - live.begin()));
    world.awaitReports(2);
}

void TestFigureSource::aReadingRemindsOfNothing()
{
    World world;
    world.clock.setNow(instant("2026-11-21T20:00:00Z"));
    world.source.start();
    world.awaitReports(1);
    QVERIFY(!world.reports.constFirst().hasCommittedToday);
    QCOMPARE(world.reports.constFirst().currentStreak, 2);
    QCOMPARE(world.output.lines(), QStringList());
    QVERIFY(!world.preferences.values.contains(QStringLiteral("lastStreakRiskNotification")));
}

void TestFigureSource::aSourceThatGoesWhileItAsksHarmsNothing()
{
    FakeProgram program;
    program.isPrompt = false;
    program.answer = answered(fullReport());
    RecordingOutput output;
    const FakeClock clock;
    auto source = std::make_unique<FigureSource>(
        FigureSource::Wanted{program, {}}, clock, [] { return std::unique_ptr<OwnReading>(); }, output);
    source->start();
    source.reset();
    program.answerNow();
    QCoreApplication::processEvents();
    QCOMPARE(output.lines(), QStringList());
}

VELQUARIN_TEST(TestFigureSource)
#include "tst_figuresource.moc"
