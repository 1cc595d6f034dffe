// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/AppSettings.h"
#include "Platform/Linux/Preferences/JsonPreferencesStore.h"

#include "Platform/Linux/Preferences/PreferencesPlace.h"
#include "support/CapturedStandardError.h"
#include "support/Extent.h"
#include "support/FolderWatch.h"
#include "support/Standstill.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>
#include <limits>
#include <thread>

#include <csignal>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace velquarin;
using namespace Qt::StringLiterals;
using velquarin::test::CapturedStandardError;
using velquarin::test::FolderWatch;
using velquarin::test::modeOf;
using velquarin::test::namesIn;
using velquarin::test::PreferencesPlace;
using velquarin::test::readFile;
using velquarin::test::writeFile;

namespace {

// Only for what never comes.
constexpr int timeoutMs = 60'000;
constexpr uid_t nobody = 65534;

const QString fileName = u"preferences.json"_s;
const QString numberKey = u"number"_s;

QJsonObject objectIn(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

double numberIn(const PreferencesPlace &place)
{
    return objectIn(place.content()).value(numberKey).toDouble(-1.0);
}

// The helper program beside this one, under limits of its own.
class Child
{
public:
    Child(const PreferencesPlace &place, const std::function<void()> &limit, const QStringList &mode = {},
          const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        // From below the temporary folder, since another user may not come to where this one was built.
        const auto program = place.home.filePath(u"preferences_child"_s);
        QFile::copy(QStringLiteral(PREFERENCES_CHILD), program);
        m_process.setProcessEnvironment(environment);
        m_process.setChildProcessModifier(limit);
        m_process.start(program, QStringList{place.path} + mode);
        if (!m_process.waitForStarted(timeoutMs))
            qFatal("the helper program does not start: %s", qPrintable(m_process.errorString()));
    }

    ~Child() { end(); }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    // Saves one number, and comes back when the store says that it is written or cannot be.
    void save(double number)
    {
        m_process.write(QByteArray::number(number) + '\n');
        awaitLine("done");
    }

    void awaitLine(const QByteArray &line)
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(timeoutMs)) {
        }
        QVERIFY2(m_process.canReadLine(),
                 "no \"" + line + "\" came from " + test::sightOf(pid_t(m_process.processId())));
        QCOMPARE(m_process.readLine().trimmed(), line);
    }

    void killHard()
    {
        m_process.kill();
        m_process.waitForFinished(timeoutMs);
    }

    // What it said on standard error until it ended.
    QStringList end()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished(timeoutMs);
        return QString::fromUtf8(m_process.readAllStandardError()).split(u'\n', Qt::SkipEmptyParts);
    }

private:
    QProcess m_process;
};

// Rights mean nothing to root: the program runs as somebody whom they hold back.
void becomeOrdinaryUser()
{
    if (::geteuid() != 0)
        return;
    if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0)
        ::_exit(99);
}

void giveAwayToOrdinaryUser(const PreferencesPlace &place)
{
    if (::geteuid() != 0)
        return;
    for (const auto &path : {place.home.path(), place.home.filePath(u"config"_s), place.folder, place.path}) {
        if (QFileInfo::exists(path) && ::chown(QFile::encodeName(path).constData(), nobody, nobody) != 0)
            qFatal("%s cannot be given away", qPrintable(path));
    }
}

void setMode(const QString &path, mode_t mode)
{
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
}

// Writing beyond this many bytes of a file fails, as on a full disk.
template <rlim_t bytes>
void limitFileSize()
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

void noLimit() {}

// What a program runs in that notes its calls in that file; the address sanitizer wants to be asked first.
QProcessEnvironment notingCallsIn(const QString &file)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LD_PRELOAD"_s, QStringLiteral(PREFERENCES_CALLS));
    environment.insert(u"VELQUARIN_TEST_CALLS"_s, file);
    environment.insert(u"ASAN_OPTIONS"_s, environment.value(u"ASAN_OPTIONS"_s) + u":verify_asan_link_order=0"_s);
    return environment;
}

// For this process alone, so that it goes away with it whatever happens.
bool mountSmallFileSystem(const QByteArray &folder)
{
    return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("tmpfs", folder.constData(), "tmpfs", MS_NOSUID | MS_NODEV, "size=64k") == 0;
}

