// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/RepositoryState.h"

#include "Platform/Linux/Files/PosixFileTree.h"

#include "support/Files.h"
#include "support/OtherTimes.h"
#include "support/Strict.h"
#include "support/TempRepository.h"
#include "support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const QString commitDate = QStringLiteral("2026-05-01T12:00:00Z");

// A repository with two commits, at which one looks.
struct World
{
    World()
    {
        repository.commit(commitDate);
        repository.commit(commitDate);
    }

    [[nodiscard]] std::optional<RepositoryState> state(const std::optional<QString> &branch = QStringLiteral("main"),
                                                       const GitConfig &config = {}) const
    {
        return repositoryState(files, repository.path().toStdString(), branch, config,
                               {home.path().toStdString(), home.filePath(QStringLiteral("xdg")).toStdString()});
    }

    [[nodiscard]] QString git(const char *name) const
    {
        return repository.file(QStringLiteral(".git/") + QLatin1String(name));
    }

    TempRepository repository;
    QTemporaryDir home;
    PosixFileTree files;
};

using Change = std::function<void(const World &)>;

// A system on which git was installed at a moment of our choice.
class InstalledAt : public PosixFileTree
{
public:
    explicit InstalledAt(std::chrono::system_clock::time_point moment)
        : m_moment(std::chrono::nanoseconds(moment.time_since_epoch()).count())
    {
    }

    std::optional<FileStatus> status(const std::string &path, Links links) const override
    {
        auto status = PosixFileTree::status(path, links);
        if (status && path == "/usr/bin/git")
            status->changedAt = m_moment;
        return status;
    }

private:
    std::int64_t m_moment;
};

}  // namespace

Q_DECLARE_METATYPE(Change)

class TestRepositoryState : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void theSameTwiceIsTheSame();
    void whatDoesNotDecideIsTheSame_data();
    void whatDoesNotDecideIsTheSame();
    void objectStoresThatNameEachOtherAreReadOnce();
    void whatNamesNoObjectStoreIsPassedOver();
    void manyPackedReferencesAreToldByTheirTimes();
    void seesWhatDecides_data();
    void seesWhatDecides();
    void seesWhatDecidesAboutAllBranches_data();
    void seesWhatDecidesAboutAllBranches();
    void whatDecidesAboutNoBranchIsTheSame();
    void seesTheRightsOfAFileThatNamesTheRepository();
    void seesWhatReferencesInTablesStandFor();
    void referencesThatStandForOthersAreFollowedAsFarAsGitDoes();
    void soManyReplacementsAreNotUnderstood();
    void soManyBranchesAreNotUnderstood_data();
    void soManyBranchesAreNotUnderstood();
    void allBranchesAreWatched();
    void seesAnotherGitAtOnce();
    void seesSettingsThatOthersName();
    void seesABranchThatWouldBeChosenFirst_data();
    void seesABranchThatWouldBeChosenFirst();
    void doubtsAreNotUnderstood_data();
    void doubtsAreNotUnderstood();
    void namesThatMayMeanSomethingElseAreNotUnderstood_data();
    void namesThatMayMeanSomethingElseAreNotUnderstood();
    void namesThatOnlyLookLikeTheseAreUnderstood();
    void readsTheConfiguration();
    void doubtfulSettingsAreNotUnderstood_data();
    void doubtfulSettingsAreNotUnderstood();
    void extensionsCountInTheRepositorysOwnSettingsAlone();
    void findsBothFolders();
    void aHeadThatIsALinkIsNotUnderstoodAndIsWatchedAllTheSame();
    void aPointerThatGitMightReadDifferentlyIsNone_data();
    void aPointerThatGitMightReadDifferentlyIsNone();
    void noPlaceToWatchLiesOutsideOfTheReferences();
};

void TestRepositoryState::theSameTwiceIsTheSame()
{
    const World world;
    const auto state = world.state();
    QVERIFY(state.has_value());
    QVERIFY(world.state() == state);
}

