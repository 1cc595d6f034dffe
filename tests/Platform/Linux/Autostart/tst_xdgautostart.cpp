// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/XdgAutostart.h"

#include "Platform/Linux/Autostart/AutostartPlace.h"
#include "support/FileSnapshot.h"
#include "support/FolderWatch.h"
#include "support/OrdinaryUser.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace velquarin;
using namespace Qt::StringLiterals;
using velquarin::test::AsOrdinaryUser;
using velquarin::test::AutostartPlace;
using velquarin::test::firstDifference;
using velquarin::test::FolderWatch;
using velquarin::test::modeOf;
using velquarin::test::namesIn;
using velquarin::test::readFile;
using velquarin::test::snapshotOf;
using velquarin::test::writeFile;

namespace {

constexpr auto done = LoginItemOutcome::Done;
constexpr auto failed = LoginItemOutcome::Failed;

QByteArray entryFor(const QString &program, const QByteArray &keys = {})
{
    return "[Desktop Entry]\nType=Application\nName=Velquarin\nExec=" + program.toUtf8() + '\n' + keys;
}

void setMode(const QString &path, mode_t mode)
{
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
}

void link(const QString &target, const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QVERIFY(QFile::link(target, path));
}

// Whatever is done meanwhile, nothing below the folder changes.
template <typename Action>
void withoutAnyChange(const QString &folder, Action action)
{
    const auto before = snapshotOf(folder);
    action();
    const auto difference = firstDifference(before, snapshotOf(folder));
    QVERIFY2(difference.isEmpty(), difference.constData());
}

// What may stand in the way of the entry, made at a path.
using Obstacle = void (*)(const QString &path);

void makeFolder(const QString &path)
{
    QDir().mkpath(path);
}

void makeFifo(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
}

void linkToDevice(const QString &path)
{
    link(u"/dev/zero"_s, path);
}

void linkToItself(const QString &path)
{
    link(path, path);
}

void makeSocket(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QCOMPARE(::mknod(QFile::encodeName(path).constData(), S_IFSOCK | 0600, 0), 0);
}

// Runs a program to its end; its exit status and all that it said.
std::pair<int, QByteArray> run(const QString &program, const QStringList &arguments,
                               const QProcessEnvironment &variables = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProcessEnvironment(variables);
    process.start(program, arguments);
    process.waitForFinished();
    return {process.exitCode(), process.readAll()};
}

QString generator()
{
    return QStandardPaths::findExecutable(u"systemd-xdg-autostart-generator"_s,
                                          {u"/usr/lib/systemd/user-generators"_s, u"/lib/systemd/user-generators"_s});
}

// The units that systemd makes of the entries, by name, and what they start.
QMap<QString, QByteArray> unitsOf(const AutostartPlace &place)
{
    const QTemporaryDir units;
    QProcessEnvironment variables;
    variables.insert(u"HOME"_s, place.home.path());
    variables.insert(u"PATH"_s, u"/usr/bin:/bin"_s);
    variables.insert(u"XDG_CONFIG_HOME"_s, place.configuration);
    variables.insert(u"XDG_CONFIG_DIRS"_s, place.everybodysConfiguration);
    run(generator(), {units.path(), units.path(), units.path()}, variables);
    QMap<QString, QByteArray> made;
    for (const auto &name : QDir(units.path()).entryList({u"*.service"_s}, QDir::Files)) {
        for (const auto &line : readFile(units.filePath(name)).split('\n')) {
            if (line.startsWith("ExecStart="))
                made.insert(name, line);
        }
    }
    return made;
}

}  // namespace

Q_DECLARE_METATYPE(Obstacle)

