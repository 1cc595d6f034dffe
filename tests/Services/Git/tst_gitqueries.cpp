// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitQueries.h"

#include "Platform/Linux/Files/PosixFileTree.h"

#include "support/FakeClock.h"
#include "support/FakeProcessRunner.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

#include <ctime>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const QString remoteHead = QStringLiteral("symbolic-ref refs/remotes/origin/HEAD --short");
const QString listMain = QStringLiteral("branch --list main");
const QString listMaster = QStringLiteral("branch --list master");
const QString folder = QStringLiteral("/home/me/a repo");

QString logBetween(const char *branch, const char *since, const char *until)
{
    return QStringLiteral("log %1 --format=%ad --date=short --since=%2 --until=%3")
        .arg(QLatin1String(branch), QLatin1String(since), QLatin1String(until));
}

// The toolkit's own conversion would drop the mark.
QString withMark(const char *utf8)
{
    const QByteArray text(utf8);
    return text.startsWith("\xef\xbb\xbf") ? QChar(QChar::ByteOrderMark) + QString::fromUtf8(text.mid(3))
                                           : QString::fromUtf8(text);
}

const QString addresses = QStringLiteral("config -z --get-regexp ^(user|author|velquarin)\\.email$");

struct World
{
    FakeProcessRunner runner;
    FakeClock clock{instant("2024-03-07T12:00:00Z")};
    PosixFileTree files;
    GitQueries queries{runner, files, clock, QProcessEnvironment()};

    // Where git prints these settings; nothing where it is to tell of everyone's commits.
    [[nodiscard]] QString authorOption(const QByteArray &settings)
    {
        runner.answer(addresses, settings);
        queries.count({CountedAuthors::Me, CountedBranches::Default});
        try {
            static_cast<void>(queries.getLastCommitDate(folder));
        } catch (const LaunchError &) {
            // It has no answer.
        }
        const auto last = runner.requests().constLast().arguments.constLast();
        return last.startsWith(QLatin1String("--author=")) ? last : QString();
    }
};

QString optionOf(const QString &patterns)
{
    return QStringLiteral("--author=^[^<]*<\\(%1\\)>").arg(patterns);
}

}  // namespace

class TestGitQueries : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void theDefaultBranchIs_data();
    void theDefaultBranchIs();
    void aLaunchThatFailsLeadsToTheNextQuestion();
    void commandsRunInTheFolderByTheirAbsolutePath();
    void commitsAreAskedForWithSixArguments();
    void commitsAreAskedForByGreenwichDates_data();
    void commitsAreAskedForByGreenwichDates();
    void aDayBeforeThePeriodIsKept();
    void theHistoryCountsCommitsADay();
    void oneDayIsTodayAlone();
    void aYearEndsToday();
    void aHistoryThatCannotBeginAsksNothing();
    void theLastCommitIsAskedForWithFourArguments();
    void aRepositoryWithoutCommitsHasNoFigures();
    void eachChoiceAsksForItsCommits_data();
    void eachChoiceAsksForItsCommits();
    void allBranchesNeedNoDefaultBranch();
    void whoHasNoAddressIsNotToldApart();
    void anAddressIs_data();
    void anAddressIs();
    void addressesAreThoseOfEveryLevelOnceEach();
    void soManyAddressesAreCutOff();
    void anAddressIsNoPattern_data();
    void anAddressIsNoPattern();
    void whatIsNotUtf8IsNothing();
    void aFailedLaunchIsThrown();
    void anyOutputMakesARepository();
    void theEnvironmentIsCleanedAndPinned();
    void theBlockOfSettingsIsShorterWhenConfined();
};