void TestRepositoryState::whatDoesNotDecideIsTheSame_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("a commit on another branch", [](const World &world) {
        world.repository.git({QStringLiteral("branch"), QStringLiteral("side")});
        world.repository.git(
            {QStringLiteral("update-ref"), QStringLiteral("refs/heads/side"), QStringLiteral("HEAD~1")});
    });
    row("a fetch", [](const World &world) {
        world.repository.git(
            {QStringLiteral("update-ref"), QStringLiteral("refs/remotes/origin/main"), QStringLiteral("HEAD")});
    });
    row("something added", [](const World &world) {
        world.repository.write(QStringLiteral("file"), "x");
        world.repository.git({QStringLiteral("add"), QStringLiteral("file")});
    });
}

void TestRepositoryState::whatDoesNotDecideIsTheSame()
{
    QFETCH(const Change, change);
    const World world;
    const auto before = world.state();
    QVERIFY(before.has_value());
    change(world);
    QVERIFY(world.state() == before);
}

void TestRepositoryState::objectStoresThatNameEachOtherAreReadOnce()
{
    const World world;
    QByteArray all;
    for (int number = 0; number < 30; ++number)
        all += QFile::encodeName(world.git("store")) + QByteArray::number(number) + '\n';
    for (int number = 0; number < 30; ++number)
        writeFile(world.git("store") + QString::number(number) + QStringLiteral("/info/alternates"), all);
    writeFile(world.git("objects/info/alternates"), all);
    QVERIFY(world.state().has_value());
    writeFile(world.git("store40/x"), {});
    writeFile(world.git("store41/x"), {});
    writeFile(world.git("objects/info/alternates"),
              all + QFile::encodeName(world.git("store40")) + '\n' + QFile::encodeName(world.git("store41")) + '\n');
    QVERIFY(!world.state().has_value());
}

void TestRepositoryState::whatNamesNoObjectStoreIsPassedOver()
{
    const World world;
    writeFile(world.git("objects/info/alternates"), "# a comment\n\n#another\n");
    QVERIFY(world.state().has_value());
}

// They are more than what is read of any file.
void TestRepositoryState::manyPackedReferencesAreToldByTheirTimes()
{
    const World world;
    writeFile(world.git("packed-refs"), QByteArray(1 << 21, 'x'));
    const auto stateIn = [&](const FileTree &files) {
        return repositoryState(files, world.repository.path().toStdString(), QStringLiteral("main"), {},
                               {"/home", "/home/.config"});
    };
    QVERIFY(!stateIn(PosixFileTree()).has_value());
    QVERIFY(stateIn(AgedTree()).has_value());
}

void TestRepositoryState::seesWhatDecides_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("a commit", [](const World &world) { world.repository.commit(commitDate); });
    row("a setting", [](const World &world) {
        world.repository.git({QStringLiteral("config"), QStringLiteral("log.follow"), QStringLiteral("true")});
    });
    row("a setting of the user",
        [](const World &world) { writeFile(world.home.filePath(QStringLiteral(".gitconfig")), "[log]\n"); });
    row("a setting in the user's other place",
        [](const World &world) { writeFile(world.home.filePath(QStringLiteral("xdg/git/config")), "[log]\n"); });
    row("a tag of that name", [](const World &world) {
        world.repository.git({QStringLiteral("tag"), QStringLiteral("main"), QStringLiteral("HEAD~1")});
    });
    row("a shallow end", [](const World &world) { writeFile(world.git("shallow"), "x\n"); });
    row("a graft", [](const World &world) { writeFile(world.git("info/grafts"), "x\n"); });
    row("a replacement", [](const World &world) {
        world.repository.git({QStringLiteral("replace"), QStringLiteral("HEAD"), QStringLiteral("HEAD~1")});
    });
    row("packed references", [](const World &world) { writeFile(world.git("packed-refs"), "x\n"); });
    row("a remote's head", [](const World &world) {
        world.repository.git({QStringLiteral("symbolic-ref"), QStringLiteral("refs/remotes/origin/HEAD"),
                              QStringLiteral("refs/remotes/origin/main")});
    });
    row("another head", [](const World &world) {
        world.repository.git({QStringLiteral("checkout"), QStringLiteral("--quiet"), QStringLiteral("--detach")});
    });
    row("another branch that is checked out", [](const World &world) {
        world.repository.git(
            {QStringLiteral("checkout"), QStringLiteral("--quiet"), QStringLiteral("-b"), QStringLiteral("side")});
    });
    row("objects elsewhere", [](const World &world) {
        writeFile(world.git("objects/info/alternates"), world.git("objects").toUtf8() + "/pack\n");
    });
    row("objects out of reach",
        [](const World &world) { ::chmod(QFile::encodeName(world.git("objects")).constData(), 0500); });
    row("settings of the working tree", [](const World &world) { writeFile(world.git("config.worktree"), "[log]\n"); });
}