class TestXdgAutostart : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void withoutAnyEntryItIsNotRegistered();
    void registeringWritesAnEntryThatStartsTheProgram();
    void unregisteringRemovesTheEntryAndNothingElse();
    void theLastOfAnyCallsDecides();
    void whatStandsAsItIsWantedIsNotWrittenAgain();
    void anEntryThatSomebodyElseWroteAndThatIsOnStaysAsItIs();
    void anEntryThatSomebodyElseSwitchedOffIsWrittenAnew_data();
    void anEntryThatSomebodyElseSwitchedOffIsWrittenAnew();
    void anEntryWithForeignKeysIsRemovedWhole();
    void anEntryOfAProgramThatIsGoneIsWrittenAnew();
    void anEntryForEverybodyCounts();
    void anEntryForEverybodyIsHiddenAndNotTouched();
    void anEntryForEverybodyIsHiddenAlsoWhereThisDesktopIgnoresIt();
    void theEntryOfTheMoreImportantFolderCounts();
    void theUsersOwnEntryCountsFirst();
    void aLinkIsFollowedAndStays();
    void aLinkThatLeadsNowhereGetsItsTarget();
    void unregisteringRemovesALinkAndLeavesWhatItLeadsTo();
    void whatIsNoFileIsNeitherOpenedNorReplaced_data();
    void whatIsNoFileIsNeitherOpenedNorReplaced();
    void aFileThatMayNotBeReadIsNotEnabled();
    void aFileTooLongForAnEntryIsNotEnabled();
    void aReadOnlyFolderIsAFailureAndNothingChanges();
    void aFileInPlaceOfTheFolderIsAFailure();
    void withoutAHomeNothingCanBeRegistered();
    void aFullDiskLeavesTheOldEntry();
    void aProgramThatIsGoneIsNotRegistered();
    void aPathThatDesktopsReadInTwoWaysIsNotRegistered();
    void whoeverReadsTheOldEntryReadsItToItsEnd();
    void whatAKillLeftBehindIsRemoved();
    void theValidatorHasNothingToSay_data();
    void theValidatorHasNothingToSay();
    void systemdStartsWhatIsRegistered_data();
    void systemdStartsWhatIsRegistered();
    void systemdStartsNothingOnceItIsUnregistered();
    void systemdStartsNothingThatIsHidden();
};

void TestXdgAutostart::withoutAnyEntryItIsNotRegistered()
{
    const AutostartPlace place;
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(place.item().status(), LoginItemStatus::NotRegistered); });
}

void TestXdgAutostart::registeringWritesAnEntryThatStartsTheProgram()
{
    const AutostartPlace place;
    auto item = place.item();
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(item.status(), LoginItemStatus::Enabled);
    QCOMPARE(readFile(place.entry), autostartEntry(place.program));
    QCOMPARE(namesIn(place.folder), QStringList{place.name});
    QCOMPARE(modeOf(place.entry), 0600);
    QCOMPARE(modeOf(place.folder), 0700);
    QCOMPARE(modeOf(place.configuration), 0700);
}

void TestXdgAutostart::unregisteringRemovesTheEntryAndNothingElse()
{
    const AutostartPlace place;
    auto item = place.item();
    QCOMPARE(item.registerItem(), done);
    writeFile(place.folder + u"/other.desktop"_s, "another's");
    QCOMPARE(item.unregisterItem(), done);
    QCOMPARE(item.status(), LoginItemStatus::NotRegistered);
    QCOMPARE(namesIn(place.folder), QStringList{u"other.desktop"_s});
}

void TestXdgAutostart::theLastOfAnyCallsDecides()
{
    constexpr unsigned calls = 5;
    for (unsigned sequence = 0; sequence < 1U << calls; ++sequence) {
        const AutostartPlace place;
        if (sequence % 3 == 0)
            writeFile(place.everybodysEntry, entryFor(place.program));
        for (unsigned call = 0; call < calls; ++call) {
            const bool isWanted = sequence >> call & 1U;
            auto item = place.item();
            QCOMPARE(isWanted ? item.registerItem() : item.unregisterItem(), done);
            QCOMPARE(item.status() == LoginItemStatus::Enabled, isWanted);
        }
    }
}

void TestXdgAutostart::whatStandsAsItIsWantedIsNotWrittenAgain()
{
    const AutostartPlace place;
    auto item = place.item();
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.unregisterItem(), done); });
    QCOMPARE(item.registerItem(), done);
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.registerItem(), done); });
    writeFile(place.entry, entryFor(place.program, "X-GNOME-Autostart-enabled=false\n"));
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.unregisterItem(), done); });
}

void TestXdgAutostart::anEntryThatSomebodyElseWroteAndThatIsOnStaysAsItIs()
{
    const AutostartPlace place;
    const auto wrapper = place.home.filePath(u"wrapper"_s);
    AutostartPlace::addProgram(wrapper);
    writeFile(place.entry, entryFor(wrapper, "X-GNOME-Autostart-Delay=20\n"));
    auto item = place.item();
    QCOMPARE(item.status(), LoginItemStatus::Enabled);
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.registerItem(), done); });
}

