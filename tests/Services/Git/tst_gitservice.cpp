// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitService.h"

#include "Platform/Linux/Files/PosixFileTree.h"
#include "Platform/Linux/Process/ChildProcessRunner.h"
#include "support/Await.h"
#include "support/FakeClock.h"
#include "support/GitQuestions.h"
#include "support/OtherTimes.h"
#include "support/SlowTree.h"
#include "support/Standstill.h"
#include "support/Strict.h"
#include "support/TempRepository.h"
#include "support/TestProgram.h"

#include <QDirIterator>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <fcntl.h>
#include <sys/stat.h>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

struct World
{
    ChildProcessRunner runner;
    PosixFileTree files;
    FakeClock clock{instant("2024-03-07T12:00:00Z")};
    GitService git{runner, files, clock};
};

QString branchOf(World &world, const QString &path)
{
    return await(getDefaultBranch(world.git, path));
}

DayCounts weekOf(World &world, const QString &path)
{
    return await(getCommitHistory(world.git, path, 7));
}

qint64 totalCommits(const DayCounts &history)
{
    qint64 total = 0;
    for (const auto count : history)
        total += count;
    return total;
}

bool makeFifo(const QString &path)
{
    return mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
}

// A fifo can be opened for writing without waiting only while somebody reads it.
bool hasReader(const QString &fifo)
{
    const auto descriptor = open(QFile::encodeName(fifo).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    // Left open: closing it would be the end of the file for the reader.
    return descriptor >= 0;
}

}  // namespace

class TestGitService : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void withoutARemoteALocalMainIsRead();
    void theRemotesDefaultBranchIsRead();
    void aBranchOfAnyOtherNameIsReadAsHead();
    void aFreshRepositoryHasNoFigures();
    void aFolderWithoutRepositoryHasNoFigures();
    void aMissingFolderIsAnError();
    void aFileInPlaceOfAFolderIsAnError();
    void anEmptyPathIsAnError();
    void commitsAreCountedByTheirAuthorsDay();
    void authorDatesOfAnyAgeAreKept();
    void thousandsOfCommitsAreReadWhole();
    void foldersOfAnyNameAreRead_data();
    void foldersOfAnyNameAreRead();
    void aFolderNamedLikeTheBranchIsNoTrouble();
    void answersComeInTheOrderOfTheQuestions();
    void aRepositoryIsToldOnceItsQuestionBegins();
    void manyAreOneOperationUntilGitIsStarted();
    void aSlowOneIsTheLastOfItsOperation();
    void manyEndWithTheServiceAfterOne();
    void whatASearchKnowsLastsADay();
    void theEventLoopGoesOnMeanwhile();
    void aHangingGitEndsWithTheService();
    void afterTheEndNothingStarts();
    void readingChangesNoFile();
};

void TestGitService::withoutARemoteALocalMainIsRead()
{
    const TempRepository repository;
    repository.commit(QStringLiteral("2024-03-07T10:00:00Z"));
    World world;
    QCOMPARE(branchOf(world, repository.path()), QStringLiteral("main"));
    QCOMPARE(weekOf(world, repository.path()), (DayCounts{{instant("2024-03-07T00:00:00Z"), 1}}));
}

void TestGitService::theRemotesDefaultBranchIsRead()
{
    const TempRepository upstream(QStringLiteral("develop"));
    upstream.commit(QStringLiteral("2024-03-06T10:00:00Z"));
    const TempRepository parent;
    parent.git({QStringLiteral("clone"), QStringLiteral("--quiet"), upstream.path(), QStringLiteral("clone")});
    const auto clone = parent.file(QStringLiteral("clone"));
    RealGit(clone).run(
        {QStringLiteral("checkout"), QStringLiteral("--quiet"), QStringLiteral("-b"), QStringLiteral("main")});
    World world;
    QCOMPARE(branchOf(world, clone), QStringLiteral("develop"));
    QCOMPARE(weekOf(world, clone), (DayCounts{{instant("2024-03-06T00:00:00Z"), 1}}));
}

void TestGitService::aBranchOfAnyOtherNameIsReadAsHead()
{
    const TempRepository repository(QStringLiteral("trunk"));
    repository.commit(QStringLiteral("2024-03-05T10:00:00Z"));
    World world;
    QCOMPARE(branchOf(world, repository.path()), QStringLiteral("HEAD"));
    QCOMPARE(weekOf(world, repository.path()), (DayCounts{{instant("2024-03-05T00:00:00Z"), 1}}));
}

