// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/RepositoryScan.h"

#include "Platform/Linux/Files/PosixFileTree.h"
#include "support/Extent.h"
#include "support/OrdinaryUser.h"
#include "support/OtherTimes.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <ctime>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// Real folders below one that goes with the object.
class Tree
{
public:
    [[nodiscard]] QString path(const QString &name = {}) const
    {
        return name.isEmpty() ? m_folder.path() : m_folder.path() + u'/' + name;
    }
    void folder(const QString &name) const { QVERIFY(QDir().mkpath(path(name))); }
    void repository(const QString &name) const { folder(name + QStringLiteral("/.git")); }
    void file(const QString &name) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    void link(const QString &target, const QString &name) const { QVERIFY(QFile::link(target, path(name))); }

    //! What is found, relative to the folder, sorted: no file system promises an order.
    [[nodiscard]] QString found(qint64 maxDepth = 5, const QString &start = {}) const
    {
        KnownFolder nothing;
        return foundAgain(PosixFileTree(), nothing, maxDepth, start);
    }

    //! The same by a search that knows what the last one knew.
    [[nodiscard]] QString foundAgain(const FileTree &files, KnownFolder &known, qint64 maxDepth = 5,
                                     const QString &start = {}) const
    {
        const std::atomic<bool> isCancelled = false;
        auto paths = scanForRepositories(files, path(start), maxDepth, isCancelled, known);
        for (auto &found : paths)
            found = found == path() ? QStringLiteral(".") : found.mid(path().size() + 1);
        paths.sort();
        return paths.join(u' ');
    }

private:
    QTemporaryDir m_folder;
};

class CountingTree : public AgedTree
{
public:
    bool visit(const std::string &path, const Visitor &visitor) const override
    {
        ++visits;
        return AgedTree::visit(path, visitor);
    }

    std::optional<FileStatus> status(const std::string &path, Links links) const override
    {
        ++looks;
        return AgedTree::status(path, links);
    }

    std::optional<FolderIdentity> folderAt(const std::string &path) const override
    {
        askedFor << QString::fromStdString(path);
        return AgedTree::folderAt(path);
    }

    mutable int visits = 0;
    mutable int looks = 0;
    mutable QStringList askedFor;
};

// As some that are made in a program have it.
class TimelessTree : public OtherTimes
{
private:
    [[nodiscard]] std::int64_t other(std::int64_t /*nanoseconds*/) const override { return 0; }
};

// Changes of folders within one step of the kernel's clock have the same time; the steps are milliseconds.
void awaitNextTime()
{
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_REALTIME_COARSE, &time);
        return std::pair(time.tv_sec, time.tv_nsec);
    };
    const auto before = now();
    while (now() == before) {
    }
}

// Something happens to one of a few folders in each other.
void happenIn(const Tree &tree, std::mt19937 &random)
{
    const auto number = [&](std::uint32_t below) { return random() % below; };
    const auto place = [&] {
        QStringList names;
        for (auto depth = 1 + number(3); depth > 0; --depth)
            names << QStringLiteral("abc").mid(qsizetype(number(3)), 1);
        return names.join(u'/');
    };
    const auto name = place();
    switch (number(7)) {
    case 0:
    case 1:
        QDir(tree.path()).mkpath(name);
        break;
    case 2:
        QDir(tree.path(name)).removeRecursively();
        break;
    case 3:
        QDir().rename(tree.path(name), tree.path(place()));
        break;
    case 4:
        QDir(tree.path(name)).mkdir(QStringLiteral(".git"));
        break;
    case 5:
        QDir(tree.path(name)).rmdir(QStringLiteral(".git"));
        break;
    default:
        QFile::link(tree.path(place()), tree.path(name));
    }
}

}  // namespace