void TestXdgAutostart::anEntryThatSomebodyElseSwitchedOffIsWrittenAnew_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::newRow("by hiding it") << QByteArray("Hidden=true\n");
    QTest::newRow("in the settings of GNOME") << QByteArray("X-GNOME-Autostart-enabled=false\n");
    QTest::newRow("in the settings of MATE") << QByteArray("X-MATE-Autostart-enabled=false\n");
    QTest::newRow("by keeping it for another desktop") << QByteArray("OnlyShowIn=Another;\n");
    QTest::newRow("by damaging it") << QByteArray("what is this\n");
}

void TestXdgAutostart::anEntryThatSomebodyElseSwitchedOffIsWrittenAnew()
{
    QFETCH(QByteArray, keys);
    const AutostartPlace place;
    writeFile(place.entry, entryFor(place.program, keys));
    auto item = place.item();
    QVERIFY(item.status() != LoginItemStatus::Enabled);
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(readFile(place.entry), autostartEntry(place.program));
}

void TestXdgAutostart::anEntryWithForeignKeysIsRemovedWhole()
{
    const AutostartPlace place;
    writeFile(place.entry, entryFor(place.program, "X-Own=1\n[Another]\nA=b\n"));
    QCOMPARE(place.item().unregisterItem(), done);
    QCOMPARE(namesIn(place.folder), QStringList());
}

void TestXdgAutostart::anEntryOfAProgramThatIsGoneIsWrittenAnew()
{
    const AutostartPlace place;
    writeFile(place.entry, entryFor(place.home.filePath(u"gone"_s)));
    auto item = place.item();
    QCOMPARE(item.status(), LoginItemStatus::NotFound);
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(readFile(place.entry), autostartEntry(place.program));
}

void TestXdgAutostart::anEntryForEverybodyCounts()
{
    const AutostartPlace place;
    writeFile(place.everybodysEntry, entryFor(place.program));
    auto item = place.item();
    QCOMPARE(item.status(), LoginItemStatus::Enabled);
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.registerItem(), done); });
}

void TestXdgAutostart::anEntryForEverybodyIsHiddenAndNotTouched()
{
    const AutostartPlace place;
    writeFile(place.everybodysEntry, entryFor(place.program));
    auto item = place.item();
    withoutAnyChange(place.everybodysConfiguration, [&] {
        QCOMPARE(item.unregisterItem(), done);
        QCOMPARE(readFile(place.entry), hiddenAutostartEntry(place.program));
        QCOMPARE(item.status(), LoginItemStatus::NotRegistered);
        QCOMPARE(item.registerItem(), done);
        QCOMPARE(readFile(place.entry), autostartEntry(place.program));
        QCOMPARE(item.unregisterItem(), done);
        QCOMPARE(readFile(place.entry), hiddenAutostartEntry(place.program));
    });
}

void TestXdgAutostart::anEntryForEverybodyIsHiddenAlsoWhereThisDesktopIgnoresIt()
{
    const AutostartPlace place;
    writeFile(place.everybodysEntry, entryFor(place.program, "NotShowIn=KDE;\n"));
    auto onKde = place.environment();
    onKde.currentDesktop = QStringList{u"KDE"_s};
    XdgAutostart item(onKde);
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(item.unregisterItem(), done);
    QCOMPARE(place.item().status(), LoginItemStatus::NotRegistered);
}

void TestXdgAutostart::theEntryOfTheMoreImportantFolderCounts()
{
    const AutostartPlace place;
    auto environment = place.environment();
    environment.systemFolders << place.home.filePath(u"last"_s);
    writeFile(place.home.filePath(u"last/"_s + place.name), entryFor(place.program));
    QCOMPARE(XdgAutostart(environment).status(), LoginItemStatus::Enabled);
    writeFile(place.everybodysEntry, entryFor(place.program, "Hidden=true\n"));
    QCOMPARE(XdgAutostart(environment).status(), LoginItemStatus::NotRegistered);
}

void TestXdgAutostart::theUsersOwnEntryCountsFirst()
{
    const AutostartPlace place;
    writeFile(place.everybodysEntry, entryFor(place.program));
    writeFile(place.entry, "damaged");
    QCOMPARE(place.item().status(), LoginItemStatus::NotFound);
    writeFile(place.entry, entryFor(place.program, "Hidden=true\n"));
    QCOMPARE(place.item().status(), LoginItemStatus::NotRegistered);
}