void TestGitQueries::theDefaultBranchIs_data()
{
    QTest::addColumn<QByteArray>("remote");
    QTest::addColumn<QByteArray>("main");
    QTest::addColumn<QByteArray>("master");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("questions");
    const auto row = [](const char *name, const char *remote, const char *main, const char *master,
                        const char *expected, int questions) {
        QTest::newRow(name) << QByteArray(remote) << QByteArray(main) << QByteArray(master) << withMark(expected)
                            << questions;
    };
    row("the remote's", "origin/trunk\n", "  main\n", "  master\n", "trunk", 1);
    row("main, without a remote", "", "* main\n", "", "main", 2);
    row("main, checked out in another worktree", "", "+ main\n", "", "main", 2);
    row("master, without a main", "", "", "  master\n", "master", 3);
    row("HEAD, where the only branch is named otherwise", "", "", "", "HEAD", 3);
    row("blanks are no answer", " \n", "\t\n", "  \n", "HEAD", 3);
    row("every \"origin/\" is removed", "origin/feature/origin/x\n", "", "", "feature/x", 1);
    row("a branch with a slash", "origin/release/1.0\n", "", "", "release/1.0", 1);
    row("a branch in another script", "origin/главная\n", "", "", "главная", 1);
    row("a dash inside is usable", "origin/a-b\n", "", "", "a-b", 1);
    row("a byte-order mark is part of the name", "\xef\xbb\xbfmain\n", "", "", "\xef\xbb\xbfmain", 1);
    row("nothing is left of it", "origin/\n", "* main\n", "", "main", 2);
    row("an option is no branch", "origin/--output=/tmp/x\n", "* main\n", "", "main", 2);
    row("an option that appears once \"origin/\" is gone", "-origin/-output=x\n", "* main\n", "", "main", 2);
    row("a single dash is no branch", "origin/-\n", "", "  master\n", "master", 3);
    row("reflog syntax is no branch", "origin/x@{1}\n", "", "", "HEAD", 3);
    row("a character that only terminals take for a command is usable",
        "origin/a\xc2\x80\xc2\x9f"
        "b\n",
        "", "",
        "a\xc2\x80\xc2\x9f"
        "b",
        1);
    row("an end of line inside is no branch", "origin/a\nb\n", "", "", "HEAD", 3);
    row("the first of the control characters is no branch",
        "origin/a\x01"
        "b\n",
        "", "", "HEAD", 3);
    row("the last of the control characters is no branch",
        "origin/a\x7f"
        "b\n",
        "", "", "HEAD", 3);
    row("an at sign alone is usable", "origin/a@b\n", "", "", "a@b", 1);
    row("braces alone are usable", "origin/a{b}\n", "", "", "a{b}", 1);
}

void TestGitQueries::theDefaultBranchIs()
{
    QFETCH(QByteArray, remote);
    QFETCH(QByteArray, main);
    QFETCH(QByteArray, master);
    QFETCH(int, questions);
    World world;
    world.runner.answer(remoteHead, remote);
    world.runner.answer(listMain, main);
    world.runner.answer(listMaster, master);
    QTEST(world.queries.getDefaultBranch(folder), "expected");
    QCOMPARE(world.runner.commands(), (QStringList{remoteHead, listMain, listMaster}.mid(0, questions)));
}

void TestGitQueries::aLaunchThatFailsLeadsToTheNextQuestion()
{
    World world;
    QCOMPARE(world.queries.getDefaultBranch(folder), QStringLiteral("HEAD"));
    QCOMPARE(world.runner.commands(), (QStringList{remoteHead, listMain, listMaster}));
}

void TestGitQueries::commandsRunInTheFolderByTheirAbsolutePath()
{
    World world;
    QVERIFY(!world.queries.isGitRepository(folder));
    const auto request = world.runner.requests().constFirst();
    QCOMPARE(request.program, QStringLiteral("/usr/bin/git"));
    QCOMPARE(request.directory, folder);
    QCOMPARE(request.arguments, (QStringList{QStringLiteral("rev-parse"), QStringLiteral("--git-dir")}));
}