QStringList threads()
{
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

QByteArray statusOf(const QString &thread, const QByteArray &field)
{
    for (const auto &line : readFile(u"/proc/self/task/%1/status"_s.arg(thread)).split('\n')) {
        if (line.startsWith(QByteArray(field + ':')))
            return line.mid(field.size() + 1).trimmed();
    }
    return {};
}

}  // namespace

class TestPreferencesDurability : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }

    void aChangeIsOnDiskWithin100Milliseconds();
    void aThousandAssignmentsEndInFewWrites();
    void anEqualValueIsNotWrittenAgain();
    void theEndWritesWhatIsPending();
    void flushingWritesWhatIsPending();
    void theWriterDoesNotExistBeforeItIsNeeded();
    void theWriterSleepsWhileNothingChanges();
    void theWriterTakesNoSignals();

    void aFullDiskLeavesTheOldFile();
    void aFullFileSystemLeavesTheOldFile();
    void aCopyThatCannotBeMadeKeepsTheFile();
    void aFailureIsSaidOnceAndAnewAfterASuccess();
    void whatFailedIsTriedAgainAtTheNextChangeAndAtTheEnd();
    void aReadOnlyFileIsNotReplaced();
    void aReadOnlyFolderIsAFailureLikeAnyOther();
    void aDamagedFileThatCannotBeMovedIsNotWrittenOver();
    void whatCannotBeReadIsNotWrittenOver_data();
    void whatCannotBeReadIsNotWrittenOver();
    void aFolderThatCannotBeMadeIsAFailureLikeAnyOther();
    void aPowerCutLeavesTheOldOrTheNewFile();
    void aKillLeavesTheOldOrTheNewFile();
};

void TestPreferencesDurability::aChangeIsOnDiskWithin100Milliseconds()
{
    constexpr int mostRounds = 200;
    const PreferencesPlace place;
    place.fill("{}");
    JsonPreferencesStore store(place.path);
    FolderWatch watch(place.folder);
    auto quickest = std::numeric_limits<qint64>::max();
    // A busy machine can only add to it, so that one quick round is enough; a store that waits too long has none.
    for (int round = 1; round <= 9 || (quickest > 100 && round <= mostRounds); ++round) {
        QElapsedTimer timer;
        timer.start();
        store.set(numberKey, double(round));
        QVERIFY2(watch.waitFor(fileName, timeoutMs), "nobody writes the file");
        quickest = std::min(quickest, timer.elapsed());
        QCOMPARE(numberIn(place), double(round));
        store.flush(std::chrono::minutes(1));
    }
    QVERIFY2(quickest <= 100, qPrintable(u"%1 ms"_s.arg(quickest)));
}

void TestPreferencesDurability::aThousandAssignmentsEndInFewWrites()
{
    constexpr int count = 1000;
    const PreferencesPlace place;
    place.fill("{}");
    JsonPreferencesStore store(place.path);
    AppSettings settings(store);
    store.flush(std::chrono::minutes(1));
    FolderWatch watch(place.folder);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i)
        settings.setRefreshInterval(1.0 + i);
    store.flush(std::chrono::minutes(1));
    // The slower the machine, the more pauses there were in which a write could begin.
    const auto mostWrites = 2 + timer.elapsed() / 20;
    const auto writes = watch.names().count(fileName);
    QVERIFY2(writes >= 1 && writes <= std::min<qint64>(mostWrites, count / 2), qPrintable(u"%1 writes"_s.arg(writes)));

    JsonPreferencesStore again(place.path);
    QCOMPARE(AppSettings(again).refreshInterval(), double(count));
}

void TestPreferencesDurability::anEqualValueIsNotWrittenAgain()
{
    const PreferencesPlace place;
    JsonPreferencesStore store(place.path);
    AppSettings settings(store);
    store.flush(std::chrono::minutes(1));
    FolderWatch watch(place.folder);
    settings.setRefreshInterval(settings.refreshInterval());
    store.flush(std::chrono::minutes(1));
    QCOMPARE(watch.names(), QStringList());
    settings.setRefreshInterval(60.0);
    store.flush(std::chrono::minutes(1));
    QCOMPARE(watch.names().count(fileName), 1);
}

