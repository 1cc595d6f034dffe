// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitQueries.h"

#include "Platform/Linux/Files/PosixFileTree.h"

#include "support/Extent.h"
#include "support/FakeClock.h"
#include "support/Files.h"
#include "support/GitVersion.h"
#include "support/OtherTimes.h"
#include "support/RunnerAt.h"
#include "support/Strict.h"
#include "support/TempRepository.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <functional>
#include <memory>
#include <random>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

struct Answers
{
    bool isRepository = false;
    QList<Instant> week;
    QList<Instant> years;
    std::optional<Instant> last;
    QList<WatchPlace> places;
    bool isEveryones = false;
    QString error;
    friend bool operator==(const Answers &, const Answers &) = default;
};

// One engine that remembers and one that asks each time, of the same repositories at the same moment.
class Pair
{
public:
    explicit Pair(std::unique_ptr<FileTree> files = std::make_unique<PosixFileTree>())
        : m_files(std::move(files))
    {
        setZone("UTC");
    }

    void setZone(const char *zone)
    {
        qputenv("TZ", zone);
        m_clock.setZone(zone);
    }

    void setNow(qint64 seconds)
    {
        runner.now = seconds;
        m_clock.setNow(Instant(std::chrono::seconds(seconds)));
    }

    void count(CountedCommits counted)
    {
        m_remembering.count(counted);
        m_forgetful.count(counted);
    }

    [[nodiscard]] qint64 now() const { return runner.now; }
    [[nodiscard]] QString home() const { return m_home.path(); }

    // What the one that remembers answers; how many processes that took is then in processes().
    Answers remembered(const QString &path)
    {
        const int before = runner.count;
        m_remembering.beginLook(path);
        auto answers = askedOf(m_remembering, path);
        m_remembering.endLook();
        m_processes = runner.count - before;
        return answers;
    }

    Answers asked(const QString &path) { return askedOf(m_forgetful, path); }

    [[nodiscard]] int processes() const { return m_processes; }

    RunnerAt runner;

private:
    [[nodiscard]] QProcessEnvironment environment() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.filePath(QStringLiteral("xdg")));
        return environment;
    }

    Answers askedOf(GitQueries &git, const QString &path)
    {
        Answers answers;
        try {
            answers.isRepository = git.isGitRepository(path);
            const auto calendar = m_clock.calendar();
            const auto today = calendar.startOfDay(m_clock.now());
            answers.week = git.getCommits(path, calendar.addDays(today, -6).value_or(today), m_clock.now());
            answers.years = git.getCommits(path, calendar.addDays(today, -730).value_or(today), m_clock.now());
            answers.last = git.getLastCommitDate(path);
            answers.places = git.watchPlaces(path);
            answers.isEveryones = git.countsEveryoneForWantOfAddresses(path);
        } catch (const LaunchError &error) {
            answers.error = QString::fromUtf8(error.what());
        }
        return answers;
    }

    QTemporaryDir m_home;
    std::unique_ptr<FileTree> m_files;
    FakeClock m_clock;
    GitQueries m_remembering{runner, *m_files, m_clock, environment()};
    GitQueries m_forgetful{runner, *m_files, m_clock, environment()};
    int m_processes = 0;
};

constexpr qint64 hour = 3'600;
constexpr qint64 day = 24 * hour;
constexpr qint64 start = 1'780'000'000;  // 2026-05-28T20:26:40Z

QString dateOf(qint64 seconds)
{
    return QStringLiteral("@%1 +0000").arg(seconds);
}

// Asks for the commits of the last days alone, at the same moment each time.
class DaysAsked
{
public:
    DaysAsked() { m_runner.now = start; }

    qsizetype commits(const TempRepository &repository, int days)
    {
        m_git.beginLook(repository.path());
        const auto count = m_git.getCommits(repository.path(), m_clock.now() - days * 24h, m_clock.now()).size();
        m_git.endLook();
        return count;
    }

    int processes(const TempRepository &repository, int days)
    {
        const int before = m_runner.count;
        commits(repository, days);
        return m_runner.count - before;
    }

private:
    RunnerAt m_runner;
    PosixFileTree m_files;
    FakeClock m_clock{Instant(std::chrono::seconds(start))};
    GitQueries m_git{m_runner, m_files, m_clock, QProcessEnvironment::systemEnvironment()};
};

