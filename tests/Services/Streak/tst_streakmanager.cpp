// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Streak/StreakManager.h"

#include "Platform/DateTexts.h"
#include "support/Engine.h"
#include "support/SlowTree.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QScopeGuard>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

const QString first = QStringLiteral("/repos/first");
const QString second = QStringLiteral("/repos/second");

QString figures(const StreakManager &manager)
{
    return QStringLiteral("%1 current, %2 longest, %3 this week, %4")
        .arg(manager.currentStreak())
        .arg(manager.longestStreak())
        .arg(manager.totalCommitsThisWeek())
        .arg(manager.hasCommittedToday() ? QStringLiteral("today") : QStringLiteral("not today"));
}

QString strip(const StreakManager &manager)
{
    QStringList counts;
    for (const auto &day : manager.commitHistory())
        counts << QString::number(day.commitCount);
    return counts.join(u' ');
}

QStringList names(const StreakManager &manager)
{
    QStringList all;
    for (const auto &stats : manager.repositoryStats())
        all << stats.displayName();
    return all;
}

void disableAll(Engine &engine)
{
    auto repositories = engine.settings.trackedRepositories();
    for (auto &repository : repositories)
        repository.isEnabled = false;
    engine.settings.setTrackedRepositories(repositories);
}

bool hasForgottenEverything(const StreakManager &manager)
{
    return figures(manager) == QLatin1String("0 current, 0 longest, 0 this week, not today") &&
           manager.commitHistory().isEmpty() && manager.yearHistory().empty() && manager.repositoryStats().isEmpty();
}

// Notes every announcement, in order.
class Announcements
{
public:
    explicit Announcements(StreakManager &manager)
    {
        const auto note = [this](const char *name) { return [this, name] { m_names << QLatin1String(name); }; };
        using M = StreakManager;
        QObject::connect(&manager, &M::currentStreakWillChange, &m_context, note("currentStreak"));
        QObject::connect(&manager, &M::longestStreakWillChange, &m_context, note("longestStreak"));
        QObject::connect(&manager, &M::hasCommittedTodayWillChange, &m_context, note("hasCommittedToday"));
        QObject::connect(&manager, &M::totalCommitsThisWeekWillChange, &m_context, note("totalCommitsThisWeek"));
        QObject::connect(&manager, &M::commitHistoryWillChange, &m_context, note("commitHistory"));
        QObject::connect(&manager, &M::yearHistoryWillChange, &m_context, note("yearHistory"));
        QObject::connect(&manager, &M::repositoryStatsWillChange, &m_context, note("repositoryStats"));
        QObject::connect(&manager, &M::isRefreshingWillChange, &m_context, note("isRefreshing"));
        QObject::connect(&manager, &M::lastRefreshWillChange, &m_context, note("lastRefresh"));
        QObject::connect(&manager, &M::errorWillChange, &m_context, note("error"));
        QObject::connect(&manager, &M::isScanningWillChange, &m_context, note("isScanning"));
        QObject::connect(&manager, &M::lastDiscoveredReposWillChange, &m_context, note("lastDiscoveredRepos"));
    }

    [[nodiscard]] QStringList names() const { return m_names; }

private:
    QObject m_context;
    QStringList m_names;
};

}  // namespace