void TestPreferencesDurability::theEndWritesWhatIsPending()
{
    const PreferencesPlace place;
    for (int round = 1; round <= 20; ++round) {
        {
            JsonPreferencesStore store(place.path);
            store.set(numberKey, double(round));
        }
        QCOMPARE(numberIn(place), double(round));
    }
}

void TestPreferencesDurability::flushingWritesWhatIsPending()
{
    const PreferencesPlace place;
    JsonPreferencesStore store(place.path);
    for (int round = 1; round <= 20; ++round) {
        store.set(numberKey, double(round));
        store.flush(std::chrono::minutes(1));
        QCOMPARE(numberIn(place), double(round));
    }
}

void TestPreferencesDurability::theWriterDoesNotExistBeforeItIsNeeded()
{
    const PreferencesPlace place;
    place.fill("{\"number\": 1}");
    const auto before = threads();
    JsonPreferencesStore store(place.path);
    QVERIFY(store.value(numberKey) == PreferenceValue(1.0));
    store.flush(std::chrono::minutes(1));
    QCOMPARE(threads(), before);
}

void TestPreferencesDurability::theWriterSleepsWhileNothingChanges()
{
    const PreferencesPlace place;
    const auto before = threads();
    JsonPreferencesStore store(place.path);
    store.set(numberKey, 1.0);
    store.flush(std::chrono::minutes(1));
    auto writer = threads();
    writer.removeIf([&](const QString &thread) { return before.contains(thread); });
    QCOMPARE(writer.size(), 1);
    QTRY_VERIFY(statusOf(writer.first(), "State").startsWith('S'));
    const auto switches = statusOf(writer.first(), "voluntary_ctxt_switches");
    // Not to wait for anything: this is the idle time that is looked at.
    QTest::qWait(300);
    QCOMPARE(statusOf(writer.first(), "voluntary_ctxt_switches"), switches);
}

void TestPreferencesDurability::theWriterTakesNoSignals()
{
    const PreferencesPlace place;
    const auto before = threads();
    const auto mainMask = statusOf(QString::number(::getpid()), "SigBlk");
    JsonPreferencesStore store(place.path);
    store.set(numberKey, 1.0);
    // Every thread starts with all signals blocked; by then it has its own mask.
    store.flush(std::chrono::minutes(1));
    auto writer = threads();
    writer.removeIf([&](const QString &thread) { return before.contains(thread); });
    QCOMPARE(writer.size(), 1);
    const auto blocked = statusOf(writer.first(), "SigBlk").toULongLong(nullptr, 16);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGPIPE, SIGCHLD, SIGUSR1})
        QVERIFY(blocked & (1ULL << (signal - 1)));
    QCOMPARE(statusOf(QString::number(::getpid()), "SigBlk"), mainMask);
}

void TestPreferencesDurability::aFullDiskLeavesTheOldFile()
{
    const QByteArray original = "{\n    \"old\": \"" + QByteArray(2000, 'x') + "\"\n}\n";
    const PreferencesPlace place;
    place.fill(original);
    Child child(place, &limitFileSize<1000>);
    child.save(1.0);
    child.save(2.0);
    QCOMPARE(place.content(), original);
    QCOMPARE(child.end().size(), 1);
    QCOMPARE(place.content(), original);
    QCOMPARE(namesIn(place.folder), QStringList{fileName});
}