// A folder with repositories of every kind, in which anything may happen.
class Village
{
public:
    Village(Pair &pair, std::uint32_t seed)
        : m_pair(pair)
        , m_random(seed)
    {
        git(m_folder.path(), "init --quiet --initial-branch=main upstream");
        commitIn(place("upstream"));
        commitIn(place("upstream"));
        git(m_folder.path(), "init --quiet --initial-branch=main plain");
        git(m_folder.path(), "init --quiet --initial-branch=trunk other");
        git(m_folder.path(), "clone --quiet upstream clone");
        git(m_folder.path(), "clone --quiet --bare upstream bare");
        git(m_folder.path(), "init --quiet --initial-branch=master --separate-git-dir=away apart");
        git(m_folder.path(), "clone --quiet --depth=1 file://" + place("upstream").toUtf8() + " shallow");
        git(place("clone"), "worktree add --quiet --detach ../linked");
        repositories = {place("plain"), place("other"),   place("clone"),  place("bare"),
                        place("apart"), place("shallow"), place("linked"), place("upstream")};
        if (gitVersion() >= QVersionNumber(2, 45)) {
            git(m_folder.path(), "init --quiet --ref-format=reftable tables");
            repositories << place("tables");
        }
    }

    // Does something somewhere; says what, and where it can be seen.
    QString happen()
    {
        m_touched = repositories.at(number(repositories.size()));
        const auto &[name, act] = happenings().at(std::size_t(number(qsizetype(happenings().size()))));
        try {
            act();
        } catch (const std::runtime_error &) {
            // Not everything is possible everywhere; git says no, and nothing has changed.
        }
        return QString::fromLatin1(name) + QStringLiteral(" in ") + m_touched;
    }

    [[nodiscard]] const QString &touched() const { return m_touched; }
    [[nodiscard]] const QString &any() { return repositories.at(number(repositories.size())); }

    QStringList repositories;

private:
    using Happening = std::pair<const char *, std::function<void()>>;

    const std::vector<Happening> &happenings()
    {
        static constexpr std::array zones = {"UTC",          "Europe/Berlin",  "America/New_York",
                                             "Pacific/Apia", "Asia/Kathmandu", "America/Havana"};
        if (m_happenings.empty()) {
            m_happenings = {
                {"a commit", [this] { commitIn(m_touched); }},
                {"a commit", [this] { commitIn(m_touched); }},
                {"an amended commit", [this] { here("commit --quiet --amend --allow-empty --no-edit"); }},
                {"a reset", [this] { here("reset --quiet --hard HEAD~1"); }},
                {"a new branch", [this] { here("checkout --quiet -b " + branch()); }},
                {"a branch beside", [this] { here("branch --force " + branch()); }},
                {"another branch", [this] { here("checkout --quiet " + branch()); }},
                {"a branch gone", [this] { here("branch -D " + branch()); }},
                {"a renamed branch", [this] { here("branch -M " + branch()); }},
                {"a detached head", [this] { here("checkout --quiet --detach"); }},
                {"a merge", [this] { here("merge --quiet --no-ff --no-edit " + branch()); }},
                {"a tag named like a branch", [this] { here("tag -f " + branch()); }},
                {"a tag gone", [this] { here("tag -d " + branch()); }},
                {"packed references", [this] { here("pack-refs --all"); }},
                {"packed and committed", [this] { here("pack-refs --all"), commitIn(m_touched); }},
                {"a fetch", [this] { here("fetch --quiet"); }},
                {"a fetch into a branch", [this] { here("fetch --quiet --update-head-ok origin main:main"); }},
                {"a push", [this] { git(place("upstream"), "push --quiet --force ../bare HEAD:main"); }},
                {"a commit upstream", [this] { commitIn(place("upstream")); }},
                {"another head of the remote", [this] { here("remote set-head origin " + branch()); }},
                {"no head of the remote", [this] { here("remote set-head origin --delete"); }},
                {"a head of the remote",
                 [this] { here("symbolic-ref refs/remotes/origin/HEAD refs/remotes/origin/main"); }},
                {"a tag named like the remote's branch", [this] { here("tag -f origin/main"); }},
                {"that tag gone", [this] { here("tag -d origin/main"); }},
                {"a stash", [this] { here("stash --quiet --include-untracked"); }},
                {"a replaced commit", [this] { here("replace -f HEAD HEAD~1"); }},
                {"no replaced commit", [this] { here("replace -d HEAD"); }},
                {"the whole history", [this] { here("fetch --quiet --unshallow"); }},
                {"a setting",
                 [this] { here("config core.useReplaceRefs " + QByteArray(number(2) ? "true" : "false")); }},
                {"an included setting", [this] { include(); }},
                {"a setting of the user", [this] { settingOfUser(); }},
                {"a setting of a branch", [this] { includeOnBranch(); }},
                {"an address", [this] { here("config user.email " + address()); }},
                {"another address", [this] { here("config --add velquarin.email " + address()); }},
                {"no address", [this] { here("config --unset-all user.email"); }},
                {"other commits count", [this] { countOthers(); }},
                {"a graft", [this] { graft(); }},
                {"an unborn branch", [this] { here("symbolic-ref HEAD refs/heads/none"); }},
                {"a branch of a branch", [this] { here("symbolic-ref refs/heads/main refs/heads/side"); }},
                {"hours", [this] { moveClock(number(30) * hour); }},
                {"days", [this] { moveClock(number(9) * day); }},
                {"a clock set back", [this] { moveClock(-number(5) * day); }},
                {"midnight at Greenwich", [this] { moveClock(day - m_pair.now() % day + number(3) - 1); }},
                {"midnight here", [this] { moveToMidnight(); }},
                {"beside the edge of a commit", [this] { moveBesideCommit(); }},
                {"beside the edge of a commit", [this] { moveBesideCommit(); }},
                {"another zone", [this] { m_pair.setZone(zones.at(std::size_t(number(zones.size())))); }},
                {"another season", [this] { moveClock(number(200) * day); }},
            };
        }
        return m_happenings;
    }