class TestStreakManager : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aNewManagerKnowsNothingAndRefreshesNothing();
    void withoutRepositoriesEverythingIsNought();
    void withoutEnabledRepositoriesGitIsNotAsked();
    void removingAllForgetsTheFigures();
    void disablingAllForgetsTheFigures();
    void withoutEnabledRepositoriesNoReminderIsLookedAt();
    void commitsOfTodayAndYesterdayAreAStreakOfTwo();
    void aDaySharedByTwoRepositoriesCountsOnceAndItsCommitsAddUp();
    void repositoriesWithoutAnAddressAreNamed();
    void theNewestActivityComesFirst();
    void repositoriesWithTheSameDateKeepTheirOrder();
    void oldCommitsOutsideTheReadingDoNotCount();
    void theQuestionsOfARefreshAreFixed_data();
    void theQuestionsOfARefreshAreFixed();
    void theOrderOfAnnouncementsIsFixed();
    void theOrderOfAnnouncementsWithoutRepositoriesIsFixed();
    void aRefreshDuringARefreshDoesNothing();
    void anUnstartableRepositoryIsSkippedInSilence();
    void aFailingRepositoryIsReportedAndWhatItAddedStays();
    void aRepositoryWhoseLastQuestionFailsCountsAllTheSame();
    void theOthersAreShownWhenOneFails();
    void theFiguresDoNotWaitForASearchThatBeginsMeanwhile();
    void aFolderThatIsNoRepositoryIsShownWithoutFigures();
    void theTimeOfARefreshIsThatOfItsEnd();
    void aLongRunOfOneDayIsCountedToItsLastCommit_data();
    void aLongRunOfOneDayIsCountedToItsLastCommit();
    void theRefreshEndsAfterTheReminder();
    void theReminderFollowsItsSwitch_data();
    void theReminderFollowsItsSwitch();
    void aNewZoneIsReadAtTheNextRefresh();
    void whereADayIsMissingTheStripIsShorter();
    void aStartThatTheZoneLacksEndsTheRefresh();
    void theTimerTicksWithThePeriodOfTheSettings();
    void anotherPeriodCountsOnlyOnceTheTimerIsSetUpAnew();
    void aTickRefreshes();
    void aManagerThatGoesDuringARefreshTakesNoHarm();
    void theChosenViewIsKept();
    void everyAssignmentIsAnnouncedBeforeItIsMade();
};

void TestStreakManager::aNewManagerKnowsNothingAndRefreshesNothing()
{
    const Engine engine;
    QCOMPARE(figures(engine.manager), QStringLiteral("0 current, 0 longest, 0 this week, not today"));
    QVERIFY(engine.manager.commitHistory().isEmpty() && engine.manager.yearHistory().empty());
    QVERIFY(engine.manager.repositoryStats().isEmpty() && engine.manager.lastDiscoveredRepos().isEmpty());
    QVERIFY(!engine.manager.isRefreshing() && !engine.manager.isScanning() && !engine.manager.showYearView());
    QVERIFY(!engine.manager.lastRefresh().has_value() && !engine.manager.error().has_value());
    QCOMPARE(engine.center.categories().size(), 1);
    QVERIFY(engine.runner.commands().isEmpty());
}

void TestStreakManager::withoutRepositoriesEverythingIsNought()
{
    Engine engine;
    engine.refresh();
    QCOMPARE(figures(engine.manager), QStringLiteral("0 current, 0 longest, 0 this week, not today"));
    QVERIFY(engine.manager.commitHistory().isEmpty());
    QCOMPARE(engine.manager.lastRefresh(), std::optional(engine.clock.now()));
    QVERIFY(!engine.manager.isRefreshing());
    QVERIFY(engine.runner.commands().isEmpty());
}

void TestStreakManager::withoutEnabledRepositoriesGitIsNotAsked()
{
    Engine engine;
    engine.settings.addRepository(first, false);
    disableAll(engine);
    engine.refresh();
    QVERIFY(engine.runner.commands().isEmpty());
    QVERIFY(engine.manager.lastRefresh().has_value());
}