void TestPreferencesDurability::aFullFileSystemLeavesTheOldFile()
{
    const PreferencesPlace place;
    QDir().mkpath(place.folder);
    const auto folder = QFile::encodeName(place.folder);
    if (!mountSmallFileSystem(folder))
        QSKIP("this needs the right to mount a small file system");
    const auto unmount = qScopeGuard([&] { ::umount2(folder.constData(), MNT_DETACH); });
    const CapturedStandardError error;
    {
        JsonPreferencesStore store(place.path);
        store.set(u"data"_s, QByteArray(1000, 'x'));
        store.flush(std::chrono::minutes(1));
        const auto original = place.content();
        store.set(u"data"_s, QByteArray(200'000, 'y'));
        store.flush(std::chrono::minutes(1));
        QCOMPARE(place.content(), original);
        QCOMPARE(error.lines().size(), 1);
        QCOMPARE(namesIn(place.folder), QStringList{fileName});
        store.set(u"data"_s, QByteArray(1000, 'z'));
        store.flush(std::chrono::minutes(1));
    }
    QVERIFY(place.content().contains("zzz"));
    QCOMPARE(error.lines().size(), 1);
}

void TestPreferencesDurability::aCopyThatCannotBeMadeKeepsTheFile()
{
    const QByteArray original = "{" + QByteArray(2000, ' ') + "}";
    const PreferencesPlace place;
    place.fill(original);
    Child child(place, &limitFileSize<1000>, {u"copy"_s});
    child.save(1.0);
    QCOMPARE(child.end().size(), 1);
    QCOMPARE(place.content(), original);
    QCOMPARE(namesIn(place.folder), QStringList{fileName});
}

void TestPreferencesDurability::aFailureIsSaidOnceAndAnewAfterASuccess()
{
    const PreferencesPlace place;
    QDir().mkpath(place.path);
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    for (const double number : {1.0, 2.0, 3.0}) {
        store.set(numberKey, number);
        store.flush(std::chrono::minutes(1));
    }
    QCOMPARE(error.lines().size(), 1);
    QVERIFY(error.lines().at(0).startsWith(QString(u"velquarin: "_s + place.path)));

    QVERIFY(QDir().rmdir(place.path));
    store.set(numberKey, 4.0);
    store.flush(std::chrono::minutes(1));
    QCOMPARE(numberIn(place), 4.0);
    QCOMPARE(error.lines().size(), 1);

    QVERIFY(QFile::remove(place.path) && QDir().mkpath(place.path));
    store.set(numberKey, 5.0);
    store.flush(std::chrono::minutes(1));
    store.flush(std::chrono::minutes(1));
    QCOMPARE(error.lines().size(), 2);
}

void TestPreferencesDurability::whatFailedIsTriedAgainAtTheNextChangeAndAtTheEnd()
{
    const PreferencesPlace place;
    QDir().mkpath(place.path);
    const CapturedStandardError error;
    {
        JsonPreferencesStore store(place.path);
        store.set(u"early"_s, true);
        store.flush(std::chrono::minutes(1));
        QVERIFY(QDir().rmdir(place.path));
        store.set(numberKey, 1.0);
        store.flush(std::chrono::minutes(1));
        QCOMPARE(objectIn(place.content()), objectIn(R"({"early": true, "number": 1})"));

        QVERIFY(QFile::remove(place.path) && QDir().mkpath(place.path));
        store.set(numberKey, 2.0);
        store.flush(std::chrono::minutes(1));
        QVERIFY(QDir().rmdir(place.path));
    }
    QCOMPARE(objectIn(place.content()), objectIn(R"({"early": true, "number": 2})"));
}

void TestPreferencesDurability::aReadOnlyFileIsNotReplaced()
{
    const PreferencesPlace place;
    place.fill("{\"number\": 7}");
    setMode(place.path, 0400);
    giveAwayToOrdinaryUser(place);
    Child child(place, &becomeOrdinaryUser);
    child.save(1.0);
    child.save(2.0);
    QCOMPARE(numberIn(place), 7.0);
    setMode(place.path, 0600);
    child.save(3.0);
    QCOMPARE(numberIn(place), 3.0);
    QCOMPARE(child.end().size(), 1);
}

void TestPreferencesDurability::aReadOnlyFolderIsAFailureLikeAnyOther()
{
    const PreferencesPlace place;
    place.fill("{\"number\": 7}");
    setMode(place.folder, 0500);
    giveAwayToOrdinaryUser(place);
    Child child(place, &becomeOrdinaryUser);
    child.save(1.0);
    QCOMPARE(place.content(), "{\"number\": 7}");
    setMode(place.folder, 0700);
    child.save(2.0);
    QCOMPARE(numberIn(place), 2.0);
    QCOMPARE(child.end().size(), 1);
}

void TestPreferencesDurability::aDamagedFileThatCannotBeMovedIsNotWrittenOver()
{
    const PreferencesPlace place;
    place.fill("damaged");
    setMode(place.folder, 0500);
    giveAwayToOrdinaryUser(place);
    Child child(place, &becomeOrdinaryUser);
    child.save(1.0);
    setMode(place.folder, 0700);
    child.save(2.0);
    QCOMPARE(place.content(), "damaged");
    QCOMPARE(child.end().size(), 1);
    QCOMPARE(namesIn(place.folder), QStringList{fileName});
}

void TestPreferencesDurability::whatCannotBeReadIsNotWrittenOver_data()
{
    QTest::addColumn<int>("folderMode");
    QTest::addColumn<int>("fileMode");
    QTest::newRow("a file that may not be read") << 0700 << 0200;
    QTest::newRow("a folder that may not be entered") << 0600 << 0600;
    QTest::newRow("a folder without any rights") << 0000 << 0600;
}

void TestPreferencesDurability::whatCannotBeReadIsNotWrittenOver()
{
    QFETCH(int, folderMode);
    QFETCH(int, fileMode);
    const PreferencesPlace place;
    place.fill("{\"number\": 7}");
    setMode(place.path, mode_t(fileMode));
    setMode(place.folder, mode_t(folderMode));
    giveAwayToOrdinaryUser(place);
    Child child(place, &becomeOrdinaryUser);
    child.save(1.0);
    // Even once there are rights again: what was there was never read, and is not known.
    setMode(place.folder, 0700);
    setMode(place.path, 0600);
    child.save(2.0);
    QCOMPARE(child.end().size(), 1);
    QCOMPARE(place.content(), "{\"number\": 7}");
    QCOMPARE(namesIn(place.folder), QStringList{fileName});
}

void TestPreferencesDurability::aFolderThatCannotBeMadeIsAFailureLikeAnyOther()
{
    const PreferencesPlace place;
    writeFile(place.folder, "in the way");
    const CapturedStandardError error;
    JsonPreferencesStore store(place.path);
    store.set(numberKey, 1.0);
    store.flush(std::chrono::minutes(1));
    QCOMPARE(error.lines().size(), 1);
    QCOMPARE(readFile(place.folder), "in the way");
    QVERIFY(QFile::remove(place.folder));
    store.set(numberKey, 2.0);
    store.flush(std::chrono::minutes(1));
    QCOMPARE(numberIn(place), 2.0);
    QCOMPARE(modeOf(place.folder), 0700);
}

// What is renamed before it is on the disk can be empty after a power cut, and what the folder does not know yet can be
// the old file.
void TestPreferencesDurability::aPowerCutLeavesTheOldOrTheNewFile()
{
    const PreferencesPlace place;
    place.fill("{}");
    const auto folder = QFileInfo(place.folder).canonicalFilePath();
    const auto calls = place.home.filePath(u"calls"_s);
    Child child(place, &noLimit, {}, notingCallsIn(calls));
    child.save(1.0);
    const QStringList expected{u"fsync "_s + folder + u"/.preferences.json.velquarin"_s, u"rename to "_s + place.path,
                               u"fsync "_s + folder};
    QCOMPARE(QString::fromUtf8(readFile(calls)).split(u'\n', Qt::SkipEmptyParts), expected);
    QCOMPARE(numberIn(place), 1.0);
}

void TestPreferencesDurability::aKillLeavesTheOldOrTheNewFile()
{
    const int rounds = test::wholeRun() ? 1000 : 60;
    const PreferencesPlace place;
    QRandomGenerator random(test::seedOfRun(20261120));
    for (int round = 0; round < rounds; ++round) {
        Child child(place, &noLimit, {u"forever"_s});
        child.awaitLine("saving");
        // Not to wait for anything: the kill shall come at any moment of a save.
        std::this_thread::sleep_for(std::chrono::microseconds(1000 + random.bounded(10'000)));
        if (round == rounds - 1)
            QTRY_VERIFY2(QFileInfo::exists(place.path), test::sightOfChildren());
        child.killHard();
        if (!QFileInfo::exists(place.path))
            continue;
        const auto data = objectIn(place.content()).value(u"data"_s).toObject().value(u"data"_s).toString();
        QVERIFY(data.size() >= 100'000);
        QCOMPARE(data.count(data.front()), data.size());
    }
    QVERIFY(QFileInfo::exists(place.path));
    const CapturedStandardError error;
    const JsonPreferencesStore store(place.path);
    // A name that by chance is all small letters, and a whole file, could be a copy that somebody made.
    for (const auto &name : namesIn(place.folder))
        QVERIFY2(name == name.toLower(), qPrintable(name));
    QCOMPARE(error.lines(), QStringList());
}

VELQUARIN_TEST(TestPreferencesDurability)
#include "tst_preferencesdurability.moc"