void TestGitService::aFreshRepositoryHasNoFigures()
{
    const TempRepository repository;
    World world;
    QCOMPARE(branchOf(world, repository.path()), QStringLiteral("HEAD"));
    QVERIFY(weekOf(world, repository.path()).empty());
    QVERIFY(
        await(getCommits(world.git, repository.path(), instant("2022-01-01T00:00:00Z"), world.clock.now())).isEmpty());
    QVERIFY(!await(getLastCommitDate(world.git, repository.path())).has_value());
}

void TestGitService::aFolderWithoutRepositoryHasNoFigures()
{
    const QTemporaryDir folder;
    World world;
    QVERIFY(await(world.git.isGitRepository(folder.path())));
    QVERIFY(weekOf(world, folder.path()).empty());
    QVERIFY(!await(getLastCommitDate(world.git, folder.path())).has_value());
}

void TestGitService::aMissingFolderIsAnError()
{
    const QTemporaryDir parent;
    const auto missing = parent.filePath(QStringLiteral("missing"));
    World world;
    QVERIFY(!await(world.git.isGitRepository(missing)));
    QVERIFY_THROWS_EXCEPTION(LaunchError, weekOf(world, missing));
    QVERIFY_THROWS_EXCEPTION(LaunchError, await(getLastCommitDate(world.git, missing)));
    QCOMPARE(branchOf(world, missing), QStringLiteral("HEAD"));
}

void TestGitService::aFileInPlaceOfAFolderIsAnError()
{
    const TempRepository repository;
    repository.write(QStringLiteral("file"), "text");
    World world;
    QVERIFY(!await(world.git.isGitRepository(repository.file(QStringLiteral("file")))));
}

// The program's own folder, or the one before a NUL, is not the one that was asked for.
void TestGitService::anEmptyPathIsAnError()
{
    const TempRepository repository;
    World world;
    QVERIFY(!await(world.git.isGitRepository(QString())));
    QVERIFY(!await(world.git.isGitRepository(repository.path() + QChar(u'\0') + QStringLiteral("x"))));
}

void TestGitService::commitsAreCountedByTheirAuthorsDay()
{
    const TempRepository repository;
    repository.commit(QStringLiteral("2024-03-06T12:00:00Z"), QStringLiteral("2024-03-06T23:30:00-05:00"));
    repository.commit(QStringLiteral("2024-03-07T09:00:00Z"), QStringLiteral("2024-03-07T01:00:00+14:00"));
    repository.commit(QStringLiteral("2024-03-07T09:30:00Z"));
    repository.commit(QStringLiteral("2024-03-07T09:45:00Z"));
    World world;
    QCOMPARE(weekOf(world, repository.path()),
             (DayCounts{{instant("2024-03-06T00:00:00Z"), 1}, {instant("2024-03-07T00:00:00Z"), 3}}));
    QCOMPARE(await(getLastCommitDate(world.git, repository.path())), std::optional(instant("2024-03-07T09:45:00Z")));
}

void TestGitService::authorDatesOfAnyAgeAreKept()
{
    const TempRepository repository;
    for (const auto &author : {"1970-01-01T12:00:00Z", "2038-01-20T12:00:00Z", "2024-03-14T12:00:00Z"})
        repository.commit(QStringLiteral("2024-03-07T09:00:00Z"), QLatin1String(author));
    // 12345-06-01, which git takes as seconds only.
    repository.commit(QStringLiteral("2024-03-07T09:00:00Z"), QStringLiteral("@327416472000 +0000"));
    World world;
    const auto history = weekOf(world, repository.path());
    QCOMPARE(history.size(), 4);
    QCOMPARE(history.firstKey(), instant("1970-01-01T00:00:00Z"));
    QCOMPARE(world.clock.calendar().dateOf(history.lastKey()).year(), 12345);
}