    [[nodiscard]] qsizetype number(qsizetype below) { return qsizetype(m_random() % std::uint32_t(below)); }
    [[nodiscard]] QString place(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    QByteArray branch()
    {
        static const std::array names{"main", "master", "trunk", "side", "a/b"};
        return names.at(std::size_t(number(names.size())));
    }

    static QByteArray git(const QString &folder, const QByteArray &arguments)
    {
        RealGit git(folder);
        git.set("GIT_CONFIG_COUNT", QStringLiteral("2"));
        git.set("GIT_CONFIG_KEY_1", QStringLiteral("protocol.file.allow"));
        git.set("GIT_CONFIG_VALUE_1", QStringLiteral("always"));
        return git.run(QString::fromUtf8(arguments).split(u' '));
    }

    void here(const QByteArray &arguments) { git(m_touched, arguments); }

    // Mostly of now; at times of a clock that was wrong.
    void commitIn(const QString &folder)
    {
        const std::array skews{qint64(0), qint64(0), qint64(0), -day, -8 * day, -731 * day, 2 * day, 400 * day};
        const auto author = m_pair.now() + skews.at(std::size_t(number(skews.size())));
        const auto committed = m_pair.now() + skews.at(std::size_t(number(skews.size()))) - number(100);
        RealGit git(folder);
        git.set("GIT_AUTHOR_DATE", QStringLiteral("@%1 +0%200").arg(author).arg(number(9)));
        git.set("GIT_AUTHOR_EMAIL", QString::fromUtf8(address()));
        git.set("GIT_COMMITTER_DATE", QStringLiteral("@%1 +0000").arg(committed));
        git.run({QStringLiteral("commit"), QStringLiteral("--quiet"), QStringLiteral("--allow-empty"),
                 QStringLiteral("-m"), QStringLiteral("x")});
        m_commits << committed;
    }

    void moveClock(qint64 step) { m_pair.setNow(std::max(start - 900 * day, m_pair.now() + step)); }

    void moveToMidnight()
    {
        std::time_t now = m_pair.now();
        std::tm local = {};
        localtime_r(&now, &local);
        ++local.tm_mday;
        local.tm_hour = local.tm_min = local.tm_sec = 0;
        local.tm_isdst = -1;
        m_pair.setNow(std::mktime(&local) + number(3) - 1);
    }

    // The edges of the windows have the time of day of now: a second before, at, or after that of a commit they pass it.
    void moveBesideCommit()
    {
        if (m_commits.isEmpty())
            return;
        const auto commit = m_commits.at(number(m_commits.size()));
        const std::array ages{qint64(0), qint64(-1), qint64(6), qint64(7), qint64(730), qint64(731)};
        m_pair.setNow(commit + ages.at(std::size_t(number(ages.size()))) * day + number(3) - 1);
    }

    void include()
    {
        const auto file = m_folder.filePath(QStringLiteral("included"));
        here("config include.path " + file.toUtf8());
        writeFile(file, replacements());
    }

    void includeOnBranch()
    {
        const auto file = m_folder.filePath(QStringLiteral("of-branch"));
        here("config includeIf.onbranch:" + branch() + ".path " + file.toUtf8());
        writeFile(file, replacements());
    }

    // Settings that change figures: whether replaced commits count, and whose.
    QByteArray replacements()
    {
        return (number(2) ? "[core]\n\tuseReplaceRefs = false\n" : "[core]\n") +
               (number(2) ? "[author]\n\temail = " + address() + '\n' : QByteArray());
    }

    QByteArray address()
    {
        static const std::array addresses{"me@home", "ME@home", "me@work", "you@work", "someone@else"};
        return addresses.at(std::size_t(number(addresses.size())));
    }

    void countOthers() { m_pair.count({CountedAuthors(number(2)), CountedBranches(number(2))}); }

    void settingOfUser()
    {
        const std::array places{QStringLiteral("/.gitconfig"), QStringLiteral("/xdg/git/config")};
        writeFile(m_pair.home() + places.at(std::size_t(number(2))),
                  number(3) ? replacements() : "[safe]\n\tbareRepository = explicit\n");
    }

    void graft()
    {
        const auto common = git(m_touched, "rev-parse --path-format=absolute --git-common-dir").trimmed();
        writeFile(QString::fromUtf8(common) + QStringLiteral("/info/grafts"), git(m_touched, "rev-parse HEAD"));
    }

    Pair &m_pair;
    std::mt19937 m_random;
    QTemporaryDir m_folder;
    std::vector<Happening> m_happenings;
    QList<qint64> m_commits;
    QString m_touched;
};

}  // namespace

