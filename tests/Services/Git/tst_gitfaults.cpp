// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// What a refresh makes of a git that is broken, and of repositories that go while it runs. Meanwhile the main thread
// has to answer, as the window of the desktop that it is.

#include "Models/AppSettings.h"
#include "Platform/Linux/Files/PosixFileTree.h"
#include "Platform/Linux/Process/ChildProcessRunner.h"
#include "Services/Git/GitService.h"
#include "Services/Reminder/NotificationService.h"
#include "Services/Streak/StreakManager.h"
#include "support/Await.h"
#include "support/Extent.h"
#include "support/FakeClock.h"
#include "support/FakeTimers.h"
#include "support/Files.h"
#include "support/MemoryPreferences.h"
#include "support/OrdinaryUser.h"
#include "support/RecordingNotificationCenter.h"
#include "support/RecordingOutput.h"
#include "support/Standstill.h"
#include "support/Strict.h"
#include "support/TestProgram.h"
#include "support/Ticker.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

constexpr qint64 mostWorkAllowed = 100;  // ms

//! The real runner, with another program in git's place, and with a loop that has to turn before that starts.
class StandInRunner : public ChildProcessRunner
{
public:
    explicit StandInRunner(QString standIn)
        : m_standIn(std::move(standIn))
    {
    }

    bool confine(const QString & /*program*/) override { return ChildProcessRunner::confine(m_standIn); }

    ProcessOutput run(const ProcessRequest &request) override
    {
        auto changed = request;
        changed.program = m_standIn;
        m_loop.awaitTurn();
        return ChildProcessRunner::run(changed);
    }

    void stop() override
    {
        m_loop.end();
        ChildProcessRunner::stop();
    }

    [[nodiscard]] bool wasWaitedFor() const { return m_loop.hasStoodStill(); }

private:
    QString m_standIn;
    LoopWatch m_loop;
};

void turnTheLoop(int times)
{
    int turned = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&turned] { ++turned; });
    timer.start(1ms);
    awaitThat([&] { return turned >= times; });
}

//! The engine on 2026-11-20 over one repository and a stand-in for git, in a zone whose far days take long to look up.
struct World
{
    explicit World(const QString &name = QStringLiteral("git"))
    {
        QDir(folder.path()).mkpath(QStringLiteral("repository"));
        runner.emplace(folder.filePath(name));
        git.emplace(*runner, files, clock);
        settings.addRepository(repository(), false);
        manager.emplace(*git, settings, notifications, clock, timers, output);
    }

    [[nodiscard]] QString repository() const { return folder.filePath(QStringLiteral("repository")); }

    void standIn(const QByteArray &script, bool isExecutable = true) const
    {
        const auto path = folder.filePath(QStringLiteral("git"));
        writeFile(path, "#!/bin/bash\n" + script + '\n');
        QFile::setPermissions(path, isExecutable ? QFile::ReadOwner | QFile::ExeOwner : QFile::ReadOwner);
    }

    //! Whether a refresh leaves the main thread to others all the while.
    [[nodiscard]] bool refreshHoldsNobodyUp()
    {
        const auto work = mostWorkDuring([this] { await(manager->refresh()); });
        if (work > mostWorkAllowed || runner->wasWaitedFor())
            qInfo("%lld ms of work in one turn of the loop", work);
        return work <= mostWorkAllowed && !runner->wasWaitedFor();
    }

    //! Starts a refresh and waits until the stand-in has left the file "hangs".
    void refreshUntilItHangs()
    {
        refresh = manager->refresh();
        const auto sign = folder.filePath(QStringLiteral("hangs"));
        QTRY_VERIFY2(QFile::exists(sign), sightOfChildren());
    }

    QTemporaryDir folder;
    PosixFileTree files;
    FakeClock clock{instant("2026-11-20T12:00:00Z"), "Europe/Berlin"};
    FakeTimers timers;
    MemoryPreferences preferences;
    RecordingOutput output;
    RecordingNotificationCenter center;
    AppSettings settings{preferences};
    NotificationService notifications{center, preferences, clock, timers, output};
    std::optional<StandInRunner> runner;
    std::optional<GitService> git;
    std::optional<StreakManager> manager;
    std::optional<QCoro::Task<>> refresh;
};

}  // namespace

class TestGitFaults : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aBrokenGitEndsTheRefreshAndHoldsNobodyUp_data();
    void aBrokenGitEndsTheRefreshAndHoldsNobodyUp();
    void whatIsInGitsPlaceIsNotStarted_data();
    void whatIsInGitsPlaceIsNotStarted();
    void aRepositoryThatGoesDuringTheRefreshIsReported_data();
    void aRepositoryThatGoesDuringTheRefreshIsReported();
    void aGitThatNeverEndsHoldsNobodyUpAndGoesAtOnceWhenTheServiceEnds_data();
    void aGitThatNeverEndsHoldsNobodyUpAndGoesAtOnceWhenTheServiceEnds();
};