void TestXdgAutostart::aLinkIsFollowedAndStays()
{
    const AutostartPlace place;
    const auto target = place.home.filePath(u"dotfiles/entry"_s);
    writeFile(target, entryFor(place.program, "Hidden=true\n"));
    link(target, place.entry);
    auto item = place.item();
    QCOMPARE(item.status(), LoginItemStatus::NotRegistered);
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(QFile::symLinkTarget(place.entry), target);
    QCOMPARE(readFile(target), autostartEntry(place.program));
    QCOMPARE(item.status(), LoginItemStatus::Enabled);
    QCOMPARE(namesIn(place.home.filePath(u"dotfiles"_s)), QStringList{u"entry"_s});
}

void TestXdgAutostart::aLinkThatLeadsNowhereGetsItsTarget()
{
    const AutostartPlace place;
    const auto target = place.home.filePath(u"dotfiles/entry"_s);
    link(target, place.entry);
    auto item = place.item();
    QCOMPARE(item.status(), LoginItemStatus::NotRegistered);
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(QFile::symLinkTarget(place.entry), target);
    QCOMPARE(readFile(target), autostartEntry(place.program));
}

void TestXdgAutostart::unregisteringRemovesALinkAndLeavesWhatItLeadsTo()
{
    const AutostartPlace place;
    const auto target = place.home.filePath(u"applications/velquarin.desktop"_s);
    writeFile(target, entryFor(place.program));
    link(target, place.entry);
    auto item = place.item();
    QCOMPARE(item.status(), LoginItemStatus::Enabled);
    withoutAnyChange(place.home.filePath(u"applications"_s), [&] { QCOMPARE(item.unregisterItem(), done); });
    QCOMPARE(namesIn(place.folder), QStringList());
}

void TestXdgAutostart::whatIsNoFileIsNeitherOpenedNorReplaced_data()
{
    QTest::addColumn<Obstacle>("makeAt");
    QTest::newRow("a folder") << Obstacle(&makeFolder);
    QTest::newRow("a fifo that nobody writes to") << Obstacle(&makeFifo);
    QTest::newRow("a socket") << Obstacle(&makeSocket);
    QTest::newRow("a link to a device without end") << Obstacle(&linkToDevice);
    QTest::newRow("a link to itself") << Obstacle(&linkToItself);
}

void TestXdgAutostart::whatIsNoFileIsNeitherOpenedNorReplaced()
{
    QFETCH(Obstacle, makeAt);
    const AutostartPlace place;
    // The administrator could replace the device itself, should the check that is tested here ever be missing.
    const AsOrdinaryUser user(place.home.path());
    makeAt(place.entry);
    auto item = place.item();
    withoutAnyChange(place.home.path(), [&] {
        QCOMPARE(item.status(), LoginItemStatus::NotFound);
        QCOMPARE(item.registerItem(), failed);
        QCOMPARE(item.unregisterItem(), done);
    });
}

void TestXdgAutostart::aFileThatMayNotBeReadIsNotEnabled()
{
    const AutostartPlace place;
    const AsOrdinaryUser user(place.home.path());
    writeFile(place.entry, entryFor(place.program));
    setMode(place.entry, 0000);
    QCOMPARE(place.item().status(), LoginItemStatus::NotFound);
    setMode(place.entry, 0600);
    QCOMPARE(place.item().status(), LoginItemStatus::Enabled);
    setMode(place.folder, 0000);
    QCOMPARE(place.item().status(), LoginItemStatus::NotFound);
    QCOMPARE(place.item().registerItem(), failed);
    setMode(place.folder, 0700);
}