class TestGitMemory : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void whatIsKnownIsNotAsked();
    void theMomentsOfCommitsAreAskedForWhenTheClockHasGoneOn();
    void everythingIsAskedAgainOnceADay();
    void whatWasKilledIsNotRemembered_data();
    void whatWasKilledIsNotRemembered();
    void settingsAreReadOnceForAllThatIsAsked();
    void aBranchThatAppearsBetweenTheQuestionsIsSeen();
    void aBranchThatStandsForOneThatAppearsIsSeen();
    void whatCountsDifferentlyIsKnownByItself_data();
    void whatCountsDifferentlyIsKnownByItself();
    void thatThereIsNoAddressIsKnownToo();
    void aBranchThatComesAndGoesBetweenTheQuestionsIsNotRemembered();
    void aLongerWindowThanWasAskedForIsAsked();
    void theLogsOfTwoWindowsAreKept();
    void aWindowThatMovedPastACommitIsAskedOnce();
    void aZoneThatChangesBeforeGitLooksAtItIsSeen();
    void anEdgeThatPassesACommitDuringTheLookIsSeen();
    void aCommitThatGoesWhileTheMomentsAreListedIsSeen();
    void whereTheMomentsCannotBeListedThatIsTriedOnceALook();
    void theWindowsMoveWithTheClock_data();
    void theWindowsMoveWithTheClock();
    void aCommitOfTheFutureComesIntoSight();
    void referencesThatAreWrittenTwiceInOneStepOfTheirTimesAreSeen();
    void anotherRepositoryInItsPlaceIsSeen_data();
    void anotherRepositoryInItsPlaceIsSeen();
    void aRepositoryThatIsClonedAgainWhileItIsReadIsNotMixedUp();
    void answersAsGitWouldWhateverHappens_data();
    void answersAsGitWouldWhateverHappens();
};

void TestGitMemory::whatIsKnownIsNotAsked()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    const auto answers = pair.remembered(repository.path());
    QVERIFY(pair.processes() > 0);
    QCOMPARE(answers.week.size(), 1);
    static_cast<void>(pair.remembered(repository.path()));
    QVERIFY(pair.remembered(repository.path()) == answers);
    QCOMPARE(pair.processes(), 0);
    pair.setNow(start + 23 * hour);
    QVERIFY(pair.remembered(repository.path()) == answers);
    QCOMPARE(pair.processes(), 0);
}

// A look that finds another commit has no use for the moments of those before.
void TestGitMemory::theMomentsOfCommitsAreAskedForWhenTheClockHasGoneOn()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    QStringList questions;
    pair.runner.meanwhile = [&](const QString &asked, const ProcessOutput &output) {
        questions.append(asked);
        return output;
    };
    for (int commits = 1; commits < 4; ++commits) {
        repository.commit(dateOf(start - 60));
        QCOMPARE(pair.remembered(repository.path()).week.size(), commits);
    }
    QVERIFY(!questions.contains(QLatin1String("rev-list")));
    questions.clear();
    static_cast<void>(pair.remembered(repository.path()));
    QCOMPARE(questions, QStringList(QStringLiteral("rev-list")));
}