void TestGitQueries::commitsAreAskedForWithSixArguments()
{
    World world;
    world.runner.answer(remoteHead, "origin/main\n");
    world.runner.answer(logBetween("main", "2024-03-01", "2024-03-08"), "2024-03-07\n2024-03-07\n2024-03-01\n");
    const auto days =
        world.queries.getCommits(folder, instant("2024-03-01T00:00:00Z"), instant("2024-03-07T12:00:00Z"));
    QCOMPARE(days, (QList{instant("2024-03-07T00:00:00Z"), instant("2024-03-07T00:00:00Z"),
                          instant("2024-03-01T00:00:00Z")}));
    QCOMPARE(world.runner.requests().constLast().arguments,
             (QStringList{QStringLiteral("log"), QStringLiteral("main"), QStringLiteral("--format=%ad"),
                          QStringLiteral("--date=short"), QStringLiteral("--since=2024-03-01"),
                          QStringLiteral("--until=2024-03-08")}));
}

void TestGitQueries::commitsAreAskedForByGreenwichDates_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QByteArray>("since");
    QTest::addColumn<QByteArray>("until");
    const auto row = [](const char *name, const char *zone, const char *now, const char *since, const char *until) {
        QTest::newRow(name) << QByteArray(zone) << QString::fromLatin1(now) << QByteArray(since) << QByteArray(until);
    };
    row("at Greenwich", "UTC", "2024-03-07T12:00:00Z", "2024-03-01", "2024-03-08");
    row("east of it the first day begins the day before", "Asia/Kolkata", "2024-03-07T12:00:00Z", "2024-02-29",
        "2024-03-08");
    row("west of it the last day may end the day after", "America/New_York", "2024-03-08T03:00:00Z", "2024-03-01",
        "2024-03-09");
    row("fourteen hours ahead", "Pacific/Kiritimati", "2024-03-07T12:00:00Z", "2024-03-01", "2024-03-08");
    row("over a skipped midnight", "America/Sao_Paulo", "2018-11-04T12:00:00Z", "2018-10-29", "2018-11-05");
    row("where the next day never was", "Pacific/Apia", "2011-12-30T06:00:00Z", "2011-12-23", "2011-12-30");
    row("over two midnights", "America/Havana", "2023-11-05T12:00:00Z", "2023-10-30", "2023-11-06");
}

void TestGitQueries::commitsAreAskedForByGreenwichDates()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, now);
    QFETCH(QByteArray, since);
    QFETCH(QByteArray, until);
    World world;
    world.clock.setZone(zone.constData());
    world.clock.setNow(instant(now.toLatin1().constData()));
    const auto expected = logBetween("HEAD", since.constData(), until.constData());
    world.runner.answer(expected, {});
    QVERIFY(world.queries.getCommitHistory(folder, 7).empty());
    QCOMPARE(world.runner.commands().constLast(), expected);
}

void TestGitQueries::aDayBeforeThePeriodIsKept()
{
    World world;
    world.clock.setZone("Asia/Kolkata");
    world.runner.answer(logBetween("HEAD", "2024-02-29", "2024-03-08"), "2024-03-07\n2024-02-29\n");
    const auto history = world.queries.getCommitHistory(folder, 7);
    QCOMPARE(history, (DayCounts{{instant("2024-02-28T18:30:00Z"), 1}, {instant("2024-03-06T18:30:00Z"), 1}}));
}

void TestGitQueries::theHistoryCountsCommitsADay()
{
    World world;
    world.runner.answer(logBetween("HEAD", "2024-03-01", "2024-03-08"),
                        "2024-03-07\n2024-03-07\n2024-03-07\n2024-03-06\n");
    QCOMPARE(world.queries.getCommitHistory(folder, 7),
             (DayCounts{{instant("2024-03-06T00:00:00Z"), 1}, {instant("2024-03-07T00:00:00Z"), 3}}));
}

void TestGitQueries::oneDayIsTodayAlone()
{
    World world;
    const auto expected = logBetween("HEAD", "2024-03-07", "2024-03-08");
    world.runner.answer(expected, {});
    QVERIFY(world.queries.getCommitHistory(folder, 1).empty());
    QCOMPARE(world.runner.commands().constLast(), expected);
}

void TestGitQueries::aYearEndsToday()
{
    World world;
    const auto expected = logBetween("HEAD", "2023-03-09", "2024-03-08");
    world.runner.answer(expected, {});
    QVERIFY(world.queries.getCommitHistory(folder, 365).empty());
    QCOMPARE(world.runner.commands().constLast(), expected);
}