void TestRepositoryState::seesWhatDecides()
{
    QFETCH(const Change, change);
    const World world;
    const auto before = world.state();
    QVERIFY(before.has_value());
    change(world);
    const auto after = world.state();
    QVERIFY(after.has_value());
    QVERIFY(after->content != before->content);
}

void TestRepositoryState::seesWhatDecidesAboutAllBranches_data()
{
    QTest::addColumn<QByteArray>("command");
    const auto row = [](const char *name, const char *command) { QTest::newRow(name) << QByteArray(command); };
    row("a commit", "commit --quiet --allow-empty -m x");
    row("a commit on another branch", "update-ref refs/heads/side HEAD~1");
    row("a new branch", "branch other");
    row("a new branch in a folder", "branch folder/other");
    row("a branch that is gone", "branch --quiet -D folder/deep/one");
    row("a detached head", "checkout --quiet --detach");
    row("packed references", "pack-refs --all");
    row("an address", "config user.email me@home.org");
}

void TestRepositoryState::seesWhatDecidesAboutAllBranches()
{
    QFETCH(const QByteArray, command);
    const World world;
    world.repository.git({QStringLiteral("branch"), QStringLiteral("side")});
    world.repository.git({QStringLiteral("branch"), QStringLiteral("folder/deep/one")});
    const auto before = world.state(std::nullopt);
    QVERIFY(before.has_value());
    world.repository.git(QString::fromUtf8(command).split(u' '));
    const auto after = world.state(std::nullopt);
    QVERIFY(after.has_value());
    QVERIFY(after->content != before->content);
}

void TestRepositoryState::whatDecidesAboutNoBranchIsTheSame()
{
    const World world;
    const auto before = world.state(std::nullopt);
    QVERIFY(before.has_value());
    world.repository.git({QStringLiteral("tag"), QStringLiteral("some")});
    world.repository.git(
        {QStringLiteral("update-ref"), QStringLiteral("refs/remotes/origin/x"), QStringLiteral("HEAD")});
    writeFile(world.git("refs/heads/main.lock"), "x");
    const auto after = world.state(std::nullopt);
    QVERIFY(after.has_value());
    QVERIFY(after->content == before->content);
}

void TestRepositoryState::seesTheRightsOfAFileThatNamesTheRepository()
{
    const World world;
    const auto pointer = world.repository.file(QStringLiteral(".git"));
    QVERIFY(QFile::rename(pointer, world.repository.file(QStringLiteral("away"))));
    writeFile(pointer, "gitdir: away\n");
    const auto before = world.state();
    QVERIFY(before.has_value());
    QCOMPARE(::chmod(QFile::encodeName(pointer).constData(), 0400), 0);
    const auto after = world.state();
    QVERIFY(after.has_value());
    QVERIFY(after->content != before->content);
}

void TestRepositoryState::seesWhatReferencesInTablesStandFor()
{
    const World world;
    GitConfig config;
    config.isReftable = true;
    writeFile(world.git("reftable/tables.list"), "one\n");
    const auto before = world.state(QStringLiteral("main"), config);
    QVERIFY(before.has_value());
    writeFile(world.git("reftable/tables.list"), "one\ntwo\n");
    const auto after = world.state(QStringLiteral("main"), config);
    QVERIFY(after.has_value());
    QVERIFY(after->content != before->content);
}