void TestGitMemory::everythingIsAskedAgainOnceADay()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    static_cast<void>(pair.remembered(repository.path()));
    static_cast<void>(pair.remembered(repository.path()));
    pair.setNow(start + day - 1);
    static_cast<void>(pair.remembered(repository.path()));
    QCOMPARE(pair.processes(), 0);
    pair.setNow(start + day);
    static_cast<void>(pair.remembered(repository.path()));
    QVERIFY(pair.processes() > 0);
    pair.setNow(start + day - 1);
    static_cast<void>(pair.remembered(repository.path()));
    QVERIFY(pair.processes() > 0);
}

void TestGitMemory::whatWasKilledIsNotRemembered_data()
{
    QTest::addColumn<QString>("command");
    for (const auto *const command : {"rev-parse", "symbolic-ref", "branch", "config", "log", "rev-list"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

void TestGitMemory::whatWasKilledIsNotRemembered()
{
    QFETCH(const QString, command);
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    pair.runner.meanwhile = [&](const QString &asked, const ProcessOutput &output) {
        return asked == command ? ProcessOutput() : output;
    };
    for (int look = 0; look < 2; ++look)
        static_cast<void>(pair.remembered(repository.path()));
    pair.runner.meanwhile = {};
    QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
    QVERIFY(pair.processes() > 0);
}

void TestGitMemory::settingsAreReadOnceForAllThatIsAsked()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    QStringList questions;
    pair.runner.meanwhile = [&](const QString &asked, const ProcessOutput &output) {
        questions.append(asked);
        return output;
    };
    static_cast<void>(pair.remembered(repository.path()));
    QCOMPARE(questions.count(QStringLiteral("config")), 1);
    QVERIFY(questions.count(QStringLiteral("log")) > 1);
}

void TestGitMemory::aBranchThatAppearsBetweenTheQuestionsIsSeen()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository(QStringLiteral("trunk"));
    repository.commit(dateOf(start - 60));
    repository.commit(dateOf(start - 60));
    pair.runner.meanwhile = [&](const QString &asked, const ProcessOutput &output) {
        if (asked == QLatin1String("branch"))
            repository.git({QStringLiteral("branch"), QStringLiteral("--force"), QStringLiteral("main"),
                            QStringLiteral("HEAD~1")});
        return output;
    };
    static_cast<void>(pair.remembered(repository.path()));
    pair.runner.meanwhile = {};
    QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
}

void TestGitMemory::aBranchThatStandsForOneThatAppearsIsSeen()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository(QStringLiteral("trunk"));
    repository.commit(dateOf(start - 60));
    repository.commit(dateOf(start - 60));
    repository.git(
        {QStringLiteral("symbolic-ref"), QStringLiteral("refs/heads/main"), QStringLiteral("refs/heads/side")});
    QCOMPARE(pair.remembered(repository.path()).week.size(), 2);
    repository.git({QStringLiteral("branch"), QStringLiteral("side"), QStringLiteral("HEAD~1")});
    QCOMPARE(pair.asked(repository.path()).week.size(), 1);
    QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
}

void TestGitMemory::whatCountsDifferentlyIsKnownByItself_data()
{
    QTest::addColumn<CountedCommits>("counted");
    QTest::addColumn<qsizetype>("commits");
    QTest::addColumn<QByteArray>("change");
    QTest::addColumn<qsizetype>("commitsAfter");
    const auto row = [](const char *name, CountedCommits counted, qsizetype commits, const char *change,
                        qsizetype after) {
        QTest::addRow("%s, %s", name, change) << counted << commits << QByteArray(change) << after;
    };
    constexpr CountedCommits mine{CountedAuthors::Me, CountedBranches::Default};
    constexpr CountedCommits all{CountedAuthors::Everyone, CountedBranches::All};
    constexpr CountedCommits mineOfAll{CountedAuthors::Me, CountedBranches::All};
    row("mine", mine, 1, "config user.email other@example.org", 0);
    row("mine", mine, 1, "branch --force main side~1", 2);
    row("all", all, 3, "branch -D side", 1);
    row("all", all, 3, "branch deep/other @{1}", 3);
    row("mine of all", mineOfAll, 3, "config --add velquarin.email other@example.org", 3);
    row("mine of all", mineOfAll, 3, "config user.email other@example.org", 0);
}