void TestGitQueries::aHistoryThatCannotBeginAsksNothing()
{
    World world;
    world.clock.setZone("Pacific/Apia");
    // Two days back from 1 January is the date that Apia left out.
    world.clock.setNow(instant("2011-12-31T12:00:00Z"));
    QCOMPARE(world.clock.calendar().dateOf(world.clock.now()), QDate(2012, 1, 1));
    QVERIFY(world.queries.getCommitHistory(folder, 3).empty());
    QVERIFY(world.runner.commands().isEmpty());
}

void TestGitQueries::theLastCommitIsAskedForWithFourArguments()
{
    World world;
    world.runner.answer(QStringLiteral("log HEAD -1 --format=%aI"), "2024-03-07T21:15:02+01:00\n");
    QCOMPARE(world.queries.getLastCommitDate(folder), std::optional(instant("2024-03-07T20:15:02Z")));
    QCOMPARE(world.runner.requests().constLast().arguments,
             (QStringList{QStringLiteral("log"), QStringLiteral("HEAD"), QStringLiteral("-1"),
                          QStringLiteral("--format=%aI")}));
}

void TestGitQueries::aRepositoryWithoutCommitsHasNoFigures()
{
    World world;
    world.runner.answer(logBetween("HEAD", "2024-03-01", "2024-03-08"), {});
    world.runner.answer(QStringLiteral("log HEAD -1 --format=%aI"), {});
    QVERIFY(world.queries.getCommitHistory(folder, 7).empty());
    QVERIFY(world.queries.getCommits(folder, instant("2024-03-01T00:00:00Z"), world.clock.now()).isEmpty());
    QVERIFY(!world.queries.getLastCommitDate(folder).has_value());
}

void TestGitQueries::eachChoiceAsksForItsCommits_data()
{
    QTest::addColumn<CountedAuthors>("authors");
    QTest::addColumn<CountedBranches>("branches");
    QTest::addColumn<QString>("revisions");
    QTest::addColumn<QString>("filter");
    const QString all = QStringLiteral("--ignore-missing --branches HEAD");
    const QString mine =
        QStringLiteral(" --basic-regexp --regexp-ignore-case ") + optionOf(QStringLiteral("me@home\\|me@work"));
    QTest::newRow("everyone's, default branch")
        << CountedAuthors::Everyone << CountedBranches::Default << QStringLiteral("main") << QString();
    QTest::newRow("mine, default branch")
        << CountedAuthors::Me << CountedBranches::Default << QStringLiteral("main") << mine;
    QTest::newRow("everyone's, all branches") << CountedAuthors::Everyone << CountedBranches::All << all << QString();
    QTest::newRow("mine, all branches") << CountedAuthors::Me << CountedBranches::All << all << mine;
}

void TestGitQueries::eachChoiceAsksForItsCommits()
{
    QFETCH(CountedAuthors, authors);
    QFETCH(CountedBranches, branches);
    QFETCH(QString, revisions);
    QFETCH(QString, filter);
    World world;
    world.runner.answer(listMain, "* main\n");
    world.runner.answer(addresses, {"user.email\nme@home\0velquarin.email\nme@work\0", 46});
    const auto week =
        QStringLiteral("log %1 --format=%ad --date=short --since=2024-03-01 --until=2024-03-08").arg(revisions) +
        filter;
    const auto last = QStringLiteral("log %1 -1 --format=%aI").arg(revisions) + filter;
    world.runner.answer(week, "2024-03-07\n");
    world.runner.answer(last, "2024-03-07T21:15:02+01:00\n");
    world.queries.count({authors, branches});
    QCOMPARE(world.queries.getCommitHistory(folder, 7), (DayCounts{{instant("2024-03-07T00:00:00Z"), 1}}));
    QCOMPARE(world.queries.getLastCommitDate(folder), std::optional(instant("2024-03-07T20:15:02Z")));
    QCOMPARE(world.runner.commands().filter(QStringLiteral("log ")), (QStringList{week, last}));
}