void TestGitService::thousandsOfCommitsAreReadWhole()
{
    const TempRepository repository;
    QByteArray stream;
    constexpr int commits = 20000;
    const auto start = QDateTime::fromString(QStringLiteral("2024-03-01T06:00:00Z"), Qt::ISODate).toSecsSinceEpoch();
    for (qint64 number = 0; number < commits; ++number)
        stream += "commit refs/heads/main\ncommitter A <a@example.org> " + QByteArray::number(start + number * 10) +
                  " +0000\ndata 1\nx\n";
    repository.git({QStringLiteral("fast-import"), QStringLiteral("--quiet")}, stream);
    World world;
    const auto days =
        await(getCommits(world.git, repository.path(), instant("2024-02-01T00:00:00Z"), world.clock.now()));
    QCOMPARE(days.size(), commits);
}

void TestGitService::foldersOfAnyNameAreRead_data()
{
    QTest::addColumn<QString>("name");
    for (const auto &name : {"with blanks", "-leading dash", "\"quotes' and `ticks`", "new\nline", "emoji \U0001F525",
                             "$HOME", "*", "a;b|c&d", "%2F", "trailing.", "\\backslash"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void TestGitService::foldersOfAnyNameAreRead()
{
    QFETCH(QString, name);
    const TempRepository repository(QStringLiteral("main"), name);
    repository.commit(QStringLiteral("2024-03-07T09:00:00Z"));
    World world;
    QCOMPARE(totalCommits(weekOf(world, repository.path())), 1);
    QCOMPARE(await(world.git.scanForRepositories(repository.path() + QStringLiteral("/.."), 2)).size(), 1);
}

void TestGitService::aFolderNamedLikeTheBranchIsNoTrouble()
{
    const TempRepository repository;
    repository.commit(QStringLiteral("2024-03-07T09:00:00Z"));
    repository.write(QStringLiteral("main/file"), "text");
    World world;
    QCOMPARE(totalCommits(weekOf(world, repository.path())), 1);
}

void TestGitService::aRepositoryIsToldOnceItsQuestionBegins()
{
    const TempRepository repository;
    QVERIFY(makeFifo(repository.file(QStringLiteral(".git/packed-refs"))));
    ChildProcessRunner runner;
    const FakeClock clock;
    const SlowTree files;
    GitService git(runner, files, clock);
    QStringList told;
    connect(&git, &GitService::repositoryBeingReadChanged, this,
            [&](const std::optional<QString> &path) { told << path.value_or(QStringLiteral("none")); });
    const QTemporaryDir folder;
    const auto search = git.scanForRepositories(folder.path(), 5);
    files.isAsked.acquire();
    const auto question = getDefaultBranch(git, repository.path());
    QCoreApplication::processEvents();
    const bool isToldEarly = !told.isEmpty();
    files.mayAnswer.release();
    QVERIFY(!isToldEarly);
    QTRY_COMPARE(told, QStringList(repository.path()));
    QVERIFY(search.isFinished() && !question.isFinished());
    QVERIFY(git.stop(60s));
    QTRY_COMPARE(told, (QStringList{repository.path(), QStringLiteral("none")}));
}

void TestGitService::answersComeInTheOrderOfTheQuestions()
{
    const TempRepository repository;
    World world;
    QObject context;
    QStringList order;
    const auto first = getDefaultBranch(world.git, repository.path()).then(&context, [&](const QString &) {
        order << QStringLiteral("first");
    });
    const auto second =
        world.git.isGitRepository(repository.path()).then(&context, [&](bool) { order << QStringLiteral("second"); });
    QTRY_COMPARE(order, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

void TestGitService::manyAreOneOperationUntilGitIsStarted()
{
    const TempRepository repository;
    World world;
    const QStringList paths(4, repository.path());
    const auto none = world.git.askUntilGitStarts(paths, {}, [](GitQueries &, qsizetype number) { return number; });
    QCOMPARE(await(none), (QList<qsizetype>{0, 1, 2, 3}));
    const auto second = world.git.askUntilGitStarts(paths, {}, [&](GitQueries &git, qsizetype number) {
        return number == 1 && git.isGitRepository(paths[number]);
    });
    QCOMPARE(await(second), (QList<bool>{false, true}));
}

void TestGitService::aSlowOneIsTheLastOfItsOperation()
{
    World world;
    const auto asked =
        world.git.askUntilGitStarts(QStringList(3, QDir::tempPath()), {}, [](GitQueries &, qsizetype number) {
            const auto end = std::chrono::steady_clock::now() + 150ms;
            while (std::chrono::steady_clock::now() < end) {
            }
            return number;
        });
    QCOMPARE(await(asked), QList<qsizetype>{0});
}

void TestGitService::manyEndWithTheServiceAfterOne()
{
    World world;
    QSemaphore begun;
    QSemaphore mayGoOn;
    std::atomic<int> count = 0;
    const auto asked = world.git.askUntilGitStarts(QStringList(3, QDir::tempPath()), {}, [&](GitQueries &, qsizetype) {
        begun.release();
        mayGoOn.acquire();
        return ++count;
    });
    begun.acquire();
    world.git.stop(0s);
    mayGoOn.release(3);
    QVERIFY(world.git.stop(60s));
    QVERIFY_THROWS_EXCEPTION(WorkerStopped, await(asked));
    QCOMPARE(count.load(), 1);
}

void TestGitService::whatASearchKnowsLastsADay()
{
    ChildProcessRunner runner;
    const SilentTree files;
    FakeClock clock;
    GitService git(runner, files, clock);
    const QTemporaryDir folder;
    const auto foundAfter = [&](std::chrono::hours hours) {
        clock.advance(hours);
        return await(git.scanWatchedFolder(folder.path(), 5)).size();
    };
    QCOMPARE(foundAfter(0h), 0);
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("one/.git")));
    QCOMPARE(foundAfter(23h), 0);
    QCOMPARE(await(git.scanForRepositories(folder.path(), 5)).size(), 1);
    QCOMPARE(foundAfter(1h), 1);
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("two/.git")));
    QCOMPARE(foundAfter(1h), 1);
    QCOMPARE(foundAfter(-2h), 2);
}

void TestGitService::theEventLoopGoesOnMeanwhile()
{
    const TempRepository repository;
    QVERIFY(makeFifo(repository.file(QStringLiteral(".git/packed-refs"))));
    World world;
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&ticks] { ++ticks; });
    timer.start(1ms);
    const auto hanging = getDefaultBranch(world.git, repository.path());
    QTRY_VERIFY2(ticks >= 50, "the event loop stands still");
    QVERIFY(!hanging.isFinished());
}

