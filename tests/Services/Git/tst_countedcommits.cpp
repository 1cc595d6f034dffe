// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/PosixFileTree.h"
#include "Platform/Linux/Process/ChildProcessRunner.h"
#include "Services/Git/GitQueries.h"

#include "support/FakeClock.h"
#include "support/Files.h"
#include "support/GitVersion.h"
#include "support/Strict.h"
#include "support/TempRepository.h"
#include "support/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr CountedCommits mine{CountedAuthors::Me, CountedBranches::Default};
constexpr CountedCommits ofAllBranches{CountedAuthors::Everyone, CountedBranches::All};
constexpr CountedCommits mineOfAllBranches{CountedAuthors::Me, CountedBranches::All};

QStringList words(const char *command)
{
    return QString::fromLatin1(command).split(u' ');
}

// A repository, and the user's settings beside it.
struct World
{
    World()
        : runner()
        , queries(runner, files, clock, environment())
    {
    }

    [[nodiscard]] QProcessEnvironment environment() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home.path());
        environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
        environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
        return environment;
    }

    void configureUser(const QByteArray &settings) const
    {
        writeFile(home.filePath(QStringLiteral(".gitconfig")), settings);
    }

    [[nodiscard]] qsizetype count(CountedCommits counted, const QString &path)
    {
        queries.count(counted);
        return queries.getCommits(path, instant("2024-03-01T00:00:00Z"), clock.now()).size();
    }

    [[nodiscard]] qsizetype count(CountedCommits counted) { return count(counted, repository.path()); }

    QTemporaryDir home;
    TempRepository repository;
    ChildProcessRunner runner;
    PosixFileTree files;
    FakeClock clock{instant("2024-03-07T12:00:00Z")};
    GitQueries queries;
};

// A commit as it might stand in anybody's repository: whatever @p author says, on the branch @p branch.
void commitAs(const TempRepository &repository, const QByteArray &author, const QByteArray &header = {},
              const char *branch = "main")
{
    const auto tree = repository.git(words("mktree"));
    const auto commit = "tree " + tree + "author " + author + " 1709805600 +0000\n" +
                        "committer Me <me@home.org> 1709805600 +0000\n" + header +
                        "\nCo-authored-by: Me <me@home.org>\n";
    const auto name = repository.git(words("hash-object -t commit -w --stdin --literally"), commit).trimmed();
    repository.git({QStringLiteral("update-ref"), QStringLiteral("refs/heads/") + QLatin1String(branch),
                    QString::fromLatin1(name)});
}

QString at(const char *time)
{
    return QStringLiteral("2024-03-07T") + QLatin1String(time) + QStringLiteral("Z");
}

}  // namespace

class TestCountedCommits : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aCommitIsMine_data();
    void aCommitIsMine();
    void everyAddressThatGitKnowsIsMine_data();
    void everyAddressThatGitKnowsIsMine();
    void addressesOfARepositoryCountThereAlone();
    void conditionalSettingsGiveAFolderItsOwnAddress();
    void everyonesCommitsCountWhereGitKnowsNoAddress();
    void anAddressThatIsNoUtf8IsNone();
    void noNameIsTakenForAnother();
    void addressesLikeEndlessPatternsAreComparedAtOnce();
    void eachCommitOfAllBranchesCountsOnce();
    void whatOnlyOthersHaveDoesNotCount();
    void aDetachedHeadCountsBesideAllBranches();
    void aLinkedWorkingTreeHasTheBranchesOfItsRepository();
    void aRepositoryWithoutCommitsHasNoneOnAnyBranch();
    void brokenBranchesHideNoOther();
    void strangelyNamedBranchesAreBranches();
    void theLastCommitIsTheLastThatCounts();
    void allBranchesOfTablesCount();
};