class TestRepositoryScan : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aStartThatIsARepositoryIsAllThereIs();
    void repositoriesAreFoundOneLevelAboveTheDepth();
    void aDepthOfNoughtOrLessFindsNothing();
    void generatedFoldersHideWhatIsInThem_data();
    void generatedFoldersHideWhatIsInThem();
    void hiddenFoldersAreNotEntered();
    void nothingInsideARepositoryIsFound();
    void aFileNamedGitMarksARepository();
    void aDanglingLinkNamedGitMarksNothing();
    void aLinkNamedGitToAFolderMarksARepository();
    void linksToFoldersAreFollowed();
    void aLinkBackToAFolderOnTheWayIsNotEntered();
    void linksToEachOtherEnd();
    void aFolderThatHoldsTheStartIsSearchedWithoutTheStart();
    void aLinkBelowTheDepthIsNotFollowed();
    void aFolderThatIsLinkedTwiceIsFoundTwice();
    void linksToFilesAndDanglingLinksAreSkipped();
    void aMissingStartFindsNothing();
    void aFileAsStartFindsNothing();
    void theStartKeepsItsTrailingSlash();
    void everyPathComesOnce();
    void parentsComeBeforeTheirChildrensSiblings();
    void namesThatAreNotUtf8ArePassedOver();
    void foldersThatCannotBeListedArePassedOver();
    void aFolderThatCannotBeEnteredIsNoRepository();
    void aCancelledScanEnds();
    void aSearchThatKeepsNothingAsksForNoTimes();
    void whatDidNotChangeIsNotReadAgain();
    void aChangeInTheSameStepOfTheTimesIsSeen();
    void whereThereAreNoTimesEverythingIsRead();
    void aLinkNamedGitThatComesAliveIsSeen();
    void whatACancelledScanLeftOutIsReadByTheNext();
    void findsWhatIsThereWhateverHappened();
};

void TestRepositoryScan::aStartThatIsARepositoryIsAllThereIs()
{
    const Tree tree;
    tree.repository(QString());
    tree.repository(QStringLiteral("inner"));
    QCOMPARE(tree.found(1), QStringLiteral("."));
    QCOMPARE(tree.found(), QStringLiteral("."));
}

void TestRepositoryScan::repositoriesAreFoundOneLevelAboveTheDepth()
{
    const Tree tree;
    tree.repository(QStringLiteral("1/2/3/four"));
    tree.repository(QStringLiteral("1/2/3/4/five"));
    QCOMPARE(tree.found(5), QStringLiteral("1/2/3/four"));
    QCOMPARE(tree.found(6), QStringLiteral("1/2/3/4/five 1/2/3/four"));
    QCOMPARE(tree.found(4), QString());
}

void TestRepositoryScan::aDepthOfNoughtOrLessFindsNothing()
{
    const Tree tree;
    tree.repository(QString());
    QCOMPARE(tree.found(0), QString());
    QCOMPARE(tree.found(-1), QString());
    QCOMPARE(tree.found(std::numeric_limits<qint64>::min()), QString());
}

void TestRepositoryScan::generatedFoldersHideWhatIsInThem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isHidden");
    for (const auto &name : {"node_modules", "Pods", "build", "DerivedData"})
        QTest::newRow(name) << QString::fromLatin1(name) << true;
    for (const auto &name : {"Build", "builds", "pods", "node_module", "deriveddata", "Node_Modules"})
        QTest::newRow(name) << QString::fromLatin1(name) << false;
}

void TestRepositoryScan::generatedFoldersHideWhatIsInThem()
{
    QFETCH(QString, name);
    QFETCH(bool, isHidden);
    const Tree tree;
    tree.repository(name + QStringLiteral("/repo"));
    QCOMPARE(tree.found(), isHidden ? QString() : name + QStringLiteral("/repo"));
}

void TestRepositoryScan::hiddenFoldersAreNotEntered()
{
    const Tree tree;
    tree.repository(QStringLiteral(".cache/repo"));
    tree.repository(QStringLiteral("..odd/repo"));
    QCOMPARE(tree.found(), QString());
    QCOMPARE(tree.found(5, QStringLiteral(".cache")), QStringLiteral(".cache/repo"));
}

void TestRepositoryScan::nothingInsideARepositoryIsFound()
{
    const Tree tree;
    tree.repository(QStringLiteral("outer"));
    tree.repository(QStringLiteral("outer/inner"));
    QCOMPARE(tree.found(), QStringLiteral("outer"));
}

void TestRepositoryScan::aFileNamedGitMarksARepository()
{
    const Tree tree;
    tree.folder(QStringLiteral("worktree"));
    tree.file(QStringLiteral("worktree/.git"));
    QCOMPARE(tree.found(), QStringLiteral("worktree"));
}