void TestGitFaults::aBrokenGitEndsTheRefreshAndHoldsNobodyUp_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<qint64>("streak");
    const auto row = [](const char *name, const char *script, qint64 streak) {
        QTest::newRow(name) << QByteArray(script) << streak;
    };
    row("prints nonsense", "echo nonsense", 0);
    row("prints nothing", "exit 0", 0);
    row("fails after printing dates", "[ $1 = log ] && echo 2026-11-20; exit 1", 1);
    row("crashes after printing dates", "[ $1 = log ] && echo 2026-11-20; kill -SEGV $$", 1);
    row("prints what is no UTF-8 among the dates", R"([ $1 = log ] && printf '2026-11-20\n\377\n'; exit 0)", 0);
    row("prints a gigabyte in one line", "[ $1 = log ] && exec head -c 1G /dev/zero; exit 0", 0);
    row("prints a gigabyte of dates", "[ $1 = log ] && yes 2026-11-20 | head -c 1G; exit 0", 1);
    row("prints dates for ever", "[ $1 = log ] && exec yes 2026-11-20; exit 0", 1);
    // Both are more days than are counted, and would hold the loop up for seconds; the whole run fills the pipe as well.
    if (wholeRun())
        row("prints another date in each of millions of lines",
            "[ $1 = log ] && exec seq -f %.0f-06-01 100000 9999999; exit 0", 0);
    row("prints another date in each of many lines", "[ $1 = log ] && exec seq -f %.0f-06-01 100000 400000; exit 0", 0);
    row("leaves somebody behind who keeps the pipe", "[ $1 = log ] && echo 2026-11-20; sleep 30 & exit 0", 1);
    row("closes its output and goes on for a moment", "[ $1 = log ] && echo 2026-11-20; exec >&-; sleep 0.1", 1);
}

void TestGitFaults::aBrokenGitEndsTheRefreshAndHoldsNobodyUp()
{
    QFETCH(QByteArray, script);
    QFETCH(qint64, streak);
    World world;
    world.standIn(script);
    QVERIFY(world.refreshHoldsNobodyUp());
    QCOMPARE(world.manager->currentStreak(), streak);
    QCOMPARE(world.manager->repositoryStats().size(), 1);
    QVERIFY(!world.manager->isRefreshing());
}

void TestGitFaults::whatIsInGitsPlaceIsNotStarted_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing") << QStringLiteral("missing");
    QTest::newRow("a file that is not executable") << QStringLiteral("git");
    QTest::newRow("a folder") << QStringLiteral("repository");
}

void TestGitFaults::whatIsInGitsPlaceIsNotStarted()
{
    QFETCH(QString, name);
    World world(name);
    world.standIn("echo 2026-11-20", false);
    QVERIFY(world.refreshHoldsNobodyUp());
    QCOMPARE(world.manager->currentStreak(), 0);
    QCOMPARE(world.manager->repositoryStats().size(), 0);
    QVERIFY(!world.manager->isRefreshing());
}

void TestGitFaults::aRepositoryThatGoesDuringTheRefreshIsReported_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("removed") << QByteArray(R"(rm -r "$PWD")");
    QTest::newRow("replaced by a file") << QByteArray(R"(rm -r "$PWD" && touch "$PWD")");
    QTest::newRow("replaced by a dangling link") << QByteArray(R"(rm -r "$PWD" && ln -s /nowhere "$PWD")");
    QTest::newRow("denied") << QByteArray(R"(chmod 000 "$PWD")");
}

// The first log is answered in full; the repository is gone before the second.
void TestGitFaults::aRepositoryThatGoesDuringTheRefreshIsReported()
{
    QFETCH(QByteArray, fault);
    World world;
    const AsOrdinaryUser ordinary(world.folder.path());
    world.standIn("if [ $1 = log ]; then echo 2026-11-20; " + fault + "; fi");
    QVERIFY(world.refreshHoldsNobodyUp());
    QVERIFY(!world.manager->isRefreshing());
    QCOMPARE(world.output.lines().size(), 1);
    QVERIFY(world.output.lines().first().startsWith(QStringLiteral("Error processing repo ") + world.repository()));
    QCOMPARE(world.manager->totalCommitsThisWeek(), 1);
    QCOMPARE(world.manager->repositoryStats().size(), 0);
}

void TestGitFaults::aGitThatNeverEndsHoldsNobodyUpAndGoesAtOnceWhenTheServiceEnds_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("waits") << QByteArray("exec sleep 1000");
    QTest::newRow("is deaf to a request to end") << QByteArray("trap '' TERM INT HUP; while :; do sleep 1000; done");
    QTest::newRow("has somebody else do the waiting") << QByteArray("sleep 1000; exit 0");
    QTest::newRow("waits for a child of its own") << QByteArray("sleep 1000 & wait");
}

void TestGitFaults::aGitThatNeverEndsHoldsNobodyUpAndGoesAtOnceWhenTheServiceEnds()
{
    QFETCH(QByteArray, script);
    World world;
    world.standIn("echo $$ > ../hangs\n" + script);
    const auto work = mostWorkDuring([&world] {
        world.refreshUntilItHangs();
        turnTheLoop(100);
    });
    QVERIFY2(work <= mostWorkAllowed, qPrintable(QString::number(work)));
    QVERIFY(world.manager->isRefreshing());
    const auto group = readFile(world.folder.filePath(QStringLiteral("hangs"))).trimmed().toInt();
    QVERIFY(group > 1);
    QVERIFY2(world.git->stop(atOnce), sightOfChildren());
    QTRY_VERIFY2(kill(-group, 0) != 0, "its group still lives");
}

VELQUARIN_TEST(TestGitFaults)
#include "tst_gitfaults.moc"