void TestCountedCommits::aCommitIsMine_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<QByteArray>("author");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<bool>("isMine");
    const auto row = [](const char *name, const char *address, const char *author, bool isMine,
                        const char *header = "") {
        QTest::newRow(name) << QByteArray(address) << QByteArray(author) << QByteArray(header) << isMine;
    };
    row("by its address", "me@home.org", "Me <me@home.org>", true);
    row("in other letters", "Me@home.ORG", "Me <mE@HOME.org>", true);
    row("without a name", "me@home.org", "<me@home.org>", true);
    row("by somebody else", "me@home.org", "You <you@home.org>", false);
    row("by an address that begins so", "me@home.org", "Me <me@home.org.net>", false);
    row("by an address that ends so", "me@home.org", "Me <some@home.org>", false);
    row("by an address that a pattern would fit", "me@home.org", "Me <me@homeXorg>", false);
    row("by any, as a pattern", ".*", "Me <me@home.org>", false);
    row("by an address with everything special", "^.*[a]\\+${1}(|)?", "Me <^.*[a]\\+${1}(|)?>", true);
    row("by what stands behind the end of a quotation", "a\\Eb@home", "Me <ab@home>", false);
    row("by an address with the end of a quotation", "a\\Eb@home", "Me <a\\Eb@home>", true);
    row("by a name like the address", "me@home.org", "me@home.org <you@home.org>", false);
    row("by a second address", "me@home.org", "You <you@home.org> <me@home.org>", false);
    row("by the first of two addresses", "me@home.org", "Me <me@home.org> <you@home.org>", true);
    row("in another script", "ПЁТР@почта", "Me <пётр@ПОЧТА>", true);
    row("in another encoding", "jos\xc3\xa9@home", "Jos\xe9 <jos\xe9@home>", true, "encoding ISO-8859-1\n");
    row("in bytes that are no text", "jos\xc3\xa9@home", "Jos\xe9 <jos\xe9@home>", false);
    row("beside bytes that are no text", "me@home.org", "\xff\xfe <me@home.org>", true);
    row("like an option", "--all", "Me <--all>", true);
}

void TestCountedCommits::aCommitIsMine()
{
    QFETCH(const QByteArray, address);
    QFETCH(const QByteArray, author);
    QFETCH(const QByteArray, header);
    QFETCH(const bool, isMine);
    World world;
    world.repository.git({QStringLiteral("config"), QStringLiteral("velquarin.email"), QString::fromUtf8(address)});
    commitAs(world.repository, author, header);
    QCOMPARE(world.count(mine), isMine ? 1 : 0);
    QCOMPARE(world.queries.getLastCommitDate(world.repository.path()).has_value(), isMine);
    QCOMPARE(world.count({}), 1);
}

void TestCountedCommits::everyAddressThatGitKnowsIsMine_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::newRow("user") << QByteArray("[user]\n\temail = me@home.org\n");
    QTest::newRow("author") << QByteArray("[author]\n\temail = me@home.org\n");
    QTest::newRow("ours") << QByteArray("[velquarin]\n\temail = me@home.org\n");
    QTest::newRow("the first of several") << QByteArray("[user]\n\temail = me@home.org\n\temail = you@home.org\n");
    QTest::newRow("the last of several") << QByteArray("[user]\n\temail = you@home.org\n\temail = me@home.org\n");
    QTest::newRow("beside a setting without a value") << QByteArray("[velquarin]\n\temail\n\temail = me@home.org\n");
    QTest::newRow("beside one of two lines") << QByteArray("[user]\n\temail = \"a\\nb\"\n\temail = me@home.org\n");
}

void TestCountedCommits::everyAddressThatGitKnowsIsMine()
{
    QFETCH(const QByteArray, settings);
    World world;
    world.configureUser(settings);
    commitAs(world.repository, "Me <me@home.org>");
    QCOMPARE(world.count(mine), 1);
    QVERIFY(!world.queries.countsEveryoneForWantOfAddresses(world.repository.path()));
    commitAs(world.repository, "Another <another@home.org>");
    QCOMPARE(world.count(mine), 0);
}

void TestCountedCommits::addressesOfARepositoryCountThereAlone()
{
    World world;
    world.configureUser("[user]\n\temail = you@home.org\n");
    const TempRepository other;
    other.git(words("config user.email me@home.org"));
    commitAs(world.repository, "Me <me@home.org>");
    commitAs(other, "Me <me@home.org>");
    QCOMPARE(world.count(mine), 0);
    QCOMPARE(world.count(mine, other.path()), 1);
}

void TestCountedCommits::conditionalSettingsGiveAFolderItsOwnAddress()
{
    World world;
    const auto work = world.home.filePath(QStringLiteral("work.gitconfig"));
    writeFile(work, "[user]\n\temail = me@work.org\n");
    world.configureUser("[user]\n\temail = me@home.org\n[includeIf \"gitdir:" + world.repository.path().toUtf8() +
                        "/\"]\n\tpath = " + work.toUtf8() + '\n');
    commitAs(world.repository, "Me <me@work.org>");
    QCOMPARE(world.count(mine), 1);
    const TempRepository other;
    commitAs(other, "Me <me@work.org>");
    QCOMPARE(world.count(mine, other.path()), 0);
}