void TestGitService::aHangingGitEndsWithTheService()
{
    const TempRepository repository;
    QVERIFY(QFile::remove(repository.file(QStringLiteral(".git/HEAD"))));
    QVERIFY(makeFifo(repository.file(QStringLiteral(".git/HEAD"))));
    World world;
    const auto hanging = getLastCommitDate(world.git, repository.path());
    const auto waiting = getDefaultBranch(world.git, repository.path());
    QTRY_VERIFY2(hasReader(repository.file(QStringLiteral(".git/HEAD"))),
                 "nobody reads the fifo: " + sightOfChildren());
    QVERIFY2(world.git.stop(60s), sightOfChildren());
    QVERIFY_THROWS_EXCEPTION(WorkerStopped, await(waiting));
}

void TestGitService::afterTheEndNothingStarts()
{
    const TempRepository repository;
    World world;
    QVERIFY(world.git.stop(60s));
    QVERIFY_THROWS_EXCEPTION(WorkerStopped, await(getDefaultBranch(world.git, repository.path())));
    QVERIFY_THROWS_EXCEPTION(LaunchError,
                             world.runner.run({QStringLiteral("/usr/bin/git"), {}, repository.path(), {}}));
}

void TestGitService::readingChangesNoFile()
{
    const TempRepository repository;
    repository.commit(QStringLiteral("2024-03-07T09:00:00Z"));
    const auto snapshot = [&repository] {
        QStringList entries;
        QDirIterator walk(repository.path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            walk.next();
            entries << walk.filePath() + walk.fileInfo().lastModified().toString(Qt::ISODateWithMs) +
                           QString::number(walk.fileInfo().size());
        }
        entries.sort();
        return entries;
    };
    const auto before = snapshot();
    World world;
    QVERIFY(await(world.git.isGitRepository(repository.path())));
    QCOMPARE(totalCommits(weekOf(world, repository.path())), 1);
    QVERIFY(await(getLastCommitDate(world.git, repository.path())).has_value());
    QCOMPARE(snapshot(), before);
}

VELQUARIN_TEST(TestGitService)
#include "tst_gitservice.moc"