// Source: git itself, which gives up after five
void TestRepositoryState::referencesThatStandForOthersAreFollowedAsFarAsGitDoes()
{
    const World world;
    const auto standsFor = [&](const char *name, const char *other) {
        writeFile(world.git("refs/tags/") + QLatin1String(name), QByteArray("ref: refs/tags/") + other + '\n');
    };
    writeFile(world.git("refs/tags/end"), world.repository.git({QStringLiteral("rev-parse"), QStringLiteral("HEAD")}));
    standsFor("e", "end");
    standsFor("d", "e");
    standsFor("c", "d");
    standsFor("b", "c");
    standsFor("main", "b");
    QVERIFY(world.state().has_value());
    standsFor("a", "b");
    standsFor("main", "a");
    QVERIFY(!world.state().has_value());
}

void TestRepositoryState::soManyReplacementsAreNotUnderstood()
{
    const World world;
    const auto commit = world.repository.git({QStringLiteral("rev-parse"), QStringLiteral("HEAD")});
    const auto replace = [&](int number) {
        writeFile(world.git("refs/replace/") + QStringLiteral("%1").arg(number, 40, 16, QLatin1Char('0')), commit);
    };
    for (int number = 1; number <= 64; ++number)
        replace(number);
    QVERIFY(world.state().has_value());
    replace(65);
    QVERIFY(!world.state().has_value());
}

void TestRepositoryState::soManyBranchesAreNotUnderstood_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isUnderstood");
    // One is there already, and their folders count as well.
    QTest::newRow("as many as people have") << 254 << QString() << true;
    QTest::newRow("more than people have") << 255 << QString() << false;
    QTest::newRow("in a folder of their own, as many") << 252 << QStringLiteral("a/") << true;
    QTest::newRow("in a folder of their own, more") << 254 << QStringLiteral("a/") << false;
}

void TestRepositoryState::soManyBranchesAreNotUnderstood()
{
    QFETCH(const int, count);
    QFETCH(const QString, folder);
    QFETCH(const bool, isUnderstood);
    const World world;
    const auto commit = world.repository.git({QStringLiteral("rev-parse"), QStringLiteral("HEAD")});
    for (int number = 0; number < count; ++number)
        writeFile(world.git("refs/heads/") + folder + QString::number(number), commit);
    QCOMPARE(world.state(std::nullopt).has_value(), isUnderstood);
}

void TestRepositoryState::allBranchesAreWatched()
{
    const World world;
    const auto path = world.repository.path().toStdString();
    const WatchPlace all{world.git("refs/heads"), {}, WatchPlace::Sign::Any};
    const WatchPlace detached{world.git("logs"), QStringLiteral("HEAD"), WatchPlace::Sign::Written};
    QCOMPARE(watchPlaces(world.files, path, std::nullopt), (QList{all, detached}));
    world.repository.git({QStringLiteral("branch"), QStringLiteral("folder/deep/one")});
    const auto below = [&](const char *name) { return WatchPlace{world.git(name), {}, WatchPlace::Sign::Any}; };
    QCOMPARE(watchPlaces(world.files, path, std::nullopt),
             (QList{all, below("refs/heads/folder"), below("refs/heads/folder/deep"), detached}));
    for (int number = 0; number < 300; ++number)
        writeFile(world.git("refs/heads/many") + QString::number(number), {});
    QCOMPARE(watchPlaces(world.files, path, std::nullopt), (QList{all, detached}));
}

void TestRepositoryState::seesAnotherGitAtOnce()
{
    const World world;
    const auto now = std::chrono::system_clock::now();
    const auto stateAt = [&](std::chrono::system_clock::time_point installed) {
        return repositoryState(InstalledAt(installed), world.repository.path().toStdString(), QStringLiteral("main"),
                               {}, {"/home", "/home/.config"});
    };
    const auto before = stateAt(now - std::chrono::hours(24));
    const auto after = stateAt(now);
    QVERIFY(before.has_value());
    QVERIFY(after.has_value());
    QVERIFY(after->content != before->content);
}

void TestRepositoryState::seesSettingsThatOthersName()
{
    const World world;
    const auto included = world.git("included");
    GitConfig config;
    config.files = {included.toStdString()};
    const auto before = world.state(QStringLiteral("main"), config);
    QVERIFY(before.has_value());
    writeFile(included, "[log]\n");
    QVERIFY(world.state(QStringLiteral("main"), config)->content != before->content);
}

