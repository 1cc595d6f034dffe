// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/InotifyWatch.h"

#include "support/CapturedStandardError.h"
#include "support/Files.h"
#include "support/Strict.h"
#include "support/TempRepository.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <sys/resource.h>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const QString commitDate = QStringLiteral("2026-05-01T12:00:00Z");

// A repository with a commit and a remote, and a watch on its branch.
struct World
{
    World()
    {
        upstream.commit(commitDate);
        repository.commit(commitDate);
        repository.git({QStringLiteral("remote"), QStringLiteral("add"), QStringLiteral("origin"), upstream.path()});
        watch.watch({branch()});
    }

    [[nodiscard]] WatchPlace branch() const
    {
        return {repository.file(QStringLiteral(".git/refs/heads")), QStringLiteral("main")};
    }

    void git(const char *arguments) const { repository.git(QString::fromLatin1(arguments).split(u' ')); }

    // Whether the watch told of what is done: what the kernel has noted is there as soon as that is over.
    [[nodiscard]] bool isTold(const std::function<void()> &done) const
    {
        const QSignalSpy told(&watch, &RepositoryWatch::changed);
        done();
        QCoreApplication::processEvents();
        return told.count() > 0;
    }

    TempRepository upstream;
    TempRepository repository;
    InotifyWatch watch;
};

}  // namespace

class TestInotifyWatch : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void tellsOfCommits_data();
    void tellsOfCommits();
    void staysSilentOfTheRest_data();
    void staysSilentOfTheRest();
    void tellsOfACommitInALinkedWorkingTree();
    void tellsOfADetachedHead();
    void tellsOfAnyBranchOfAFolder();
    void forgetsWhatIsNoLongerWatched();
    void findsAFolderThatWasReplaced();
    void twoNamesInOneFolderAreBothHeard();
    void aLinkedReflogWakesNobody();
    void tellsThatMoreHappenedThanTheKernelNotes();
    void saysOnceThatThereAreNoMore();
};

void TestInotifyWatch::tellsOfCommits_data()
{
    QTest::addColumn<QByteArray>("operation");
    QTest::newRow("commit") << QByteArray("commit --quiet --allow-empty -m x");
    QTest::newRow("amend") << QByteArray("commit --quiet --amend --allow-empty -m y");
    QTest::newRow("reset") << QByteArray("reset --quiet --hard HEAD~1");
    QTest::newRow("merge") << QByteArray("merge --quiet --no-ff --no-edit side");
    QTest::newRow("rebase") << QByteArray("rebase --quiet --force-rebase HEAD~1");
    QTest::newRow("pull") << QByteArray(
        "pull --quiet --rebase=false --allow-unrelated-histories --no-edit origin main");
    QTest::newRow("a branch that is moved") << QByteArray("update-ref refs/heads/main HEAD~1");
    QTest::newRow("a fetch into the branch") << QByteArray("fetch --quiet --update-head-ok --force origin main:main");
}

void TestInotifyWatch::tellsOfCommits()
{
    QFETCH(const QByteArray, operation);
    World world;
    world.git("commit --quiet --allow-empty -m x");
    world.git("checkout --quiet -b side");
    world.git("commit --quiet --allow-empty -m z");
    world.git("checkout --quiet main");
    QVERIFY(world.isTold([&] { world.git(operation.constData()); }));
}

void TestInotifyWatch::staysSilentOfTheRest_data()
{
    QTest::addColumn<QByteArray>("operation");
    QTest::newRow("status") << QByteArray("status");
    QTest::newRow("log") << QByteArray("log");
    QTest::newRow("add") << QByteArray("add .");
    QTest::newRow("fetch") << QByteArray("fetch --quiet origin");
    QTest::newRow("tag") << QByteArray("tag some");
    QTest::newRow("packing") << QByteArray("pack-refs --all");
    QTest::newRow("another branch") << QByteArray("branch other");
}

void TestInotifyWatch::staysSilentOfTheRest()
{
    QFETCH(const QByteArray, operation);
    World world;
    world.repository.write(QStringLiteral("file"), "x");
    QVERIFY(!world.isTold([&] { world.git(operation.constData()); }));
    QVERIFY(world.isTold([&] { world.repository.commit(commitDate); }));
}

void TestInotifyWatch::tellsOfACommitInALinkedWorkingTree()
{
    World world;
    world.git("checkout --quiet --detach");
    world.git("worktree add --quiet linked main");
    const RealGit linked(world.repository.file(QStringLiteral("linked")));
    QVERIFY(world.isTold([&] {
        linked.run({QStringLiteral("commit"), QStringLiteral("--quiet"), QStringLiteral("--allow-empty"),
                    QStringLiteral("-m"), QStringLiteral("x")});
    }));
}