void TestRepositoryScan::aDanglingLinkNamedGitMarksNothing()
{
    const Tree tree;
    tree.folder(QStringLiteral("folder"));
    tree.link(QStringLiteral("/no such place"), QStringLiteral("folder/.git"));
    QCOMPARE(tree.found(), QString());
}

void TestRepositoryScan::aLinkNamedGitToAFolderMarksARepository()
{
    const Tree tree;
    tree.folder(QStringLiteral("folder"));
    tree.link(tree.path(), QStringLiteral("folder/.git"));
    QCOMPARE(tree.found(), QStringLiteral("folder"));
}

void TestRepositoryScan::linksToFoldersAreFollowed()
{
    const Tree tree;
    const Tree elsewhere;
    elsewhere.repository(QStringLiteral("repo"));
    tree.link(elsewhere.path(), QStringLiteral("link"));
    tree.link(elsewhere.path(QStringLiteral("repo")), QStringLiteral("other"));
    QCOMPARE(tree.found(), QStringLiteral("link/repo other"));
}

void TestRepositoryScan::aLinkBackToAFolderOnTheWayIsNotEntered()
{
    const Tree tree;
    tree.repository(QStringLiteral("group/repo"));
    tree.link(tree.path(), QStringLiteral("loop"));
    tree.link(tree.path(), QStringLiteral("group/up"));
    tree.link(QStringLiteral("."), QStringLiteral("group/same"));
    QCOMPARE(tree.found(8), QStringLiteral("group/repo"));
}

void TestRepositoryScan::linksToEachOtherEnd()
{
    const Tree tree;
    for (const auto &name : {"a", "b"})
        tree.repository(QLatin1String(name) + QStringLiteral("/repo"));
    tree.link(tree.path(QStringLiteral("b")), QStringLiteral("a/to b"));
    tree.link(tree.path(QStringLiteral("a")), QStringLiteral("b/to a"));
    QCOMPARE(tree.found(8), QStringLiteral("a/repo a/to b/repo b/repo b/to a/repo"));
}

// No link names the start again, but what lies behind one leads to it.
void TestRepositoryScan::aFolderThatHoldsTheStartIsSearchedWithoutTheStart()
{
    const Tree tree;
    tree.repository(QStringLiteral("start/repo"));
    tree.repository(QStringLiteral("beside"));
    tree.link(tree.path(), QStringLiteral("start/out"));
    QCOMPARE(tree.found(8, QStringLiteral("start")), QStringLiteral("start/out/beside start/repo"));
}

// It may lead to a disk that does not answer.
void TestRepositoryScan::aLinkBelowTheDepthIsNotFollowed()
{
    const Tree tree;
    tree.folder(QStringLiteral("a"));
    tree.repository(QStringLiteral("far"));
    tree.link(tree.path(QStringLiteral("far")), QStringLiteral("a/link"));
    const CountingTree files;
    KnownFolder known;
    QCOMPARE(tree.foundAgain(files, known, 2), QStringLiteral("far"));
    QCOMPARE(files.askedFor, QStringList());
    KnownFolder deeper;
    QCOMPARE(tree.foundAgain(files, deeper, 3), QStringLiteral("a/link far"));
    QVERIFY(files.askedFor.contains(tree.path(QStringLiteral("a/link"))));
}

void TestRepositoryScan::aFolderThatIsLinkedTwiceIsFoundTwice()
{
    const Tree tree;
    tree.repository(QStringLiteral("group/repo"));
    tree.link(tree.path(QStringLiteral("group")), QStringLiteral("again"));
    QCOMPARE(tree.found(8), QStringLiteral("again/repo group/repo"));
}

void TestRepositoryScan::linksToFilesAndDanglingLinksAreSkipped()
{
    const Tree tree;
    tree.file(QStringLiteral("file"));
    tree.link(tree.path(QStringLiteral("file")), QStringLiteral("to file"));
    tree.link(QStringLiteral("/no such place"), QStringLiteral("dangling"));
    QCOMPARE(tree.found(), QString());
}

void TestRepositoryScan::aMissingStartFindsNothing()
{
    const Tree tree;
    QCOMPARE(tree.found(5, QStringLiteral("missing")), QString());
}

void TestRepositoryScan::aFileAsStartFindsNothing()
{
    const Tree tree;
    tree.file(QStringLiteral("file"));
    QCOMPARE(tree.found(5, QStringLiteral("file")), QString());
}