void TestXdgAutostart::aFileTooLongForAnEntryIsNotEnabled()
{
    const AutostartPlace place;
    const auto comment = [](qsizetype length) { return '#' + QByteArray(length, 'x') + '\n'; };
    writeFile(place.entry, entryFor(place.program, comment(500'000)));
    QCOMPARE(place.item().status(), LoginItemStatus::Enabled);
    writeFile(place.entry, entryFor(place.program, comment(1'000'000)));
    QCOMPARE(place.item().status(), LoginItemStatus::NotFound);
}

void TestXdgAutostart::aReadOnlyFolderIsAFailureAndNothingChanges()
{
    const AutostartPlace place;
    const AsOrdinaryUser user(place.home.path());
    QDir().mkpath(place.folder);
    setMode(place.folder, 0500);
    auto item = place.item();
    withoutAnyChange(place.home.path(), [&] {
        QCOMPARE(item.registerItem(), failed);
        QCOMPARE(item.status(), LoginItemStatus::NotRegistered);
    });
    setMode(place.folder, 0700);
    QCOMPARE(item.registerItem(), done);
    setMode(place.folder, 0500);
    withoutAnyChange(place.home.path(), [&] {
        QCOMPARE(item.unregisterItem(), failed);
        QCOMPARE(item.status(), LoginItemStatus::Enabled);
    });
    setMode(place.folder, 0700);
}

void TestXdgAutostart::aFileInPlaceOfTheFolderIsAFailure()
{
    const AutostartPlace place;
    writeFile(place.folder, "in the way");
    auto item = place.item();
    withoutAnyChange(place.home.path(), [&] {
        QCOMPARE(item.status(), LoginItemStatus::NotRegistered);
        QCOMPARE(item.registerItem(), failed);
        QCOMPARE(item.unregisterItem(), done);
    });
}

void TestXdgAutostart::withoutAHomeNothingCanBeRegistered()
{
    const AutostartPlace place;
    auto environment = place.environment();
    environment.userFolder.clear();
    const auto before = QDir::currentPath();
    const auto comeBack = qScopeGuard([&] { QDir::setCurrent(before); });
    QVERIFY(QDir::setCurrent(place.home.path()));
    XdgAutostart item(environment);
    withoutAnyChange(place.home.path(), [&] {
        QCOMPARE(item.status(), LoginItemStatus::NotRegistered);
        QCOMPARE(item.registerItem(), failed);
    });
    writeFile(place.everybodysEntry, entryFor(place.program));
    withoutAnyChange(place.home.path(), [&] {
        QCOMPARE(item.registerItem(), done);
        QCOMPARE(item.unregisterItem(), failed);
    });
}

void TestXdgAutostart::aFullDiskLeavesTheOldEntry()
{
    const AutostartPlace place;
    writeFile(place.entry, entryFor(place.program, "Hidden=true\n"));
    auto item = place.item();
    auto outcome = done;
    withoutAnyChange(place.entry, [&] {
        rlimit before{};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit small{20, before.rlim_max};
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
        outcome = item.registerItem();
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
        std::signal(SIGXFSZ, handler);
    });
    QCOMPARE(outcome, failed);
    QCOMPARE(namesIn(place.folder), QStringList{place.name});
    QCOMPARE(item.registerItem(), done);
}

void TestXdgAutostart::aProgramThatIsGoneIsNotRegistered()
{
    const AutostartPlace place;
    auto item = place.item();
    QVERIFY(QFile::setPermissions(place.program, QFile::ReadOwner));
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.registerItem(), failed); });
    QVERIFY(QFile::remove(place.program));
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.registerItem(), failed); });
    QVERIFY(QDir().mkpath(place.program));
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.registerItem(), failed); });
}

void TestXdgAutostart::aPathThatDesktopsReadInTwoWaysIsNotRegistered()
{
    const AutostartPlace place(u"100%"_s);
    auto item = place.item();
    withoutAnyChange(place.home.path(), [&] { QCOMPARE(item.registerItem(), failed); });
    writeFile(place.everybodysEntry, "[Desktop Entry]\nType=Application\nExec=sh\n");
    auto environment = place.environment();
    environment.searchPath = QStringList{u"/bin"_s};
    QCOMPARE(XdgAutostart(environment).unregisterItem(), done);
    QCOMPARE(XdgAutostart(environment).status(), LoginItemStatus::NotRegistered);
}