void TestInotifyWatch::tellsOfADetachedHead()
{
    World world;
    world.git("checkout --quiet --detach");
    world.watch.watch(
        {{world.repository.file(QStringLiteral(".git/logs")), QStringLiteral("HEAD"), WatchPlace::Sign::Written}});
    QVERIFY(world.isTold([&] { world.repository.commit(commitDate); }));
}

void TestInotifyWatch::tellsOfAnyBranchOfAFolder()
{
    World world;
    world.watch.watch({{world.branch().folder, {}, WatchPlace::Sign::Any}});
    QVERIFY(world.isTold([&] { world.git("commit --quiet --allow-empty -m x"); }));
    QVERIFY(world.isTold([&] { world.git("branch other"); }));
    QVERIFY(world.isTold([&] { world.git("branch folder/other"); }));
    QVERIFY(!world.isTold([&] { writeFile(world.branch().folder + QStringLiteral("/main.lock"), {}); }));
    QVERIFY(!world.isTold([&] { world.git("pack-refs --all"); }));
    QVERIFY(!world.isTold([&] { world.git("status"); }));
}

void TestInotifyWatch::forgetsWhatIsNoLongerWatched()
{
    World world;
    QVERIFY(!world.watch.watch({}));
    QVERIFY(!world.isTold([&] { world.repository.commit(commitDate); }));
    QVERIFY(world.watch.watch({world.branch()}));
    QVERIFY(!world.watch.watch({world.branch()}));
}

void TestInotifyWatch::findsAFolderThatWasReplaced()
{
    World world;
    const auto heads = world.repository.file(QStringLiteral(".git/refs/heads"));
    QVERIFY(QDir().rename(heads, heads + QStringLiteral(".old")));
    QVERIFY(QDir().mkpath(heads));
    QVERIFY(world.watch.watch({world.branch()}));
    QVERIFY(world.isTold([&] {
        QFile::copy(heads + QStringLiteral(".old/main"), heads + QStringLiteral("/main.lock"));
        QFile::rename(heads + QStringLiteral("/main.lock"), heads + QStringLiteral("/main"));
    }));
}

void TestInotifyWatch::twoNamesInOneFolderAreBothHeard()
{
    World world;
    world.git("branch side");
    QVERIFY(world.watch.watch({world.branch(), {world.branch().folder, QStringLiteral("side")}}));
    QVERIFY(world.isTold([&] { world.git("branch --force side HEAD~0"); }));
    QVERIFY(world.isTold([&] { world.repository.commit(commitDate); }));
}

void TestInotifyWatch::aLinkedReflogWakesNobody()
{
    World world;
    const auto log = world.repository.file(QStringLiteral(".git/logs/HEAD"));
    QVERIFY(QFile::remove(log));
    QVERIFY(QFile::link(world.upstream.file(QStringLiteral("file")), log));
    world.watch.watch(
        {{world.repository.file(QStringLiteral(".git/logs")), QStringLiteral("HEAD"), WatchPlace::Sign::Written}});
    QVERIFY(!world.isTold([&] { world.upstream.write(QStringLiteral("file"), "x"); }));
}

void TestInotifyWatch::tellsThatMoreHappenedThanTheKernelNotes()
{
    const World world;
    const auto folder = world.repository.file(QStringLiteral(".git/refs/heads/"));
    const auto most = readFile(QStringLiteral("/proc/sys/fs/inotify/max_queued_events")).trimmed().toInt();
    QVERIFY(most > 0);
    if (most > 1'000'000)
        QSKIP("this kernel notes more than a test should do");
    world.repository.write(QStringLiteral(".git/refs/heads/x"), {});
    const auto moveAbout = [&](int times) {
        for (int number = 0; number < times; ++number) {
            QFile::rename(folder + u'x', folder + u'y');
            QFile::rename(folder + u'y', folder + u'x');
        }
    };
    QVERIFY(!world.isTold([&] { moveAbout(most / 4); }));
    QVERIFY(world.isTold([&] { moveAbout(most / 2 + 1); }));
}

void TestInotifyWatch::saysOnceThatThereAreNoMore()
{
    // Nobody has so many: the kernel refuses a new instance, and each place of it.
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{3, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    InotifyWatch watch;
    setrlimit(RLIMIT_NOFILE, &before);
    CapturedStandardError errors;
    const WatchPlace place{QDir::tempPath(), QStringLiteral("x")};
    QVERIFY(!watch.watch({place, place}));
    QVERIFY(!watch.watch({place}));
    QCOMPARE(errors.lines().size(), 1);
}

VELQUARIN_TEST(TestInotifyWatch)
#include "tst_inotifywatch.moc"
