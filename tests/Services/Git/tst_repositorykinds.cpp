// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "hostile/Readings.h"
#include "support/Files.h"
#include "support/GitVersion.h"
#include "support/Strict.h"
#include "support/TempRepository.h"
#include "support/TestProgram.h"

#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <map>
#include <memory>
#include <unistd.h>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const QByteArray sevenCommits = [] {
    QByteArray stream;
    // 2022-05-01, 2023-12-31 in Kiribati, 2024-03-01, 2024-03-05 twice, 2024-03-06 in New York, 2024-03-07
    for (const char *date : {"1651399200 +0000", "1703944800 +1400", "1709287200 +0000", "1709632800 +0100",
                             "1709636400 +0100", "1709778600 -0500", "1709805600 +0530"})
        stream += QByteArray("commit refs/heads/main\nauthor A <a@example.org> ") + date +
                  "\ncommitter A <a@example.org> " + date + "\ndata 1\nx\nM 644 inline folder/file\ndata <<E\n" + date +
                  "\nE\n\n";
    return stream;
}();

QStringList words(const char *command)
{
    return QString::fromLatin1(command).split(u' ');
}

struct Kind
{
    const char *name;
    std::function<QString(const TempRepository &)> make;  //!< gives the path to read
    const char *branch = "main";
    qsizetype commits = 7;
    QVersionNumber since = {};  //!< the first version of git that can make it
};

std::function<QString(const TempRepository &)> after(const QList<const char *> &commands)
{
    return [=](const TempRepository &repository) {
        for (const char *command : commands)
            repository.git(words(command));
        return repository.path();
    };
}

std::function<QString(const TempRepository &)> at(const char *name, const QList<const char *> &commands)
{
    return [=](const TempRepository &repository) {
        after(commands)(repository);
        return repository.file(QLatin1String(name));
    };
}

QString submodule(const TempRepository &repository)
{
    repository.git(words("init --quiet super"));
    RealGit(repository.file(QStringLiteral("super")))
        .run({QStringLiteral("-c"), QStringLiteral("protocol.file.allow=always"), QStringLiteral("submodule"),
              QStringLiteral("--quiet"), QStringLiteral("add"), repository.path(), QStringLiteral("part")});
    return repository.file(QStringLiteral("super/part"));
}

QString shallowClone(const TempRepository &repository)
{
    const auto source = QStringLiteral("file://") + repository.path();
    repository.git(words("clone --quiet --depth 3") + QStringList{source, QStringLiteral("clone")});
    return repository.file(QStringLiteral("clone"));
}

// Without the files' contents, and with nobody to ask for them.
QString partialClone(const TempRepository &repository)
{
    repository.git(words("config uploadpack.allowFilter true"));
    const auto source = QStringLiteral("file://") + repository.path();
    repository.git(words("clone --quiet --no-checkout --filter=blob:none") +
                   QStringList{source, QStringLiteral("clone")});
    repository.git(words("-C clone remote set-url origin file:///no/such/place"));
    return repository.file(QStringLiteral("clone"));
}

QString withMailmap(const TempRepository &repository)
{
    repository.write(QStringLiteral(".mailmap"), "B <b@example.org> <a@example.org>\n");
    return repository.path();
}

std::function<QString(const TempRepository &)> ofItsOwnKind(const char *options)
{
    return [=](const TempRepository &repository) {
        repository.git(words("init --quiet --initial-branch=main") + words(options) + words("new"));
        RealGit(repository.file(QStringLiteral("new"))).run(words("fast-import --quiet"), sevenCommits);
        return repository.file(QStringLiteral("new"));
    };
}

// What is left at the usual place is of no account.
QString withRefsElsewhere(const TempRepository &repository)
{
    const auto place = repository.file(QStringLiteral("elsewhere"));
    QDir().mkpath(place + QStringLiteral("/refs/heads"));
    for (const char *name : {"HEAD", "refs/heads/main"})
        QFile::copy(repository.file(QStringLiteral(".git/") + QLatin1String(name)), place + u'/' + QLatin1String(name));
    repository.git(words("update-ref refs/heads/main main~3"));
    repository.git(words("config core.repositoryFormatVersion 1"));
    repository.git(words("config extensions.refStorage") + QStringList{QStringLiteral("files://") + place});
    return repository.path();
}

QString linkTo(const TempRepository &repository)
{
    auto link = repository.path() + QStringLiteral("-link");
    QFile::link(repository.path(), link);
    return link;
}

QString inAnotherEncoding(const TempRepository &repository)
{
    RealGit git(repository.path());
    git.set("GIT_COMMITTER_DATE", QStringLiteral("2024-03-07T11:00:00Z"));
    git.set("GIT_AUTHOR_DATE", QStringLiteral("2024-03-07T11:00:00Z"));
    git.run(words("-c i18n.commitEncoding=ISO-8859-1 commit --quiet --allow-empty --file=-"), "gr\xfc\xdf");
    return repository.path();
}