void TestRepositoryScan::theStartKeepsItsTrailingSlash()
{
    const Tree tree;
    tree.repository(QStringLiteral("repo"));
    const std::atomic<bool> isCancelled = false;
    const auto start = tree.path() + u'/';
    QCOMPARE(scanForRepositories(PosixFileTree(), start, 5, isCancelled),
             QStringList{tree.path(QStringLiteral("repo"))});
    const auto repository = tree.path(QStringLiteral("repo/"));
    QCOMPARE(scanForRepositories(PosixFileTree(), repository, 5, isCancelled), QStringList{repository});
}

void TestRepositoryScan::everyPathComesOnce()
{
    const Tree tree;
    for (int number = 0; number < 50; ++number)
        tree.repository(QStringLiteral("group%1/repo%2").arg(number % 5).arg(number));
    const std::atomic<bool> isCancelled = false;
    auto paths = scanForRepositories(PosixFileTree(), tree.path(), 5, isCancelled);
    QCOMPARE(paths.size(), 50);
    QCOMPARE(paths.removeDuplicates(), 0);
}

// Depth first: the walk is through with one folder before it begins the next.
void TestRepositoryScan::parentsComeBeforeTheirChildrensSiblings()
{
    const Tree tree;
    for (const auto &name : {"a/1", "a/2", "b/1", "b/2", "c/1", "c/2"})
        tree.repository(QLatin1String(name));
    const std::atomic<bool> isCancelled = false;
    const auto paths = scanForRepositories(PosixFileTree(), tree.path(), 5, isCancelled);
    QCOMPARE(paths.size(), 6);
    for (int index = 0; index < 6; index += 2)
        QCOMPARE(QFileInfo(paths.at(index)).path(), QFileInfo(paths.at(index + 1)).path());
}

void TestRepositoryScan::namesThatAreNotUtf8ArePassedOver()
{
    const Tree tree;
    const auto odd = QFile::encodeName(tree.path()).toStdString() + "/bad\xff";
    QCOMPARE(mkdir(odd.c_str(), 0700), 0);
    QCOMPARE(mkdir((odd + "/.git").c_str(), 0700), 0);
    tree.repository(QStringLiteral("emoji \U0001F525"));
    tree.repository(QStringLiteral("new\nline"));
    tree.repository(QStringLiteral("-dash"));
    QCOMPARE(tree.found(), QStringLiteral("-dash emoji \U0001F525 new\nline"));
    // The temporary folder cannot remove what it cannot name.
    QCOMPARE(rmdir((odd + "/.git").c_str()) + rmdir(odd.c_str()), 0);
}