void TestGitQueries::allBranchesNeedNoDefaultBranch()
{
    World world;
    world.runner.answer(QStringLiteral("log --ignore-missing --branches HEAD -1 --format=%aI"), {});
    world.queries.count({CountedAuthors::Everyone, CountedBranches::All});
    static_cast<void>(world.queries.getLastCommitDate(folder));
    QCOMPARE(world.runner.commands().size(), 1);
}

void TestGitQueries::whoHasNoAddressIsNotToldApart()
{
    World world;
    world.runner.answer(addresses, {});
    world.runner.answer(QStringLiteral("log HEAD -1 --format=%aI"), "2024-03-07T21:15:02+01:00\n");
    QVERIFY(!world.queries.countsEveryoneForWantOfAddresses(folder));
    QVERIFY(world.runner.commands().isEmpty());
    world.queries.count({CountedAuthors::Me, CountedBranches::Default});
    QVERIFY(world.queries.countsEveryoneForWantOfAddresses(folder));
    QVERIFY(world.queries.getLastCommitDate(folder).has_value());
    world.runner.answer(addresses, {"user.email\nme@home\0", 19});
    QVERIFY(!world.queries.countsEveryoneForWantOfAddresses(folder));
}

void TestGitQueries::anAddressIs_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("isOne");
    QTest::newRow("one") << QByteArray("me@home.org") << true;
    QTest::newRow("without a host") << QByteArray("me") << true;
    QTest::newRow("in another script") << QByteArray("пётр@почта") << true;
    QTest::newRow("with blanks") << QByteArray("me at home") << true;
    QTest::newRow("like an option") << QByteArray("--output=x") << true;
    QTest::newRow("of 320 bytes") << QByteArray(320, 'a') << true;
    QTest::newRow("of 320 bytes in 160 letters") << QByteArray("é").repeated(160) << true;
    QTest::newRow("of 321 bytes") << QByteArray(321, 'a') << false;
    QTest::newRow("of 322 bytes in 161 letters") << QByteArray("é").repeated(161) << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("of bytes that are no text") << QByteArray("jos\xe9@home") << false;
    QTest::newRow("with a bracket that opens") << QByteArray("<me@home") << false;
    QTest::newRow("with a bracket that closes") << QByteArray("me>@home") << false;
    QTest::newRow("with an end of line") << QByteArray("me@home\nyou@home") << false;
    QTest::newRow("with a return") << QByteArray("me@home\r") << false;
}

void TestGitQueries::anAddressIs()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, isOne);
    World world;
    QCOMPARE(!world.authorOption("user.email\n" + value + '\0').isEmpty(), isOne);
}

void TestGitQueries::addressesAreThoseOfEveryLevelOnceEach()
{
    World world;
    const QByteArrayList entries{"user.email\nme@home",     "user.email\nme@work", "user.email\nme@home",
                                 "author.email\njos\xe9@x", "velquarin.email",     "velquarin.email\nold@home",
                                 "user.email\nνίκος@x",     "user.email\nνίκοσ@x", ""};
    const auto option = world.authorOption(entries.join('\0'));
    QVERIFY(option.startsWith(QStringLiteral("--author=^[^<]*<\\(me@home\\|me@work\\|old@home\\|")));
    QCOMPARE(option.count(QStringLiteral("@x")), 2);
}

// A stranger's repository comes last, with whatever it names.
void TestGitQueries::soManyAddressesAreCutOff()
{
    World world;
    QByteArray settings = "user.email\nme@home\n";
    settings.back() = '\0';
    for (int number = 0; number < 200'000; ++number)
        settings += "user.email\n" + QByteArray(300, 'a') + QByteArray::number(number) + '\0';
    const auto begin = std::clock();
    const auto option = world.authorOption(settings);
    QVERIFY2((std::clock() - begin) / CLOCKS_PER_SEC < 5, "of the processor's time");
    QVERIFY(option.startsWith(QStringLiteral("--author=^[^<]*<\\(me@home\\|aaa")));
    QVERIFY(option.toUtf8().size() > 99'000 && option.toUtf8().size() < 101'000);
}

void TestGitQueries::anAddressIsNoPattern_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("pattern");
    const auto row = [](const char *address, const char *pattern) {
        QTest::newRow(address) << QString::fromUtf8(address) << QString::fromUtf8(pattern);
    };
    row("me@home.org", "me@home\\.org");
    row(".*", "\\.\\*");
    row("^a$", "\\^a\\$");
    row("[a]", "\\[a]");
    row("a+b?{2}(c|d)", "a+b?{2}(c|d)");
    row("a\\Eb", "a\\\\Eb");
    row("a\\(b", "a\\\\(b");
    row("josé@home", "jos\\(é\\|É\\)@home");
    row("山@home", "山@home");
}