void TestGitMemory::whatCountsDifferentlyIsKnownByItself()
{
    QFETCH(const CountedCommits, counted);
    QFETCH(const QByteArray, change);
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    const auto git = [&](const QByteArray &arguments) { repository.git(QString::fromUtf8(arguments).split(u' ')); };
    git("config user.email developer@example.org");
    repository.commit(dateOf(start - 60));
    git("checkout --quiet -b side");
    repository.commit(dateOf(start - 60));
    repository.commit(dateOf(start - 60));
    git("checkout --quiet --detach main");
    static_cast<void>(pair.remembered(repository.path()));
    pair.count(counted);
    const auto first = pair.remembered(repository.path());
    QTEST(first.week.size(), "commits");
    QVERIFY(pair.processes() > 0);
    static_cast<void>(pair.remembered(repository.path()));
    QVERIFY(pair.remembered(repository.path()) == first);
    QCOMPARE(pair.processes(), 0);
    git(change);
    QTEST(pair.remembered(repository.path()).week.size(), "commitsAfter");
    QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
}

void TestGitMemory::thatThereIsNoAddressIsKnownToo()
{
    if (machineNamesAnAddress())
        QSKIP("Git knows an address everywhere on this machine.");
    Pair pair;
    pair.setNow(start);
    pair.count({CountedAuthors::Me, CountedBranches::Default});
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    for (int look = 0; look < 3; ++look)
        QVERIFY(pair.remembered(repository.path()).isEveryones);
    QCOMPARE(pair.processes(), 0);
    repository.git({QStringLiteral("config"), QStringLiteral("author.email"), QStringLiteral("you@home")});
    QVERIFY(!pair.remembered(repository.path()).isEveryones);
    QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
}

void TestGitMemory::aBranchThatComesAndGoesBetweenTheQuestionsIsNotRemembered()
{
    Pair pair;
    pair.setNow(start);
    pair.count({CountedAuthors::Everyone, CountedBranches::All});
    const TempRepository repository;
    const auto git = [&](const char *arguments) { return repository.git(QString::fromUtf8(arguments).split(u' ')); };
    repository.commit(dateOf(start - 60));
    git("checkout --quiet --detach");
    repository.commit(dateOf(start - 60));
    const auto commit = git("rev-parse HEAD");
    git("checkout --quiet main");
    int logs = 0;
    pair.runner.meanwhile = [&](const QString &asked, const ProcessOutput &output) {
        if (asked == QLatin1String("config"))
            repository.write(QStringLiteral(".git/refs/heads/brief"), commit);
        if (asked == QLatin1String("log") && ++logs == 3)
            QFile::remove(repository.file(QStringLiteral(".git/refs/heads/brief")));
        return output;
    };
    static_cast<void>(pair.remembered(repository.path()));
    pair.runner.meanwhile = {};
    QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
}

void TestGitMemory::aLongerWindowThanWasAskedForIsAsked()
{
    DaysAsked asked;
    const TempRepository repository;
    repository.commit(dateOf(start - 100 * day));
    repository.commit(dateOf(start - 60));
    QCOMPARE(asked.commits(repository, 7), 1);
    QCOMPARE(asked.commits(repository, 200), 2);
    QCOMPARE(asked.commits(repository, 7), 1);
}

// A day has two windows; a program that runs for months would else keep the logs of all its days.
void TestGitMemory::theLogsOfTwoWindowsAreKept()
{
    DaysAsked asked;
    const TempRepository repository;
    for (const int days : {170, 120, 70})
        repository.commit(dateOf(start - days * day));
    for (const int days : {200, 150, 100})
        QVERIFY(asked.processes(repository, days) > 0);
    QCOMPARE(asked.processes(repository, 150), 0);
    QVERIFY(asked.processes(repository, 200) > 0);
}

void TestGitMemory::aWindowThatMovedPastACommitIsAskedOnce()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 6 * day));
    repository.commit(dateOf(start - 60));
    QCOMPARE(pair.remembered(repository.path()).week.size(), 2);
    pair.setNow(start + day / 4);
    QCOMPARE(pair.remembered(repository.path()).week.size(), 1);
    QVERIFY(pair.processes() > 0);
    QCOMPARE(pair.remembered(repository.path()).week.size(), 1);
    QCOMPARE(pair.processes(), 0);
}

// Git takes the dates of a question for moments of the zone that it finds itself.
void TestGitMemory::aZoneThatChangesBeforeGitLooksAtItIsSeen()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 6 * day - 8 * hour));
    repository.commit(dateOf(start - 60));
    pair.runner.before = [](const QString &asked) {
        if (asked == QLatin1String("log"))
            qputenv("TZ", "Asia/Kathmandu");
    };
    QCOMPARE(pair.remembered(repository.path()).week.size(), 2);
    pair.runner.before = {};
    pair.setZone("UTC");
    QCOMPARE(pair.remembered(repository.path()).week.size(), 1);
    QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
}