void TestXdgAutostart::whoeverReadsTheOldEntryReadsItToItsEnd()
{
    const AutostartPlace place;
    const auto original = entryFor(place.program, "Hidden=true\n");
    writeFile(place.entry, original);
    QFile reader(place.entry);
    QVERIFY(reader.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    const auto begin = reader.read(10);
    FolderWatch watch(place.folder);
    QCOMPARE(place.item().registerItem(), done);
    QCOMPARE(begin + reader.readAll(), original);
    QCOMPARE(watch.names().count(place.name), 1);
    QCOMPARE(watch.names().size(), 2);
    QCOMPARE(readFile(place.entry), autostartEntry(place.program));
}

void TestXdgAutostart::whatAKillLeftBehindIsRemoved()
{
    const AutostartPlace place;
    writeFile(QString(place.folder + u"/."_s + place.name + u".velquarin"_s), "[Desktop Ent");
    writeFile(place.entry + u".AbCdEf"_s, entryFor(place.program));
    QCOMPARE(place.item().registerItem(), done);
    QCOMPARE(namesIn(place.folder), (QStringList{place.name, place.name + u".AbCdEf"_s}));
}

void TestXdgAutostart::theValidatorHasNothingToSay_data()
{
    QTest::addColumn<QString>("programFolder");
    QTest::newRow("about a usual path") << u"programs"_s;
    QTest::newRow("about a path with every reserved sign") << u"a \"'><~|&;$*?#()`b"_s;
    QTest::newRow("about a path in another language") << u"grüße 火"_s;
}

void TestXdgAutostart::theValidatorHasNothingToSay()
{
    const auto validator = QStandardPaths::findExecutable(u"desktop-file-validate"_s);
    if (validator.isEmpty())
        QSKIP("desktop-file-validate is not installed");
    QFETCH(QString, programFolder);
    const AutostartPlace place(programFolder);
    auto item = place.item();
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(run(validator, {place.entry}), std::pair(0, QByteArray()));
    writeFile(place.everybodysEntry, entryFor(u"/bin/sh"_s));
    QCOMPARE(item.unregisterItem(), done);
    QCOMPARE(run(validator, {place.entry}), std::pair(0, QByteArray()));
}

void TestXdgAutostart::systemdStartsWhatIsRegistered_data()
{
    QTest::addColumn<QString>("programFolder");
    QTest::addColumn<QByteArray>("inUnit");
    QTest::newRow("at a usual path") << u"programs"_s << QByteArray("programs/velquarin");
    QTest::newRow("at a path with a blank") << u"my programs"_s << QByteArray("my programs/velquarin\"");
    QTest::newRow("at a path with quotes") << u"a\"b'c"_s << QByteArray(R"(a\"b'c/velquarin")");
    QTest::newRow("at a path with what shells replace") << u"$a~`b`*"_s << QByteArray(R"(\$a~\`b\`*/velquarin")");
    QTest::newRow("at a path in another language") << u"grüße 火"_s << u"grüße 火/velquarin\""_s.toUtf8();
}

void TestXdgAutostart::systemdStartsWhatIsRegistered()
{
    if (generator().isEmpty())
        QSKIP("systemd-xdg-autostart-generator is not installed");
    QFETCH(QString, programFolder);
    QFETCH(QByteArray, inUnit);
    const AutostartPlace place(programFolder);
    QVERIFY(unitsOf(place).isEmpty());
    QCOMPARE(place.item().registerItem(), done);
    const auto units = unitsOf(place);
    QCOMPARE(units.keys(), QStringList{u"app-io.velquarin.Velquarin@autostart.service"_s});
    QVERIFY2(units.first().endsWith('/' + inUnit), units.first().constData());
}

void TestXdgAutostart::systemdStartsNothingOnceItIsUnregistered()
{
    if (generator().isEmpty())
        QSKIP("systemd-xdg-autostart-generator is not installed");
    const AutostartPlace place;
    auto item = place.item();
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(unitsOf(place).size(), 1);
    QCOMPARE(item.unregisterItem(), done);
    QVERIFY(unitsOf(place).isEmpty());
}

void TestXdgAutostart::systemdStartsNothingThatIsHidden()
{
    if (generator().isEmpty())
        QSKIP("systemd-xdg-autostart-generator is not installed");
    const AutostartPlace place;
    writeFile(place.everybodysEntry, entryFor(place.program));
    QCOMPARE(unitsOf(place).size(), 1);
    auto item = place.item();
    QCOMPARE(item.unregisterItem(), done);
    QVERIFY(unitsOf(place).isEmpty());
    QCOMPARE(item.registerItem(), done);
    QCOMPARE(unitsOf(place).size(), 1);
}

VELQUARIN_TEST(TestXdgAutostart)
#include "tst_xdgautostart.moc"