void TestGitQueries::anAddressIsNoPattern()
{
    QFETCH(QString, address);
    QFETCH(QString, pattern);
    World world;
    QCOMPARE(world.authorOption("user.email\n" + address.toUtf8() + '\0'), optionOf(pattern));
}

void TestGitQueries::whatIsNotUtf8IsNothing()
{
    World world;
    world.runner.answer(logBetween("HEAD", "2024-03-01", "2024-03-08"), "2024-03-07\n\xff\xfe\n2024-03-06\n");
    QVERIFY(world.queries.getCommitHistory(folder, 7).empty());
    world.runner.answer(remoteHead, "origin/\xc3\x28\n");
    QCOMPARE(world.queries.getDefaultBranch(folder), QStringLiteral("HEAD"));
}

void TestGitQueries::aFailedLaunchIsThrown()
{
    World world;
    QVERIFY_THROWS_EXCEPTION(LaunchError, static_cast<void>(world.queries.getCommitHistory(folder, 7)));
    QVERIFY_THROWS_EXCEPTION(LaunchError, static_cast<void>(world.queries.getLastCommitDate(folder)));
    QVERIFY(!world.queries.isGitRepository(folder));
}

void TestGitQueries::anyOutputMakesARepository()
{
    World world;
    world.runner.answer(QStringLiteral("rev-parse --git-dir"), {});
    QVERIFY(world.queries.isGitRepository(folder));
}

void TestGitQueries::theEnvironmentIsCleanedAndPinned()
{
    QProcessEnvironment inherited;
    inherited.insert(QStringLiteral("HOME"), QStringLiteral("/home/me"));
    for (const auto &name : {"GIT_DIR", "GIT_TRACE", "GIT_CONFIG_PARAMETERS", "GIT_INDEX_FILE", "GIT_EXTERNAL_DIFF"})
        inherited.insert(QLatin1String(name), QStringLiteral("/somewhere/else"));
    inherited.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    FakeProcessRunner runner;
    const FakeClock clock;
    const PosixFileTree files;
    GitQueries queries(runner, files, clock, inherited);
    QVERIFY(!queries.isGitRepository(folder));
    const auto environment = runner.requests().constFirst().environment;
    QCOMPARE(environment.value(QStringLiteral("HOME")), QStringLiteral("/home/me"));
    QCOMPARE(environment.value(QStringLiteral("LC_ALL")), QStringLiteral("C"));
    QCOMPARE(environment.value(QStringLiteral("GIT_ALLOW_PROTOCOL")), QStringLiteral("none"));
    QCOMPARE(environment.value(QStringLiteral("GIT_NO_LAZY_FETCH")), QStringLiteral("1"));
    const auto values = environment.toStringList();
    QVERIFY(std::ranges::none_of(values, [](const QString &entry) { return entry.contains(u"/somewhere/else"); }));
    QVERIFY(!environment.contains(QStringLiteral("GIT_DIR")));
}

void TestGitQueries::theBlockOfSettingsIsShorterWhenConfined()
{
    const auto settingsCount = [](bool isConfined) {
        World world;
        world.runner.setConfines(isConfined);
        static_cast<void>(world.queries.isGitRepository(folder));
        return world.runner.requests().constFirst().environment.value(QStringLiteral("GIT_CONFIG_COUNT")).toInt();
    };
    QCOMPARE(settingsCount(true), 7);
    QCOMPARE(settingsCount(false), 23);
}

VELQUARIN_TEST(TestGitQueries)
#include "tst_gitqueries.moc"