void TestGitMemory::anEdgeThatPassesACommitDuringTheLookIsSeen()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 6 * day + 5));
    repository.commit(dateOf(start - 60));
    pair.runner.meanwhile = [&](const QString &asked, const ProcessOutput &output) {
        if (asked == QLatin1String("log"))
            pair.setNow(start + 10);
        return output;
    };
    QCOMPARE(pair.remembered(repository.path()).week.size(), 2);
    pair.runner.meanwhile = {};
    QCOMPARE(pair.remembered(repository.path()).week.size(), 1);
}

void TestGitMemory::aCommitThatGoesWhileTheMomentsAreListedIsSeen()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    repository.commit(dateOf(start - 6 * day + 5));
    QCOMPARE(pair.remembered(repository.path()).week.size(), 2);
    pair.setNow(start + 10);
    pair.runner.before = [&](const QString &asked) {
        if (asked == QLatin1String("rev-list"))
            repository.git({QStringLiteral("reset"), QStringLiteral("--quiet"), QStringLiteral("--hard"),
                            QStringLiteral("HEAD~1")});
    };
    QCOMPARE(pair.remembered(repository.path()).week.size(), 1);
}

void TestGitMemory::whereTheMomentsCannotBeListedThatIsTriedOnceALook()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    int lists = 0;
    pair.runner.meanwhile = [&](const QString &asked, const ProcessOutput &output) {
        const bool isList = asked == QLatin1String("rev-list");
        lists += isList ? 1 : 0;
        return isList ? ProcessOutput() : output;
    };
    for (int look = 0; look < 2; ++look)
        QCOMPARE(pair.remembered(repository.path()).week.size(), 1);
    QCOMPARE(lists, 1);
}

void TestGitMemory::theWindowsMoveWithTheClock_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const auto *const zone : {"UTC", "Asia/Kathmandu", "America/New_York"})
        QTest::newRow(zone) << QByteArray(zone);
}

void TestGitMemory::theWindowsMoveWithTheClock()
{
    QFETCH(const QByteArray, zone);
    Pair pair;
    pair.setNow(start);
    pair.setZone(zone.constData());
    const TempRepository repository;
    repository.commit(dateOf(start));
    for (const qint64 days : {6, 7, 8, 730, 731}) {
        for (const qint64 beside : {-10 * hour, qint64(-1), qint64(0), qint64(1), 6 * hour}) {
            pair.setNow(start + days * day + beside);
            QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
        }
    }
}

void TestGitMemory::aCommitOfTheFutureComesIntoSight()
{
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    repository.commit(dateOf(start + 30 * hour));
    QCOMPARE(pair.remembered(repository.path()).years.size(), 1);
    for (int hours = 1; hours < 9; ++hours) {
        pair.setNow(start + hours * hour);
        QVERIFY(pair.remembered(repository.path()) == pair.asked(repository.path()));
    }
    QCOMPARE(pair.remembered(repository.path()).years.size(), 2);
}

void TestGitMemory::referencesThatAreWrittenTwiceInOneStepOfTheirTimesAreSeen()
{
    Pair pair(std::make_unique<CoarseTree>());
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 60));
    const auto older = repository.git({QStringLiteral("rev-parse"), QStringLiteral("HEAD")}).trimmed();
    repository.commit(dateOf(start - 60));
    const auto newer = repository.git({QStringLiteral("rev-parse"), QStringLiteral("HEAD")}).trimmed();
    repository.git({QStringLiteral("pack-refs"), QStringLiteral("--all")});
    const auto packed = repository.file(QStringLiteral(".git/packed-refs"));
    auto content = readFile(packed);
    QCOMPARE(pair.remembered(repository.path()).week.size(), 2);
    // Most pairs of these lie in one step.
    for (int turn = 0; turn < 8; ++turn) {
        const bool isOlder = turn % 2 == 0;
        content.replace(isOlder ? newer : older, isOlder ? older : newer);
        writeFile(packed, content);
        QCOMPARE(pair.remembered(repository.path()).week.size(), isOlder ? 1 : 2);
    }
}

void TestGitMemory::anotherRepositoryInItsPlaceIsSeen_data()
{
    QTest::addColumn<QStringList>("command");
    const auto row = [](const char *name, const char *command) {
        QTest::newRow(name) << QStringList{QStringLiteral("sh"), QStringLiteral("-ec"), QString::fromLatin1(command)};
    };
    row("another one", "mv repo gone; mv other repo");
    row("a backup with the times of then", "rm -r repo; cp -a backup repo");
    row("a backup over it", "cp -a backup/. repo; touch -r backup/.git/refs/heads/main repo/.git/refs/heads/main");
    row("a clone", "rm -r repo; git clone -q other repo");
    row("a link to another one", "mv repo gone; ln -s other repo");
    row("nothing", "mv repo gone");
    row("a folder", "mv repo gone; mkdir repo");
}