QList<Kind> kinds()
{
    const QVersionNumber refTables(2, 45);
    const QVersionNumber refsAtAnyPlace(2, 54);
    return {
        {"a plain repository", after({})},
        {"packed refs", after({"pack-refs --all"})},
        {"everything packed", after({"gc --quiet"})},
        {"a commit graph", after({"commit-graph write --reachable"})},
        {"an index of packs", after({"repack -adq", "multi-pack-index write"})},
        {"a clone", at("clone", {"clone --quiet . clone"})},
        {"a clone whose own branch was renamed", at("clone", {"clone --quiet . clone", "-C clone branch -m trunk"}),
         "main", 0},
        {"a shallow clone", shallowClone, "main", 3},
        {"a partial clone", partialClone},
        {"a linked worktree", at("tree", {"worktree add --quiet -b side tree main~2"})},
        {"a submodule", submodule},
        {"a bare repository", at("bare", {"clone --quiet --bare . bare"})},
        {"hashes of the new kind", ofItsOwnKind("--object-format=sha256")},
        {"refs in tables", ofItsOwnKind("--ref-format=reftable"), "main", 7, refTables},
        {"refs in tables and hashes of the new kind", ofItsOwnKind("--ref-format=reftable --object-format=sha256"),
         "main", 7, refTables},
        {"a clone with refs in tables", at("clone", {"clone --quiet --ref-format=reftable . clone"}), "main", 7,
         refTables},
        {"a linked worktree beside refs in tables",
         at("tree", {"clone --quiet --ref-format=reftable . clone", "-C clone worktree add --quiet -b side ../tree"}),
         "main", 7, refTables},
        {"a bare repository with refs in tables", at("bare", {"clone --quiet --bare --ref-format=reftable . bare"}),
         "main", 7, refTables},
        {"refs kept elsewhere", withRefsElsewhere, "main", 7, refsAtAnyPlace},
        {"a replaced commit", after({"replace --graft main main~3"}), "main", 5},
        {"a detached head", after({"checkout --quiet --detach main~1"})},
        {"a branch of another name", after({"branch -m trunk"}), "HEAD"},
        {"master", after({"branch -m master"}), "master"},
        {"a tag named like the branch", after({"tag main main~1"}), "main", 6},
        {"a folder inside a repository", at("folder", {"checkout --quiet --force"})},
        {"a link to a repository", linkTo},
        {"a mailmap in the work tree", withMailmap},
        {"a commit in another encoding", inAnotherEncoding, "main", 8},
    };
}

// A repository of one kind, and the path to read.
struct Made
{
    explicit Made(const Kind &kind)
    {
        repository.git(words("fast-import --quiet"), sevenCommits);
        path = kind.make(repository);
    }

    TempRepository repository;
    QString path;
};

QStringList days(const QList<Instant> &instants, const Calendar &calendar)
{
    QStringList texts;
    for (const auto instant : instants)
        texts << calendar.dateOf(instant).toString(Qt::ISODate);
    return texts;
}

// What git prints when it is asked by hand; a revision that it does not know gives nothing.
QString byHand(const QString &path, const QStringList &arguments)
{
    try {
        return QString::fromUtf8(RealGit(path).run(arguments)).trimmed();
    } catch (const std::runtime_error &) {
        return {};
    }
}

QStringList daysByHand(const QString &path, const QString &branch, const char *since)
{
    const auto output =
        byHand(path, {QStringLiteral("log"), branch, QStringLiteral("--format=%ad"), QStringLiteral("--date=short"),
                      QStringLiteral("--since=") + QLatin1String(since), QStringLiteral("--until=2024-03-08")});
    return output.split(u'\n', Qt::SkipEmptyParts);
}

QMap<QString, qint64> counted(const QStringList &days)
{
    QMap<QString, qint64> counts;
    for (const auto &day : days)
        ++counts[day];
    return counts;
}

QMap<QString, qint64> counted(const DayCounts &history, const Calendar &calendar)
{
    QMap<QString, qint64> counts;
    for (const auto &[day, count] : history.asKeyValueRange())
        counts.insert(calendar.dateOf(day).toString(Qt::ISODate), count);
    return counts;
}

std::optional<Instant> instantOf(const QString &text)
{
    const auto moment = QDateTime::fromString(text, Qt::ISODate);
    return moment.isValid() ? std::optional(Instant(std::chrono::milliseconds(moment.toMSecsSinceEpoch())))
                            : std::nullopt;
}

}  // namespace

class TestRepositoryKinds : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void figuresAreThoseOfGitByHandFor_data();
    void figuresAreThoseOfGitByHandFor();
    void theUsersCommitsOnAllBranchesAreThoseOfGitByHandFor_data() { figuresAreThoseOfGitByHandFor_data(); }
    void theUsersCommitsOnAllBranchesAreThoseOfGitByHandFor();
    void nothingChangesIn_data() { figuresAreThoseOfGitByHandFor_data(); }
    void nothingChangesIn();
    void whatBelongsToSomebodyElseIsNotRead();