void TestStreakManager::removingAllForgetsTheFigures()
{
    Engine engine;
    engine.track(first, "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    engine.refresh();
    QCOMPARE(engine.manager.currentStreak(), 1);
    engine.settings.removeRepository(engine.settings.trackedRepositories().constFirst());
    engine.refresh();
    QVERIFY(hasForgottenEverything(engine.manager));
}

void TestStreakManager::disablingAllForgetsTheFigures()
{
    Engine engine;
    engine.track(first, "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    engine.refresh();
    QCOMPARE(engine.manager.currentStreak(), 1);
    disableAll(engine);
    engine.refresh();
    QVERIFY(hasForgottenEverything(engine.manager));
}

// One from yesterday that is still shown is the trace that looking at it would leave.
void TestStreakManager::withoutEnabledRepositoriesNoReminderIsLookedAt()
{
    Engine engine;
    engine.clock.setNow(instant("2026-11-20T19:10:00Z"));
    engine.track(first, "2026-11-19\n", "2026-11-19\n", "2026-11-19T09:00:00Z\n");
    engine.refresh();
    QCOMPARE(engine.center.added().size(), 1);
    engine.clock.setNow(instant("2026-11-21T19:10:00Z"));
    disableAll(engine);
    engine.refresh();
    engine.settings.setTrackedRepositories({});
    engine.refresh();
    QCOMPARE(engine.center.withdrawn(), QStringList());
}

void TestStreakManager::commitsOfTodayAndYesterdayAreAStreakOfTwo()
{
    Engine engine;
    engine.track(first, "2026-11-20\n2026-11-20\n2026-11-19\n", "2026-11-20\n2026-11-20\n2026-11-19\n",
                 "2026-11-20T09:00:00Z\n");
    engine.refresh();
    QCOMPARE(figures(engine.manager), QStringLiteral("2 current, 2 longest, 3 this week, today"));
    QCOMPARE(strip(engine.manager), QStringLiteral("0 0 0 0 0 1 2"));
    const auto stats = engine.manager.repositoryStats().constFirst();
    QCOMPARE(stats.path, first);
    QCOMPARE(stats.todayCommits, 2);
    QCOMPARE(stats.weekCommits, 3);
    QCOMPARE(stats.lastCommitDate, std::optional(instant("2026-11-20T09:00:00Z")));
}

void TestStreakManager::aDaySharedByTwoRepositoriesCountsOnceAndItsCommitsAddUp()
{
    Engine engine;
    engine.track(first, "2026-11-20\n", "2026-11-20\n2026-11-19\n", "2026-11-20T09:00:00Z\n");
    engine.track(second, "2026-11-20\n2026-11-20\n", "2026-11-20\n2026-11-20\n", "2026-11-20T08:00:00Z\n");
    engine.refresh();
    QCOMPARE(figures(engine.manager), QStringLiteral("2 current, 2 longest, 3 this week, today"));
    QCOMPARE(engine.manager.yearHistory(),
             (DayCounts{{instant("2026-11-19T00:00:00Z"), 1}, {instant("2026-11-20T00:00:00Z"), 3}}));
}

void TestStreakManager::repositoriesWithoutAnAddressAreNamed()
{
    Engine engine;
    const auto question = QStringLiteral("config -z --get-regexp ^(user|author|velquarin)\\.email$");
    engine.track(first, "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    engine.track(second, {}, {}, {});
    engine.runner.answer(question, {});
    engine.refresh();
    QVERIFY(engine.manager.repositoriesWithoutAddress().isEmpty());
    engine.settings.setCountedAuthors(CountedAuthors::Me);
    engine.refresh();
    const auto names = engine.manager.repositoriesWithoutAddress();
    QCOMPARE(names, (QStringList{QFileInfo(first).fileName(), QFileInfo(second).fileName()}));
    QCOMPARE(engine.manager.totalCommitsThisWeek(), 1);
    disableAll(engine);
    engine.refresh();
    QVERIFY(engine.manager.repositoriesWithoutAddress().isEmpty());
}

void TestStreakManager::theNewestActivityComesFirst()
{
    Engine engine;
    engine.track(QStringLiteral("/repos/empty"), {}, {}, {});
    engine.track(QStringLiteral("/repos/older"), {}, {}, "2026-11-18T09:00:00Z\n");
    engine.track(QStringLiteral("/repos/newer"), {}, {}, "2026-11-19T09:00:00+14:00\n");
    engine.refresh();
    QCOMPARE(names(engine.manager),
             (QStringList{QStringLiteral("newer"), QStringLiteral("older"), QStringLiteral("empty")}));
    const DateTexts texts("en_US", engine.clock.calendar());
    const auto relative = [&](int index) {
        return engine.manager.repositoryStats().at(index).lastCommitRelative(texts, engine.clock.now());
    };
    QCOMPARE(relative(0), QStringLiteral("1 day ago"));
    QCOMPARE(relative(2), QStringLiteral("No commits"));
}

void TestStreakManager::repositoriesWithTheSameDateKeepTheirOrder()
{
    Engine engine;
    QStringList expected;
    for (int number = 0; number < 30; ++number) {
        expected << QStringLiteral("repo%1").arg(number);
        engine.track(QStringLiteral("/repos/") + expected.constLast(), {}, {},
                     number < 15 ? "2026-11-18T09:00:00Z\n" : QByteArray());
    }
    engine.refresh();
    QCOMPARE(names(engine.manager), expected);
}

// Git is asked for 730 days; what it does not print is not there.
void TestStreakManager::oldCommitsOutsideTheReadingDoNotCount()
{
    Engine engine;
    engine.track(first, "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    engine.refresh();
    QVERIFY(engine.runner.commands().contains(
        QStringLiteral("log HEAD --format=%ad --date=short --since=2024-11-20 --until=2026-11-21")));
    QCOMPARE(engine.manager.longestStreak(), 1);
}

void TestStreakManager::theQuestionsOfARefreshAreFixed_data()
{
    QTest::addColumn<QByteArray>("remote");
    QTest::addColumn<QByteArray>("main");
    QTest::addColumn<QByteArray>("master");
    QTest::addColumn<QString>("branch");
    QTest::addColumn<int>("lookups");
    QTest::newRow("the remote's default branch")
        << QByteArray("origin/dev/trunk\n") << QByteArray() << QByteArray() << QStringLiteral("dev/trunk") << 1;
    QTest::newRow("a local main") << QByteArray() << QByteArray("* main\n") << QByteArray() << QStringLiteral("main")
                                  << 2;
    QTest::newRow("a local master") << QByteArray() << QByteArray() << QByteArray("  master\n")
                                    << QStringLiteral("master") << 3;
    QTest::newRow("what is checked out") << QByteArray() << QByteArray() << QByteArray() << QStringLiteral("HEAD") << 3;
}

void TestStreakManager::theQuestionsOfARefreshAreFixed()
{
    QFETCH(QByteArray, remote);
    QFETCH(QByteArray, main);
    QFETCH(QByteArray, master);
    QFETCH(QString, branch);
    QFETCH(int, lookups);
    const auto words = [](const char *text) { return QString::fromLatin1(text).split(u' '); };
    const auto log = [&](const char *since) {
        return QStringList{QStringLiteral("log"), branch} + words("--format=%ad --date=short") +
               QStringList{QLatin1String(since), QStringLiteral("--until=2026-11-21")};
    };
    const QList<QStringList> lookup = QList{words("symbolic-ref refs/remotes/origin/HEAD --short"),
                                            words("branch --list main"), words("branch --list master")}
                                          .mid(0, lookups);
    const QStringList last{QStringLiteral("log"), branch, QStringLiteral("-1"), QStringLiteral("--format=%aI")};
    using Commands = QList<QStringList>;
    const auto expected = Commands({words("rev-parse --git-dir")}) + lookup +
                          Commands({log("--since=2026-11-14"), log("--since=2024-11-20"), last});

    Engine engine;
    engine.settings.addRepository(first, false);
    engine.runner.answer(QStringLiteral("symbolic-ref refs/remotes/origin/HEAD --short"), remote);
    engine.runner.answer(QStringLiteral("branch --list main"), main);
    engine.runner.answer(QStringLiteral("branch --list master"), master);
    for (const auto &command : expected) {
        if (command.constFirst() != QStringLiteral("symbolic-ref") && command.constFirst() != QStringLiteral("branch"))
            engine.runner.answer(command.join(u' '), {});
    }
    engine.refresh();
    QList<QStringList> asked;
    for (const auto &request : engine.runner.requests())
        asked << request.arguments;
    QCOMPARE(asked, expected);
}

void TestStreakManager::theOrderOfAnnouncementsIsFixed()
{
    Engine engine;
    engine.track(first, {}, {}, {});
    const Announcements announcements(engine.manager);
    engine.refresh();
    QCOMPARE(announcements.names().join(u' '),
             QStringLiteral("isRefreshing error currentStreak longestStreak hasCommittedToday totalCommitsThisWeek "
                            "yearHistory repositoryStats commitHistory isRefreshing lastRefresh"));
}

void TestStreakManager::theOrderOfAnnouncementsWithoutRepositoriesIsFixed()
{
    Engine engine;
    const Announcements announcements(engine.manager);
    engine.refresh();
    QCOMPARE(announcements.names().join(u' '),
             QStringLiteral("isRefreshing error currentStreak longestStreak hasCommittedToday totalCommitsThisWeek "
                            "commitHistory yearHistory repositoryStats isRefreshing lastRefresh"));
}

void TestStreakManager::aRefreshDuringARefreshDoesNothing()
{
    Engine engine;
    engine.track(first, {}, {}, {});
    const auto running = engine.manager.refresh();
    const Announcements announcements(engine.manager);
    const auto dropped = engine.manager.refresh();
    QVERIFY(dropped.isReady());
    QVERIFY(announcements.names().isEmpty());
    await(running);
    QCOMPARE(engine.runner.commands().count(QStringLiteral("rev-parse --git-dir")), 1);
}

void TestStreakManager::anUnstartableRepositoryIsSkippedInSilence()
{
    Engine engine;
    engine.settings.addRepository(first, false);
    engine.track(second, "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    engine.refresh();
    QCOMPARE(names(engine.manager), QStringList{QStringLiteral("second")});
    QCOMPARE(engine.manager.currentStreak(), 1);
    QVERIFY(engine.output.lines().isEmpty());
}

void TestStreakManager::aFailingRepositoryIsReportedAndWhatItAddedStays()
{
    Engine engine;
    engine.settings.addRepository(first, false);
    engine.runner.answerIn(first, QStringLiteral("rev-parse --git-dir"), {});
    engine.runner.answerIn(first, engine.logSince(-6), "2026-11-20\n2026-11-19\n");
    engine.refresh();
    QCOMPARE(engine.output.lines(), QStringList{QStringLiteral("Error processing repo /repos/first: no such program")});
    QVERIFY(engine.manager.repositoryStats().isEmpty());
    QCOMPARE(figures(engine.manager), QStringLiteral("0 current, 0 longest, 2 this week, today"));
    QCOMPARE(strip(engine.manager), QStringLiteral("0 0 0 0 0 1 1"));
    QVERIFY(!engine.manager.error().has_value());
}

void TestStreakManager::aRepositoryWhoseLastQuestionFailsCountsAllTheSame()
{
    Engine engine;
    engine.settings.addRepository(first, false);
    engine.runner.answerIn(first, QStringLiteral("rev-parse --git-dir"), {});
    engine.runner.answerIn(first, engine.logSince(-6), "2026-11-20\n2026-11-19\n");
    engine.runner.answerIn(first, engine.logSince(-730), "2026-11-20\n2026-11-19\n");
    engine.refresh();
    QCOMPARE(engine.output.lines(), QStringList{QStringLiteral("Error processing repo /repos/first: no such program")});
    QVERIFY(engine.manager.repositoryStats().isEmpty());
    QCOMPARE(figures(engine.manager), QStringLiteral("2 current, 2 longest, 2 this week, today"));
    QCOMPARE(engine.manager.yearHistory().size(), 2);
}

void TestStreakManager::theOthersAreShownWhenOneFails()
{
    Engine engine;
    engine.settings.addRepository(QStringLiteral("/repos/odd\nname"), false);
    engine.runner.answerIn(QStringLiteral("/repos/odd\nname"), QStringLiteral("rev-parse --git-dir"), {});
    engine.track(second, "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    engine.refresh();
    QCOMPARE(engine.output.lines(),
             QStringList{QStringLiteral("Error processing repo /repos/odd\nname: no such program")});
    QCOMPARE(names(engine.manager), QStringList{QStringLiteral("second")});
}

void TestStreakManager::theFiguresDoNotWaitForASearchThatBeginsMeanwhile()
{
    Engine engine;
    engine.track(first, "2026-11-20\n", "2026-11-20\n", {});
    QSemaphore isAsked;
    QSemaphore mayAnswer;
    engine.runner.answerWith(first + QStringLiteral("|log HEAD -1 --format=%aI"), [&] {
        isAsked.release();
        mayAnswer.acquire();
        return QByteArray("2026-11-20T09:00:00Z");
    });
    const SlowTree files;
    GitService git(engine.runner, files, engine.clock);
    StreakManager manager(git, engine.settings, engine.notifications, engine.clock, engine.timers, engine.output);
    const auto refresh = manager.refresh();
    isAsked.acquire();
    const QTemporaryDir folder;
    const auto search = git.scanForRepositories(folder.path(), 5);
    const QScopeGuard letItEnd([&] { files.mayAnswer.release(); });
    mayAnswer.release();
    QTRY_COMPARE(manager.currentStreak(), 1);
    QVERIFY(!search.isFinished());
}

void TestStreakManager::aFolderThatIsNoRepositoryIsShownWithoutFigures()
{
    Engine engine;
    engine.track(first, {}, {}, {});
    engine.refresh();
    const auto stats = engine.manager.repositoryStats().constFirst();
    QCOMPARE(stats.todayCommits, 0);
    QCOMPARE(stats.weekCommits, 0);
    QVERIFY(!stats.lastCommitDate.has_value());
}

void TestStreakManager::theTimeOfARefreshIsThatOfItsEnd()
{
    Engine engine;
    engine.track(first, {}, {}, {});
    engine.runner.answerWith(first + QStringLiteral("|log HEAD -1 --format=%aI"), [&engine] {
        engine.clock.advance(90s);
        return QByteArray();
    });
    const auto begin = engine.clock.now();
    engine.refresh();
    QCOMPARE(engine.manager.lastRefresh(), std::optional(begin + 90s));
}

// They are compared in blocks, whose edges are the places to go wrong.
void TestStreakManager::aLongRunOfOneDayIsCountedToItsLastCommit_data()
{
    QTest::addColumn<int>("run");
    for (const int run : {1, 2, 1023, 1024, 1025, 1026, 2047, 2048, 2049, 2050, 5000})
        QTest::addRow("%d", run) << run;
}

void TestStreakManager::aLongRunOfOneDayIsCountedToItsLastCommit()
{
    QFETCH(int, run);
    const auto days = [run](const char *day) { return (QByteArray(day) + '\n').repeated(run); };
    Engine engine;
    const auto log = days("2026-11-20") + days("2026-11-19") + days("2026-11-20") + "2026-11-18\n";
    engine.track(first, log, log, {});
    engine.refresh();
    QCOMPARE(engine.manager.yearHistory(), (DayCounts{{instant("2026-11-18T00:00:00Z"), 1},
                                                      {instant("2026-11-19T00:00:00Z"), run},
                                                      {instant("2026-11-20T00:00:00Z"), 2 * run}}));
    QCOMPARE(engine.manager.totalCommitsThisWeek(), 3 * run + 1);
}

void TestStreakManager::theRefreshEndsAfterTheReminder()
{
    Engine engine;
    engine.clock.setNow(instant("2026-11-20T19:10:00Z"));
    engine.track(first, "2026-11-19\n", "2026-11-19\n", "2026-11-19T09:00:00Z\n");
    engine.center.holdAnswers();
    const auto refresh = engine.manager.refresh();
    QTRY_COMPARE(engine.center.leaveQuestions() + int(engine.center.added().size()), 1);
    QVERIFY(engine.manager.isRefreshing());
    QCOMPARE(engine.manager.currentStreak(), 1);
    while (engine.manager.isRefreshing()) {
        engine.center.answer();
        QCoreApplication::processEvents();
    }
    await(refresh);
    QCOMPARE(engine.center.added().size(), 1);
    QCOMPARE(engine.output.lines(), QStringList{QStringLiteral("Streak risk notification sent")});
}

void TestStreakManager::theReminderFollowsItsSwitch_data()
{
    QTest::addColumn<bool>("isWanted");
    QTest::newRow("on") << true;
    QTest::newRow("off") << false;
}

void TestStreakManager::theReminderFollowsItsSwitch()
{
    QFETCH(bool, isWanted);
    Engine engine;
    engine.clock.setNow(instant("2026-11-20T19:10:00Z"));
    engine.track(first, "2026-11-19\n", "2026-11-19\n", "2026-11-19T09:00:00Z\n");
    engine.settings.setNotifyOnStreakRisk(isWanted);
    engine.refresh();
    QCOMPARE(engine.manager.currentStreak(), 1);
    QCOMPARE(engine.center.added().size(), isWanted ? 1 : 0);
}

void TestStreakManager::aNewZoneIsReadAtTheNextRefresh()
{
    Engine engine;
    engine.clock.setNow(instant("2026-11-20T23:00:00Z"));
    engine.track(first, "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    engine.refresh();
    QVERIFY(engine.manager.hasCommittedToday());
    engine.clock.setZone("Pacific/Kiritimati");
    // Midnight there is ten o'clock the day before at Greenwich, so both periods begin a day earlier.
    engine.runner.answer(QStringLiteral("log HEAD --format=%ad --date=short --since=2026-11-14 --until=2026-11-21"),
                         "2026-11-20\n");
    engine.runner.answer(QStringLiteral("log HEAD --format=%ad --date=short --since=2024-11-20 --until=2026-11-21"),
                         "2026-11-20\n");
    engine.refresh();
    QVERIFY(!engine.manager.hasCommittedToday());
    QCOMPARE(engine.manager.currentStreak(), 1);
}

void TestStreakManager::whereADayIsMissingTheStripIsShorter()
{
    Engine engine;
    engine.clock.setZone("Pacific/Apia");
    engine.clock.setNow(instant("2012-01-02T00:00:00Z"));
    engine.settings.addRepository(first, false);
    engine.runner.answer(QStringLiteral("rev-parse --git-dir"), {});
    engine.runner.answer(QStringLiteral("log HEAD --format=%ad --date=short --since=2011-12-27 --until=2012-01-03"),
                         "2012-01-02\n2011-12-29\n");
    engine.runner.answer(QStringLiteral("log HEAD --format=%ad --date=short --since=2010-01-02 --until=2012-01-03"),
                         {});
    engine.runner.answer(QStringLiteral("log HEAD -1 --format=%aI"), {});
    engine.refresh();
    QCOMPARE(strip(engine.manager), QStringLiteral("0 0 1 0 0 1"));
    QVERIFY(engine.output.lines().isEmpty());
}

void TestStreakManager::aStartThatTheZoneLacksEndsTheRefresh()
{
    Engine engine;
    engine.clock.setZone("Pacific/Apia");
    // 730 days after the date that Apia left out.
    engine.clock.setNow(instant("2013-12-28T22:00:00Z"));
    QCOMPARE(engine.clock.calendar().dateOf(engine.clock.now()), QDate(2013, 12, 29));
    engine.track(first, {}, {}, {});
    const Announcements announcements(engine.manager);
    engine.refresh();
    QCOMPARE(announcements.names().join(u' '), QStringLiteral("isRefreshing error isRefreshing lastRefresh"));
    QVERIFY(engine.runner.commands().isEmpty());
}

void TestStreakManager::theTimerTicksWithThePeriodOfTheSettings()
{
    const Engine engine;
    QCOMPARE(engine.timers.live().size(), std::size_t(1));
    QVERIFY(engine.timers.live().front().repeats);
    QCOMPARE(engine.timers.live().front().interval.count(), 300.0);
}

void TestStreakManager::anotherPeriodCountsOnlyOnceTheTimerIsSetUpAnew()
{
    Engine engine;
    engine.settings.setRefreshInterval(60);
    QCOMPARE(engine.timers.live().front().interval.count(), 300.0);
    engine.manager.setupRefreshTimer();
    QCOMPARE(engine.timers.live().size(), std::size_t(1));
    QCOMPARE(engine.timers.live().front().interval.count(), 60.0);
}

void TestStreakManager::aTickRefreshes()
{
    Engine engine;
    engine.track(first, "2026-11-20\n", "2026-11-20\n", "2026-11-20T09:00:00Z\n");
    engine.timers.fire(0);
    QVERIFY(engine.manager.isRefreshing());
    QTRY_VERIFY(!engine.manager.isRefreshing());
    QCOMPARE(engine.manager.currentStreak(), 1);
}

void TestStreakManager::aManagerThatGoesDuringARefreshTakesNoHarm()
{
    Engine engine;
    engine.track(first, {}, {}, {});
    engine.track(second, {}, {}, {});
    auto brief = std::make_unique<StreakManager>(engine.git, engine.settings, engine.notifications, engine.clock,
                                                 engine.timers, engine.output);
    const auto refresh = brief->refresh();
    brief.reset();
    await(refresh);
    // The repository that is being read is read to its end, and no other is begun.
    QVERIFY(!engine.runner.requests().isEmpty());
    for (const auto &request : engine.runner.requests())
        QCOMPARE(request.directory, first);
}

void TestStreakManager::theChosenViewIsKept()
{
    Engine engine;
    engine.manager.setShowYearView(true);
    engine.refresh();
    QVERIFY(engine.manager.showYearView());
}

void TestStreakManager::everyAssignmentIsAnnouncedBeforeItIsMade()
{
    Engine engine;
    QList<bool> seen;
    connect(&engine.manager, &StreakManager::showYearViewWillChange, this,
            [&](bool newValue) { seen << engine.manager.showYearView() << newValue; });
    engine.manager.setShowYearView(true);
    engine.manager.setShowYearView(true);
    QCOMPARE(seen, (QList{false, true, true, true}));
}

VELQUARIN_TEST(TestStreakManager)
#include "tst_streakmanager.moc"