void TestRepositoryState::seesABranchThatWouldBeChosenFirst_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("first");
    QTest::newRow("main before HEAD") << QStringLiteral("HEAD") << QStringLiteral("main");
    QTest::newRow("master before HEAD") << QStringLiteral("HEAD") << QStringLiteral("master");
    QTest::newRow("main before master") << QStringLiteral("master") << QStringLiteral("main");
}

void TestRepositoryState::seesABranchThatWouldBeChosenFirst()
{
    QFETCH(const QString, before);
    QFETCH(const QString, first);
    const World world;
    world.repository.git({QStringLiteral("branch"), QStringLiteral("-m"), QStringLiteral("trunk")});
    const auto state = world.state(before);
    QVERIFY(state.has_value());
    world.repository.git({QStringLiteral("branch"), first});
    QVERIFY(world.state(before)->content != state->content);
}

void TestRepositoryState::doubtsAreNotUnderstood_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    const auto replaced = [](const World &world, const char *name, const std::function<void(const char *)> &make) {
        const auto path = QFile::encodeName(world.git(name));
        QFile::remove(world.git(name));
        make(path.constData());
    };
    row("a fifo for a branch", [=](const World &world) {
        replaced(world, "refs/heads/main", [](const char *path) { ::mkfifo(path, 0600); });
    });
    row("a fifo for the settings",
        [=](const World &world) { replaced(world, "config", [](const char *path) { ::mkfifo(path, 0600); }); });
    row("a link for a branch", [=](const World &world) {
        replaced(world, "refs/heads/main",
                 [](const char *path) { static_cast<void>(::symlink("/etc/hostname", path)); });
    });
    row("a device for the settings", [=](const World &world) {
        replaced(world, "config", [](const char *path) { static_cast<void>(::symlink("/dev/zero", path)); });
    });
    row("a link in a circle", [=](const World &world) {
        replaced(world, "config", [](const char *path) { static_cast<void>(::symlink(path, path)); });
    });
    row("a branch of a gigabyte", [=](const World &world) {
        static_cast<void>(::truncate(QFile::encodeName(world.git("refs/heads/main")).constData(), 1LL << 30));
    });
    row("settings of a gigabyte", [=](const World &world) {
        static_cast<void>(::truncate(QFile::encodeName(world.git("config")).constData(), 1LL << 30));
    });
    row("a branch that leads out",
        [](const World &world) { writeFile(world.git("refs/heads/main"), "ref: ../../../etc/passwd\n"); });
    row("a branch that leads up",
        [](const World &world) { writeFile(world.git("refs/heads/main"), "ref: refs/heads/../../config\n"); });
    row("branches in a circle",
        [](const World &world) { writeFile(world.git("refs/heads/main"), "ref: refs/heads/main\n"); });
    row("objects in quotes", [](const World &world) { writeFile(world.git("objects/info/alternates"), "\"x\"\n"); });
    row("a branch of a branch that is checked out", [](const World &world) {
        world.repository.git({QStringLiteral("branch"), QStringLiteral("side")});
        world.repository.git(
            {QStringLiteral("symbolic-ref"), QStringLiteral("refs/heads/main"), QStringLiteral("refs/heads/side")});
    });
    row("a remote's head elsewhere",
        [](const World &world) { writeFile(world.git("refs/remotes/origin/HEAD"), "ref: refs/heads/main\n"); });
    row("a link to the repository", [](const World &world) {
        QVERIFY(QFile::rename(world.repository.file(QStringLiteral(".git")),
                              world.repository.file(QStringLiteral("away"))));
        QVERIFY(QFile::link(QStringLiteral("away"), world.repository.file(QStringLiteral(".git"))));
    });
    row("a HEAD that is none", [](const World &world) { writeFile(world.git("HEAD"), "hello\n"); });
    row("a HEAD of a longer name than the repository's",
        [](const World &world) { writeFile(world.git("HEAD"), QByteArray(64, 'a') + '\n'); });
    row("more settings than anybody has", [](const World &world) {
        for (const auto *const name :
             {"config", "config.worktree", "shallow", "info/grafts", "objects/info/alternates"})
            writeFile(world.git(name), QByteArray(1'000'000, '#') + '\n');
    });
    row("a repository of another user", [](const World &world) {
        if (::chown(QFile::encodeName(world.repository.file(QStringLiteral(".git"))).constData(), 12345, gid_t(-1)) !=
            0)
            QSKIP("this user may not give files away");
    });
    row("a working tree of another user", [](const World &world) {
        if (::chown(QFile::encodeName(world.repository.path()).constData(), 12345, gid_t(-1)) != 0)
            QSKIP("this user may not give files away");
    });
    row("no repository", [](const World &world) {
        QVERIFY(QFile::rename(world.repository.file(QStringLiteral(".git")),
                              world.repository.file(QStringLiteral("away"))));
    });
}