void TestGitMemory::anotherRepositoryInItsPlaceIsSeen()
{
    QFETCH(const QStringList, command);
    Pair pair;
    pair.setNow(start);
    const TempRepository repository;
    repository.commit(dateOf(start - 2 * day));
    const auto folder = repository.file(QStringLiteral(".."));
    const auto run = [&](const QStringList &what) {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("GIT_CONFIG_GLOBAL"), QStringLiteral("/dev/null"));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder);
        process.start(what.first(), what.mid(1));
        return process.waitForFinished(-1) && process.exitCode() == 0;
    };
    QVERIFY(run({QStringLiteral("cp"), QStringLiteral("-a"), QStringLiteral("repo"), QStringLiteral("backup")}));
    QVERIFY(run({QStringLiteral("git"), QStringLiteral("clone"), QStringLiteral("--quiet"), QStringLiteral("repo"),
                 QStringLiteral("other")}));
    repository.commit(dateOf(start - day));
    QCOMPARE(pair.remembered(repository.path()).week.size(), 2);
    QVERIFY(run(command));
    const auto remembered = pair.remembered(repository.path());
    QVERIFY(remembered == pair.asked(repository.path()));
    QVERIFY(remembered.week.size() < 2);
}

void TestGitMemory::aRepositoryThatIsClonedAgainWhileItIsReadIsNotMixedUp()
{
    const TempRepository upstream;
    upstream.commit(dateOf(start - 2 * day));
    for (const auto *const command : {"rev-parse", "symbolic-ref", "branch", "config", "log", "rev-list"}) {
        Pair pair;
        pair.setNow(start);
        const TempRepository repository;
        repository.commit(dateOf(start - day));
        repository.commit(dateOf(start - 60));
        pair.runner.meanwhile = [&](const QString &asked, const ProcessOutput &output) {
            if (asked == QLatin1String(command)) {
                QDir(repository.path()).removeRecursively();
                RealGit(QDir::tempPath())
                    .run({QStringLiteral("clone"), QStringLiteral("--quiet"), upstream.path(), repository.path()});
            }
            return output;
        };
        for (int look = 0; look < 2; ++look)
            static_cast<void>(pair.remembered(repository.path()));
        pair.runner.meanwhile = {};
        QVERIFY2(pair.remembered(repository.path()) == pair.asked(repository.path()), command);
    }
}

void TestGitMemory::answersAsGitWouldWhateverHappens_data()
{
    QTest::addColumn<std::uint32_t>("seed");
    QTest::addColumn<int>("steps");
    QTest::newRow("every day") << std::uint32_t(20261122) << 300;
    // Of each seed some hundred, since what happens leaves less and less to happen to.
    constexpr int ofEach = 700;
    const auto steps = wholeRun() ? std::max(4 * ofEach, qEnvironmentVariableIntValue("VELQUARIN_STEPS")) : 0;
    const auto first = seedOfRun(0);
    for (int more = 0; more * ofEach < steps; ++more)
        QTest::addRow("seed %u", first + std::uint32_t(more)) << first + std::uint32_t(more) << ofEach;
}

void TestGitMemory::answersAsGitWouldWhateverHappens()
{
    QFETCH(const std::uint32_t, seed);
    QFETCH(const int, steps);
    Pair pair;
    pair.setNow(start);
    Village village(pair, seed);
    int comparisons = 0;
    int withoutProcess = 0;
    for (int step = 0; step < steps; ++step) {
        const auto what = village.happen();
        for (const auto &path : {village.touched(), village.any(), village.any()}) {
            // Forwards, so that edges pass what is remembered.
            pair.setNow(pair.now() + step % 3);
            const auto remembered = pair.remembered(path);
            ++comparisons;
            withoutProcess += pair.processes() == 0 ? 1 : 0;
            if (remembered != pair.asked(path))
                QFAIL(qPrintable(QStringLiteral("step %1, after %2: %3").arg(step).arg(what, path)));
        }
    }
    qInfo("%d of %d answers without a process", withoutProcess, comparisons);
    QVERIFY(withoutProcess * 20 > comparisons);
}

VELQUARIN_TEST(TestGitMemory)
#include "tst_gitmemory.moc"