void TestRepositoryScan::foldersThatCannotBeListedArePassedOver()
{
    const Tree tree;
    const AsOrdinaryUser ordinary(tree.path());
    tree.repository(QStringLiteral("denied/repo"));
    tree.repository(QStringLiteral("closed"));
    tree.repository(QStringLiteral("open/repo"));
    QFile::setPermissions(tree.path(QStringLiteral("denied")), {});
    QFile::setPermissions(tree.path(QStringLiteral("closed")), QFile::ExeOwner);
    QCOMPARE(tree.found(), QStringLiteral("closed open/repo"));
    QFile::setPermissions(tree.path(QStringLiteral("denied")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile::setPermissions(tree.path(QStringLiteral("closed")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// Its names can be listed, but git could not read what they stand for either.
void TestRepositoryScan::aFolderThatCannotBeEnteredIsNoRepository()
{
    const Tree tree;
    const AsOrdinaryUser ordinary(tree.path());
    tree.repository(QStringLiteral("listed"));
    tree.repository(QStringLiteral("open"));
    QFile::setPermissions(tree.path(QStringLiteral("listed")), QFile::ReadOwner);
    QCOMPARE(tree.found(), QStringLiteral("open"));
    QFile::setPermissions(tree.path(QStringLiteral("listed")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void TestRepositoryScan::aCancelledScanEnds()
{
    const Tree tree;
    tree.repository(QStringLiteral("repo"));
    const std::atomic<bool> isCancelled = true;
    QVERIFY(scanForRepositories(PosixFileTree(), tree.path(), 5, isCancelled).isEmpty());
}

void TestRepositoryScan::aSearchThatKeepsNothingAsksForNoTimes()
{
    const Tree tree;
    tree.repository(QStringLiteral("a/repo"));
    const CountingTree files;
    const std::atomic<bool> isCancelled = false;
    QCOMPARE(scanForRepositories(files, tree.path(), 16, isCancelled).size(), 1);
    QCOMPARE(files.looks, 0);
    KnownFolder known;
    QCOMPARE(scanForRepositories(files, tree.path(), 16, isCancelled, known).size(), 1);
    QVERIFY(files.looks > 0);
}

void TestRepositoryScan::whatDidNotChangeIsNotReadAgain()
{
    const Tree tree;
    tree.folder(QStringLiteral("a/b/c"));
    tree.repository(QStringLiteral("a/repo"));
    const CountingTree files;
    KnownFolder known;
    QCOMPARE(tree.foundAgain(files, known), QStringLiteral("a/repo"));
    QCOMPARE(std::exchange(files.visits, 0), 5);
    QCOMPARE(tree.foundAgain(files, known), QStringLiteral("a/repo"));
    QCOMPARE(std::exchange(files.visits, 0), 1);
    awaitNextTime();
    tree.folder(QStringLiteral("a/b/d"));
    QCOMPARE(tree.foundAgain(files, known), QStringLiteral("a/repo"));
    QCOMPARE(files.visits, 4);
}

void TestRepositoryScan::aChangeInTheSameStepOfTheTimesIsSeen()
{
    const Tree tree;
    const CoarseTree files;
    KnownFolder known;
    QStringList expected;
    // Most of them lie in one step.
    for (int number = 0; number < 8; ++number) {
        expected << QStringLiteral("repo%1").arg(number);
        tree.repository(expected.constLast());
        QCOMPARE(tree.foundAgain(files, known), expected.join(u' '));
    }
}

void TestRepositoryScan::whereThereAreNoTimesEverythingIsRead()
{
    const Tree tree;
    const TimelessTree files;
    KnownFolder known;
    QCOMPARE(tree.foundAgain(files, known), QString());
    tree.repository(QStringLiteral("repo"));
    QCOMPARE(tree.foundAgain(files, known), QStringLiteral("repo"));
}

void TestRepositoryScan::aLinkNamedGitThatComesAliveIsSeen()
{
    const Tree tree;
    const QTemporaryDir elsewhere;
    const AgedTree files;
    tree.folder(QStringLiteral("repo"));
    tree.link(elsewhere.filePath(QStringLiteral("store")), QStringLiteral("repo/.git"));
    KnownFolder known;
    QCOMPARE(tree.foundAgain(files, known), QString());
    QVERIFY(QDir(elsewhere.path()).mkdir(QStringLiteral("store")));
    QCOMPARE(tree.foundAgain(files, known), QStringLiteral("repo"));
}

void TestRepositoryScan::whatACancelledScanLeftOutIsReadByTheNext()
{
    // Cancelled while it reads the first folder.
    class CancellingTree : public AgedTree
    {
    public:
        bool visit(const std::string &path, const Visitor &visitor) const override
        {
            isCancelled = true;
            return AgedTree::visit(path, visitor);
        }
        mutable std::atomic<bool> isCancelled = false;
    };
    const Tree tree;
    tree.repository(QStringLiteral("one"));
    tree.repository(QStringLiteral("two"));
    const CancellingTree files;
    KnownFolder known;
    QVERIFY(scanForRepositories(files, tree.path(), 5, files.isCancelled, known).isEmpty());
    QCOMPARE(tree.foundAgain(AgedTree(), known), QStringLiteral("one two"));
}

void TestRepositoryScan::findsWhatIsThereWhateverHappened()
{
    const Tree tree;
    const AgedTree files;
    KnownFolder known;
    std::mt19937 random(seedOfRun(20261122));
    int found = 0;
    for (int step = 0; step < (wholeRun() ? 20'000 : 300); ++step) {
        happenIn(tree, random);
        const auto expected = tree.found();
        found += expected.isEmpty() ? 0 : 1;
        QCOMPARE(tree.foundAgain(files, known), expected);
        awaitNextTime();
    }
    QVERIFY(found > 50);
}

VELQUARIN_TEST(TestRepositoryScan)
#include "tst_repositoryscan.moc"