void TestRepositoryState::doubtsAreNotUnderstood()
{
    QFETCH(const Change, change);
    const World world;
    QVERIFY(world.state().has_value());
    change(world);
    QVERIFY(!world.state().has_value());
}

void TestRepositoryState::namesThatMayMeanSomethingElseAreNotUnderstood_data()
{
    QTest::addColumn<QString>("name");
    for (const auto *name : {"abcd", "0123456789abcdef0123456789abcdef01234567", "v1-gabcdef", "FETCH_HEAD", "@",
                             "refs/heads/main", "worktrees/x", "bisect/bad"})
        QTest::newRow(name) << QString::fromLatin1(name);
    QTest::newRow("none") << QString();
}

void TestRepositoryState::namesThatMayMeanSomethingElseAreNotUnderstood()
{
    QFETCH(const QString, name);
    const World world;
    world.repository.git({QStringLiteral("symbolic-ref"), QStringLiteral("refs/remotes/origin/HEAD"),
                          QStringLiteral("refs/remotes/origin/") + (name.isEmpty() ? QStringLiteral("x") : name)});
    QVERIFY(!world.state(name).has_value());
}

void TestRepositoryState::namesThatOnlyLookLikeTheseAreUnderstood()
{
    const World world;
    const auto name = QStringLiteral("x-gzabc");
    world.repository.git({QStringLiteral("symbolic-ref"), QStringLiteral("refs/remotes/origin/HEAD"),
                          QStringLiteral("refs/remotes/origin/") + name});
    QVERIFY(world.state(name).has_value());
}

void TestRepositoryState::readsTheConfiguration()
{
    const QByteArray list("file:.git/config\0core.bare\nfalse\0"
                          "file:.git/config\0include.path\nmore\0"
                          "file:/home/me/.gitconfig\0includeIf.gitdir:/code/.path\n~/work.inc\0"
                          "command line:\0color.ui\nfalse\0"
                          "file:.git/config\0core.valueless\0",
                          161);
    const auto config = gitConfigFrom(list, "/repo", {"/home/me", "/home/me/.config"});
    QVERIFY(config.has_value());
    QCOMPARE(config->files, (std::set<std::string>{"/home/me/.gitconfig", "/home/me/work.inc", "/repo/.git/config",
                                                   "/repo/.git/more"}));
    QVERIFY(config->hasIncludes);
    QVERIFY(!config->isReftable);
}

void TestRepositoryState::doubtfulSettingsAreNotUnderstood_data()
{
    QTest::addColumn<QByteArray>("setting");
    QTest::addColumn<bool>("isUnderstood");
    QTest::newRow("an extension that nobody knows") << QByteArray("extensions.tomorrow\ntrue") << false;
    QTest::newRow("references behind an address") << QByteArray("extensions.refstorage\nfiles://x") << false;
    QTest::newRow("references in tables") << QByteArray("extensions.refstorage\nreftable") << true;
    QTest::newRow("longer names of objects") << QByteArray("extensions.objectformat\nsha256") << true;
    QTest::newRow("somebody else's home") << QByteArray("include.path\n~you/x") << false;
    QTest::newRow("git's own folder") << QByteArray("include.path\n%(prefix)/x") << false;
}

void TestRepositoryState::doubtfulSettingsAreNotUnderstood()
{
    QFETCH(const QByteArray, setting);
    QFETCH(const bool, isUnderstood);
    const auto list = QByteArray("file:.git/config") + '\0' + setting + '\0';
    QCOMPARE(gitConfigFrom(list, "/repo", {}).has_value(), isUnderstood);
}