void TestCountedCommits::everyonesCommitsCountWhereGitKnowsNoAddress()
{
    if (machineNamesAnAddress())
        QSKIP("Git knows an address everywhere on this machine.");
    World world;
    commitAs(world.repository, "Me <me@home.org>");
    QCOMPARE(world.count(mine), 1);
    QVERIFY(world.queries.countsEveryoneForWantOfAddresses(world.repository.path()));
    world.repository.git(words("config velquarin.email <me@home.org>"));
    QCOMPARE(world.count(mine), 1);
    QVERIFY(world.queries.countsEveryoneForWantOfAddresses(world.repository.path()));
}

void TestCountedCommits::anAddressThatIsNoUtf8IsNone()
{
    World world;
    world.configureUser("[user]\n\temail = jos\xe9@home\n\temail = me@home.org\n");
    commitAs(world.repository, "Me <jos\xe9@home>");
    QCOMPARE(world.count(mine), 0);
    commitAs(world.repository, "Me <me@home.org>");
    QCOMPARE(world.count(mine), 1);
}

// The trailer and the committer name somebody else than the author.
void TestCountedCommits::noNameIsTakenForAnother()
{
    World world;
    world.configureUser("[user]\n\temail = me@home.org\n");
    world.repository.write(QStringLiteral(".mailmap"), "Me <me@home.org> <you@home.org>\n");
    world.repository.git(words("config log.mailmap true"));
    world.repository.git(words("config grep.patternType perl"));
    commitAs(world.repository, "You <you@home.org>");
    QCOMPARE(world.count(mine), 0);
    QCOMPARE(world.count(mineOfAllBranches), 0);
}

// Each would try a long author's address in more ways than there is time.
void TestCountedCommits::addressesLikeEndlessPatternsAreComparedAtOnce()
{
    World world;
    QByteArray settings;
    for (int number = 0; number < 300; ++number)
        settings += "[velquarin]\n\temail = \"\\\\(a*\\\\)*\\\\(a*a*\\\\)*b" + QByteArray::number(number) + "\"\n";
    world.configureUser(settings);
    QByteArray history;
    for (int number = 0; number < 1000; ++number)
        history += "commit refs/heads/main\nauthor A <" + QByteArray(300, 'a') +
                   "> 1709805600 +0000\ncommitter A <a> 1709805600 +0000\ndata 0\n\n";
    world.repository.git(words("fast-import --quiet"), history);
    QCOMPARE(world.count({}), 1000);
    QCOMPARE(world.count(mine), 0);
}

void TestCountedCommits::eachCommitOfAllBranchesCountsOnce()
{
    World world;
    world.configureUser("[user]\n\temail = developer@example.org\n");
    world.repository.commit(at("08:00:00"));
    world.repository.git(words("checkout --quiet -b feature/one"));
    world.repository.commit(at("09:00:00"));
    world.repository.git(words("checkout --quiet -b two main"));
    world.repository.commit(at("10:00:00"));
    world.repository.git(words("merge --quiet --no-edit feature/one"));
    QCOMPARE(world.count({}), 1);
    QCOMPARE(world.count(ofAllBranches), 4 - 1);  // the merge was made now
    world.repository.git(words("pack-refs --all"));
    QCOMPARE(world.count(ofAllBranches), 3);
    QCOMPARE(world.count(mineOfAllBranches), 3);
}

void TestCountedCommits::whatOnlyOthersHaveDoesNotCount()
{
    World world;
    world.repository.commit(at("08:00:00"));
    world.repository.git(words("checkout --quiet -b theirs"));
    world.repository.commit(at("09:00:00"));
    world.repository.git(words("update-ref refs/remotes/origin/theirs theirs"));
    world.repository.git(words("tag one theirs"));
    world.repository.git(words("update-ref refs/stash theirs"));
    world.repository.git(words("checkout --quiet main"));
    world.repository.git(words("branch -D theirs"));
    QCOMPARE(world.count(ofAllBranches), 1);
}

void TestCountedCommits::aDetachedHeadCountsBesideAllBranches()
{
    World world;
    world.repository.commit(at("08:00:00"));
    world.repository.git(words("checkout --quiet --detach"));
    world.repository.commit(at("09:00:00"));
    world.repository.git(words("branch other main"));
    QCOMPARE(world.count(ofAllBranches), 2);
    QCOMPARE(world.count({}), 1);
}