private:
    const Made *made(int index);

    std::map<int, std::unique_ptr<Made>> m_made;
};

// Each serves all tests: to read changes nothing, and there is a test for that. Nothing where git cannot make it.
const Made *TestRepositoryKinds::made(int index)
{
    auto &made = m_made[index];
    const auto kind = kinds().at(index);
    if (!made && gitVersion() >= kind.since)
        made = std::make_unique<Made>(kind);
    return made.get();
}

void TestRepositoryKinds::figuresAreThoseOfGitByHandFor_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const auto &kind : kinds())
        QTest::newRow(kind.name) << index++;
}

void TestRepositoryKinds::figuresAreThoseOfGitByHandFor()
{
    QFETCH(int, index);
    const auto kind = kinds().at(index);
    if (!made(index))
        QSKIP("This git is too old to make one.");
    const auto path = made(index)->path;
    const auto branch = QLatin1String(kind.branch);

    SystemService service(Confinement::Wanted);
    const auto calendar = service.clock.calendar();
    const auto commits = await(getCommits(service.git, path, instant("2022-03-08T00:00:00Z"), service.clock.now()));
    QCOMPARE(await(getDefaultBranch(service.git, path)), branch);
    QCOMPARE(commits.size(), kind.commits);
    QCOMPARE(days(commits, calendar), daysByHand(path, branch, "2022-03-08"));
    QCOMPARE(counted(await(getCommitHistory(service.git, path, 7)), calendar),
             counted(daysByHand(path, branch, "2024-03-01")));
    QCOMPARE(
        await(getLastCommitDate(service.git, path)),
        instantOf(byHand(path, {QStringLiteral("log"), branch, QStringLiteral("-1"), QStringLiteral("--format=%aI")})));
}

// The one author of all kinds is the user; a mailmap says otherwise.
void TestRepositoryKinds::theUsersCommitsOnAllBranchesAreThoseOfGitByHandFor()
{
    QFETCH(int, index);
    if (!made(index))
        QSKIP("This git is too old to make one.");
    const auto path = made(index)->path;
    const QTemporaryDir home;
    writeFile(home.filePath(QStringLiteral(".gitconfig")), "[user]\n\temail = A@example.ORG\n");
    const auto before = qgetenv("HOME");
    const QScopeGuard restore([&before] { qputenv("HOME", before); });
    qputenv("HOME", QFile::encodeName(home.path()));
    SystemService service(Confinement::Wanted);
    const auto calendar = service.clock.calendar();
    const auto since = instant("2022-03-08T00:00:00Z");
    for (const auto authors : {CountedAuthors::Me, CountedAuthors::Everyone}) {
        const QString filter =
            authors == CountedAuthors::Me ? QStringLiteral("--author=<a@example.org>") : QStringLiteral("--no-merges");
        const auto output =
            byHand(path, {QStringLiteral("-c"), QStringLiteral("log.mailmap=false"), QStringLiteral("log"),
                          QStringLiteral("--ignore-missing"), QStringLiteral("--branches"), QStringLiteral("HEAD"),
                          QStringLiteral("--format=%ad"), QStringLiteral("--date=short"),
                          QStringLiteral("--since=2022-03-08"), QStringLiteral("--until=2024-03-08"), filter});
        service.count({authors, CountedBranches::All});
        for (int turn = 0; turn < 2; ++turn)
            QCOMPARE(days(await(getCommits(service.git, path, since, service.clock.now())), calendar),
                     output.split(u'\n', Qt::SkipEmptyParts));
    }
}

void TestRepositoryKinds::nothingChangesIn()
{
    QFETCH(int, index);
    if (!made(index))
        QSKIP("This git is too old to make one.");
    const auto &[repository, path] = *made(index);
    const auto before = snapshotOf(repository.path());
    SystemService service(Confinement::Missing);
    QVERIFY(figuresOf(service, path));
    const auto difference = firstDifference(before, snapshotOf(repository.path()));
    QVERIFY2(difference.isEmpty(), difference.constData());
}

// Git refuses to read what another user prepared, and nothing in its surroundings talks it out of that.
void TestRepositoryKinds::whatBelongsToSomebodyElseIsNotRead()
{
    if (geteuid() != 0)
        QSKIP("Only the administrator can give a folder away.");
    constexpr uid_t nobody = 65534;
    const TempRepository repository;
    repository.git(words("fast-import --quiet"), sevenCommits);
    SystemService service(Confinement::Missing);
    QVERIFY(await(getLastCommitDate(service.git, repository.path())).has_value());
    for (const auto &path : {repository.path(), repository.file(QStringLiteral(".git"))})
        QCOMPARE(chown(QFile::encodeName(path).constData(), nobody, nobody), 0);
    QVERIFY(!await(getLastCommitDate(service.git, repository.path())).has_value());
}

VELQUARIN_TEST(TestRepositoryKinds)
#include "tst_repositorykinds.moc"