void TestRepositoryState::findsBothFolders()
{
    const World world;
    world.repository.git({QStringLiteral("worktree"), QStringLiteral("add"), QStringLiteral("--quiet"),
                          QStringLiteral("linked"), QStringLiteral("--detach")});
    const auto linked = (world.repository.path() + QStringLiteral("/linked")).toStdString();
    const auto branch = watchPlaces(world.files, linked, QStringLiteral("main"));
    QCOMPARE(branch.size(), 1);
    QVERIFY(world.files.folderAt(branch.first().folder.toStdString()) ==
            world.files.folderAt(world.git("refs/heads").toStdString()));
    const auto head = watchPlaces(world.files, linked, QStringLiteral("HEAD"));
    QCOMPARE(head.size(), 1);
    QVERIFY(head.first().folder.endsWith(QStringLiteral("/worktrees/linked/logs")));
}

void TestRepositoryState::aHeadThatIsALinkIsNotUnderstoodAndIsWatchedAllTheSame()
{
    const World world;
    const auto head = world.git("HEAD");
    QVERIFY(QFile::remove(head) && QFile::link(QStringLiteral("refs/heads/main"), head));
    QVERIFY(!world.state().has_value());
    QCOMPARE(watchPlaces(world.files, world.repository.path().toStdString(), QStringLiteral("main")).size(), 1);
}

void TestRepositoryState::extensionsCountInTheRepositorysOwnSettingsAlone()
{
    const World world;
    GitConfig config;
    config.extensionOrigins = {world.git("config").toStdString()};
    QVERIFY(world.state(QStringLiteral("main"), config).has_value());
    QVERIFY(QFile::rename(world.git("config"), world.git("elsewhere")));
    QVERIFY(QFile::link(QStringLiteral("elsewhere"), world.git("config")));
    QVERIFY(world.state(QStringLiteral("main"), config).has_value());
    writeFile(world.git("more"), "[extensions]\n\trefstorage = reftable\n");
    config.extensionOrigins = {world.git("more").toStdString()};
    QVERIFY(!world.state(QStringLiteral("main"), config).has_value());
}

void TestRepositoryState::aPointerThatGitMightReadDifferentlyIsNone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isPointer");
    QTest::newRow("plain") << QByteArray("gitdir: away\n") << true;
    QTest::newRow("without an end") << QByteArray("gitdir: away") << true;
    QTest::newRow("a blank before") << QByteArray("gitdir:  away\n") << false;
    QTest::newRow("a blank behind") << QByteArray("gitdir: away \n") << false;
    QTest::newRow("two lines") << QByteArray("gitdir: away\nx\n") << false;
    QTest::newRow("nothing") << QByteArray("gitdir: \n") << false;
    QTest::newRow("a path that ends early") << QByteArray("gitdir: away\0x\n", 15) << false;
    QTest::newRow("something else") << QByteArray("away\n") << false;
}

void TestRepositoryState::aPointerThatGitMightReadDifferentlyIsNone()
{
    QFETCH(const QByteArray, content);
    QFETCH(const bool, isPointer);
    const World world;
    QVERIFY(
        QFile::rename(world.repository.file(QStringLiteral(".git")), world.repository.file(QStringLiteral("away"))));
    writeFile(world.repository.file(QStringLiteral(".git")), content);
    const auto places = watchPlaces(world.files, world.repository.path().toStdString(), QStringLiteral("main"));
    QCOMPARE(!places.isEmpty(), isPointer);
}

void TestRepositoryState::noPlaceToWatchLiesOutsideOfTheReferences()
{
    const World world;
    const auto path = world.repository.path().toStdString();
    const auto places = watchPlaces(world.files, path, QStringLiteral("HEAD"));
    QCOMPARE(places, QList<WatchPlace>({{world.git("refs/heads"), QStringLiteral("main")}}));
    writeFile(world.git("HEAD"), "ref: refs/../../../../elsewhere/x\n");
    QVERIFY(watchPlaces(world.files, path, QStringLiteral("HEAD")).isEmpty());
    QVERIFY(watchPlaces(world.files, path, QStringLiteral("../../x")).isEmpty());
}

VELQUARIN_TEST(TestRepositoryState)
#include "tst_repositorystate.moc"