void TestCountedCommits::aLinkedWorkingTreeHasTheBranchesOfItsRepository()
{
    World world;
    world.repository.commit(at("08:00:00"));
    world.repository.git(words("worktree add --quiet --detach ../linked"));
    const auto linked = QDir::cleanPath(world.repository.file(QStringLiteral("../linked")));
    RealGit git(linked);
    git.set("GIT_COMMITTER_DATE", at("09:00:00"));
    git.set("GIT_AUTHOR_DATE", at("09:00:00"));
    git.run(words("commit --quiet --allow-empty --message=work"));
    world.repository.commit(at("10:00:00"));
    QCOMPARE(world.count(ofAllBranches, linked), 3);
    QCOMPARE(world.count(ofAllBranches), 2);
}

void TestCountedCommits::aRepositoryWithoutCommitsHasNoneOnAnyBranch()
{
    World world;
    QCOMPARE(world.count(ofAllBranches), 0);
    QVERIFY(!world.queries.getLastCommitDate(world.repository.path()));
    world.repository.commit(at("08:00:00"));
    world.repository.git(words("checkout --quiet --orphan fresh"));
    QCOMPARE(world.count(ofAllBranches), 1);
}

void TestCountedCommits::brokenBranchesHideNoOther()
{
    World world;
    world.repository.commit(at("08:00:00"));
    world.repository.write(QStringLiteral(".git/refs/heads/empty"), "");
    world.repository.write(QStringLiteral(".git/refs/heads/gone"), QByteArray(40, '1') + '\n');
    world.repository.write(QStringLiteral(".git/refs/heads/odd"), "what is this\n");
    QCOMPARE(world.count(ofAllBranches), 1);
}

void TestCountedCommits::strangelyNamedBranchesAreBranches()
{
    World world;
    world.configureUser("[user]\n\temail = developer@example.org\n");
    world.repository.commit(at("08:00:00"));
    for (const auto *const name : {"--output=x", "-1", "HEAD", "--all", "--author=you", "a b", "\xd0\xb6", "--remotes"})
        world.repository.write(QStringLiteral(".git/refs/heads/") + QString::fromUtf8(name),
                               world.repository.git(words("rev-parse refs/heads/main")));
    QCOMPARE(world.count(ofAllBranches), 1);
    QCOMPARE(world.count(mineOfAllBranches), 1);
    QVERIFY(!QFile::exists(world.repository.file(QStringLiteral("x"))));
}

void TestCountedCommits::theLastCommitIsTheLastThatCounts()
{
    World world;
    world.configureUser("[user]\n\temail = developer@example.org\n");
    world.repository.commit(at("08:00:00"));
    world.repository.git(words("checkout --quiet -b side"));
    world.repository.commit(at("09:00:00"));
    commitAs(world.repository, "You <you@home.org>");
    const auto last = [&](CountedCommits counted) {
        world.queries.count(counted);
        return world.queries.getLastCommitDate(world.repository.path());
    };
    const auto yours = instant("2024-03-07T10:00:00Z");
    QCOMPARE(last({}), yours);
    QCOMPARE(last(ofAllBranches), yours);
    QCOMPARE(last(mineOfAllBranches), instant("2024-03-07T09:00:00Z"));
    QCOMPARE(last(mine), std::nullopt);
}

void TestCountedCommits::allBranchesOfTablesCount()
{
    if (gitVersion() < QVersionNumber(2, 45))
        QSKIP("This git knows no tables.");
    World world;
    world.repository.git(words("init --quiet --ref-format=reftable --initial-branch=main tables"));
    const auto path = world.repository.file(QStringLiteral("tables"));
    RealGit git(path);
    for (const auto *const hour : {"08:00:00", "09:00:00"}) {
        git.set("GIT_COMMITTER_DATE", at(hour));
        git.set("GIT_AUTHOR_DATE", at(hour));
        git.run(words("commit --quiet --allow-empty --message=work"));
        git.run({QStringLiteral("checkout"), QStringLiteral("--quiet"), QStringLiteral("-b"),
                 QLatin1Char('b') + QString::fromLatin1(hour).left(2)});
    }
    git.run(words("checkout --quiet main"));
    QCOMPARE(world.count(ofAllBranches, path), 2);
}

VELQUARIN_TEST(TestCountedCommits)
#include "tst_countedcommits.moc"
