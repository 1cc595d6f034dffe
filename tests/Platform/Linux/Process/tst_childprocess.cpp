// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/ChildProcessRunner.h"

#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <array>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <linux/random.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <thread>

using namespace velquarin;
using namespace velquarin::test;

namespace {

ProcessRequest shell(const QString &script)
{
    return {QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"), script},
            QStringLiteral("/"),
            QProcessEnvironment::systemEnvironment()};
}

QByteArray outputOf(const QString &script)
{
    return ChildProcessRunner().run(shell(script)).text;
}

long landlockVersion()
{
    constexpr unsigned askVersion = 1;
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, askVersion);
}

bool isLandlockThere()
{
    return landlockVersion() >= 1;
}

// Puts something that is no rules under the number of our own process's rules; false where there are none.
// Source: proc(5), /proc/pid/fd
bool loseTheRules()
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const auto &number : descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        std::array<char, PATH_MAX> target = {};
        const auto link = QFile::encodeName(descriptors.filePath(number));
        if (readlink(link.constData(), target.data(), target.size() - 1) < 0 ||
            QByteArray(target.data()) != "anon_inode:[landlock-ruleset]")
            continue;
        const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
        const bool isLost = dup3(null, number.toInt(), O_CLOEXEC) >= 0;
        close(null);
        return isLost;
    }
    return false;
}

ProcessRequest git(const QStringList &arguments, const QString &folder)
{
    return {QStringLiteral("/usr/bin/git"), arguments, folder, QProcessEnvironment::systemEnvironment()};
}

// The port of a server on the loopback that accepts and says nothing.
class LoopbackServer
{
public:
    LoopbackServer()
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto *const raw = reinterpret_cast<sockaddr *>(&address);
        if (bind(m_socket, raw, length) != 0 || listen(m_socket, 5) != 0 || getsockname(m_socket, raw, &length) != 0)
            qFatal("no server");
        m_port = ntohs(address.sin_port);
    }
    ~LoopbackServer() { close(m_socket); }
    LoopbackServer(const LoopbackServer &) = delete;
    LoopbackServer &operator=(const LoopbackServer &) = delete;
    [[nodiscard]] int port() const { return m_port; }

private:
    int m_socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_port = 0;
};

// A socket of our own process that every process may connect to, whatever files it may use.
// Source: unix(7), abstract sockets
class AbstractServer
{
public:
    AbstractServer()
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::memcpy(&address.sun_path[1], m_name.constData(), size_t(m_name.size()));
        const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + 1 + size_t(m_name.size()));
        if (bind(m_socket, reinterpret_cast<const sockaddr *>(&address), length) != 0 || listen(m_socket, 5) != 0)
            qFatal("no server");
    }
    ~AbstractServer() { close(m_socket); }
    AbstractServer(const AbstractServer &) = delete;
    AbstractServer &operator=(const AbstractServer &) = delete;
    [[nodiscard]] QString name() const { return QString::fromLatin1(m_name); }

private:
    QByteArray m_name = "velquarin-test-" + QByteArray::number(getpid());
    int m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

// An expression of Perl, which is done by its program alone, with $folder and $socket.
ProcessRequest perl(const QString &expression, const QString &folder, const QString &socket)
{
    const auto script = QStringLiteral("my ($folder, $socket) = @ARGV; print((%1) ? \"done\" : \"refused\");");
    return {QStringLiteral("/usr/bin/perl"),
            {QStringLiteral("-MSocket"), QStringLiteral("-e"), script.arg(expression), folder, socket},
            folder,
            QProcessEnvironment::systemEnvironment()};
}

ProcessRequest bash(const QString &script)
{
    auto request = shell(script);
    request.program = QStringLiteral("/bin/bash");
    return request;
}

}  // namespace

class TestChildProcess : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void theOutputIsReturnedAsItIs();
    void muchOutputIsReturnedWhole();
    void outputWithoutEndEndsAtTheLimit();
    void theExitStatusIsNotLookedAt();
    void errorOutputIsDiscardedAndNothingCanBeRead();
    void argumentsReachTheProgramUnchanged();
    void theProgramRunsInItsFolderWithItsEnvironmentAlone();
    void whatCannotBeLaunchedIsAnError_data();
    void whatCannotBeLaunchedIsAnError();
    void aDeniedFolderIsAnError();
    void aCrashIsTheEndOfTheOutput();
    void aGrandchildThatKeepsThePipeHoldsNobodyUp();
    void theChildHearsSignals();
    void theChildHasItsOwnGroupAndLimits();
    void theChildInheritsNoDescriptors();
    void stoppingKillsTheChildWithAllItStarted();
    void onceStoppedNothingIsStarted();
    void manyChildrenLeaveNoDescriptorBehind();
    void aConfinedChildRunsItsProgramAlone();
    void aConfinedChildWritesNothing();
    void aConfinedChildConnectsToNobody();
    void aConfinedChildIsRefused_data();
    void aConfinedChildIsRefused();
    void aChildThatCannotBeConfinedDoesNotRun();
    void ourselvesStayFree();
    void aProgramThatIsUpgradedStillRuns();
    void scriptsAndMissingProgramsAreNotConfined();
};

void TestChildProcess::theOutputIsReturnedAsItIs()
{
    QCOMPARE(outputOf(QStringLiteral("printf 'one\\ntwo\\n'")), QByteArray("one\ntwo\n"));
    QCOMPARE(outputOf(QStringLiteral("printf 'a\\0b\\377'")), QByteArray("a\0b\xff", 4));
    QCOMPARE(outputOf(QStringLiteral(":")), QByteArray());
}

void TestChildProcess::muchOutputIsReturnedWhole()
{
    const auto output = outputOf(QStringLiteral("head -c 20000000 /dev/zero"));
    QCOMPARE(output.size(), 20'000'000);
}

void TestChildProcess::outputWithoutEndEndsAtTheLimit()
{
    constexpr qint64 limit = 64LL * 1024 * 1024;
    constexpr qint64 onePipe = 1024LL * 1024;
    const auto output = outputOf(QStringLiteral("exec yes 2024-03-07"));
    QVERIFY(output.size() > limit);
    QVERIFY(output.size() <= limit + onePipe);
}

void TestChildProcess::theExitStatusIsNotLookedAt()
{
    QCOMPARE(outputOf(QStringLiteral("echo text; exit 128")), QByteArray("text\n"));
}

void TestChildProcess::errorOutputIsDiscardedAndNothingCanBeRead()
{
    QCOMPARE(outputOf(QStringLiteral("echo complaint >&2; cat; readlink /proc/self/fd/0 /proc/$$/fd/2")),
             QByteArray("/dev/null\n/dev/null\n"));
}

void TestChildProcess::argumentsReachTheProgramUnchanged()
{
    const QStringList odd{
        QStringLiteral("two words"), QStringLiteral("$HOME"),     QStringLiteral("*"),         QString(),
        QStringLiteral("\"'`\\"),    QStringLiteral("new\nline"), QStringLiteral("\U0001F525")};
    auto request = shell(QStringLiteral("printf '<%s>' \"$@\""));
    request.arguments << QStringLiteral("sh") << odd;
    QCOMPARE(QString::fromUtf8(ChildProcessRunner().run(request).text),
             QLatin1Char('<') + odd.join(QStringLiteral("><")) + QLatin1Char('>'));
}

void TestChildProcess::theProgramRunsInItsFolderWithItsEnvironmentAlone()
{
    const QTemporaryDir folder;
    auto request = shell(QStringLiteral("pwd; /usr/bin/env | grep -v -e ^PWD= -e ^_= -e ^OLDPWD="));
    request.directory = folder.path();
    request.environment = QProcessEnvironment();
    request.environment.insert(QStringLiteral("ONLY"), QStringLiteral("this"));
    QCOMPARE(ChildProcessRunner().run(request).text, folder.path().toUtf8() + "\nONLY=this\n");
}

void TestChildProcess::whatCannotBeLaunchedIsAnError_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("folder");
    const auto program = QStringLiteral("/bin/true");
    const auto folder = QStringLiteral("/");
    QTest::newRow("a missing program") << QStringLiteral("/no/such/program") << folder;
    QTest::newRow("a file that is not executable") << QStringLiteral("/etc/passwd") << folder;
    QTest::newRow("a folder in place of the program") << QStringLiteral("/etc") << folder;
    QTest::newRow("a missing folder") << program << QStringLiteral("/no/such/folder");
    QTest::newRow("a file in place of the folder") << program << QStringLiteral("/etc/passwd");
    QTest::newRow("no folder at all") << program << QString();
    QTest::newRow("a folder with a NUL in its name") << program << QStringLiteral("/etc") + QChar(u'\0');
}

void TestChildProcess::whatCannotBeLaunchedIsAnError()
{
    QFETCH(QString, program);
    QFETCH(QString, folder);
    try {
        ChildProcessRunner().run({program, {}, folder, QProcessEnvironment::systemEnvironment()});
        QFAIL("it was launched");
    } catch (const LaunchError &error) {
        QVERIFY(!QByteArray(error.what()).isEmpty());
    }
}

void TestChildProcess::aDeniedFolderIsAnError()
{
    const QTemporaryDir parent;
    const auto folder = parent.filePath(QStringLiteral("denied"));
    QVERIFY(QDir().mkdir(folder));
    const AsOrdinaryUser ordinary(parent.path());
    auto request = shell(QStringLiteral("pwd"));
    request.directory = folder;
    QVERIFY(!ChildProcessRunner().run(request).text.isEmpty());
    QFile::setPermissions(parent.path(), {});
    QVERIFY_THROWS_EXCEPTION(LaunchError, ChildProcessRunner().run(request));
    QFile::setPermissions(parent.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void TestChildProcess::aCrashIsTheEndOfTheOutput()
{
    QCOMPARE(outputOf(QStringLiteral("echo before; kill -SEGV $$; echo after")), QByteArray("before\n"));
}

void TestChildProcess::aGrandchildThatKeepsThePipeHoldsNobodyUp()
{
    const auto grandchild = outputOf(QStringLiteral("sleep 60 & echo $!")).trimmed().toInt();
    QVERIFY(grandchild > 0);
    // It still sleeps: nobody has waited for it.
    QCOMPARE(kill(grandchild, SIGKILL), 0);
}

void TestChildProcess::theChildHearsSignals()
{
    // A parent with blocked and ignored signals, as our own process has them.
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto handlerBefore = std::signal(SIGPIPE, SIG_IGN);
    const auto afterTerm = outputOf(QStringLiteral("kill -TERM $$; echo deaf"));
    const auto afterPipe = outputOf(QStringLiteral("kill -PIPE $$; echo deaf"));
    std::signal(SIGPIPE, handlerBefore);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    QCOMPARE(afterTerm, QByteArray());
    QCOMPARE(afterPipe, QByteArray());
}

void TestChildProcess::theChildHasItsOwnGroupAndLimits()
{
    const auto group = outputOf(QStringLiteral("read -r pid name state parent group rest < /proc/$$/stat; "
                                               "echo $pid $group"));
    const auto numbers = group.trimmed().split(' ');
    QCOMPARE(numbers.at(0), numbers.at(1));
    QCOMPARE(outputOf(QStringLiteral("ulimit -c; ulimit -d")), QByteArray("0\n2097152\n"));
}

void TestChildProcess::theChildInheritsNoDescriptors()
{
    QFile open(QStringLiteral("/etc/passwd"));
    QVERIFY(open.open(QIODevice::ReadOnly));
    QCOMPARE(outputOf(QStringLiteral("for fd in /proc/$$/fd/*; do readlink $fd; done | grep -c -e /etc -e socket")),
             QByteArray("0\n"));
}

void TestChildProcess::stoppingKillsTheChildWithAllItStarted()
{
    const QTemporaryDir folder;
    ChildProcessRunner runner;
    auto request = shell(QStringLiteral("sleep 60 & echo $! > grandchild.new; mv grandchild.new grandchild; sleep 60"));
    request.directory = folder.path();
    std::thread running([&] { runner.run(request); });
    QTRY_VERIFY(QFile::exists(folder.filePath(QStringLiteral("grandchild"))));
    runner.stop();
    running.join();
    QFile note(folder.filePath(QStringLiteral("grandchild")));
    QVERIFY(note.open(QIODevice::ReadOnly));
    const auto process = QStringLiteral("/proc/%1/stat").arg(note.readAll().trimmed().toInt());
    // An orphan stays listed as a zombie until its new parent has looked at it.
    QTRY_VERIFY([&process] {
        QFile stat(process);
        return !stat.open(QIODevice::ReadOnly) || stat.readAll().contains(") Z ");
    }());
}

void TestChildProcess::onceStoppedNothingIsStarted()
{
    ChildProcessRunner runner;
    runner.stop();
    QVERIFY_THROWS_EXCEPTION(LaunchError, runner.run(shell(QStringLiteral("echo x"))));
}

void TestChildProcess::manyChildrenLeaveNoDescriptorBehind()
{
    ChildProcessRunner runner;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    runner.run(shell(QStringLiteral(":")));
    const auto before = descriptors.entryList().size();
    for (int round = 0; round < 200; ++round)
        runner.run(shell(QStringLiteral(":")));
    QCOMPARE(descriptors.entryList().size(), before);
}

void TestChildProcess::aConfinedChildRunsItsProgramAlone()
{
    if (!isLandlockThere())
        QSKIP("this kernel has no Landlock");
    ChildProcessRunner runner;
    QVERIFY(runner.confine(QStringLiteral("/usr/bin/git")));
    QVERIFY(runner.run(git({QStringLiteral("--version")}, QStringLiteral("/"))).text.startsWith("git version"));
    QVERIFY_THROWS_EXCEPTION(LaunchError, runner.run(shell(QStringLiteral("echo free"))));
    QVERIFY(runner.confine(QStringLiteral("/bin/bash")));
    QCOMPARE(runner.run(bash(QStringLiteral("echo own; /usr/bin/env true || echo refused"))).text,
             QByteArray("own\nrefused\n"));
}

void TestChildProcess::aConfinedChildWritesNothing()
{
    if (!isLandlockThere())
        QSKIP("this kernel has no Landlock");
    const QTemporaryDir folder;
    ChildProcessRunner runner;
    QVERIFY(runner.confine(QStringLiteral("/usr/bin/git")));
    runner.run(git({QStringLiteral("init")}, folder.path()));
    QVERIFY(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

void TestChildProcess::aConfinedChildConnectsToNobody()
{
    if (landlockVersion() < 4)
        QSKIP("this kernel's Landlock knows no network");
    const LoopbackServer server;
    const auto script =
        QStringLiteral("if : 2> /dev/null < /dev/tcp/127.0.0.1/%1; then echo reached; fi").arg(server.port());
    QCOMPARE(ChildProcessRunner().run(bash(script)).text, QByteArray("reached\n"));
    ChildProcessRunner runner;
    QVERIFY(runner.confine(QStringLiteral("/bin/bash")));
    QCOMPARE(runner.run(bash(script)).text, QByteArray());
}

void TestChildProcess::aConfinedChildIsRefused_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QString>("expression");
    const auto row = [](const char *name, int version, const char *expression) {
        QTest::newRow(name) << version << QString::fromLatin1(expression);
    };
    row("opening a file for writing", 1, R"(open(FILE, '>>', "$folder/file"))");
    row("removing a file", 1, R"(unlink("$folder/file"))");
    // From version 2 on it could be allowed, which nobody does.
    row("moving a file to another folder", 1, R"(rename("$folder/file", "$folder/below/file"))");
    row("truncating a file by its name", 3, R"(truncate("$folder/file", 0))");
    row("asking a device", 5, "open(DEVICE, '<', '/dev/random') && ioctl(DEVICE, $ENV{QUESTION}, $answer = '1234')");
    row("connecting to an abstract socket", 6,
        R"(socket(END, AF_UNIX, SOCK_STREAM, 0) && connect(END, pack_sockaddr_un("\0$socket")))");
    row("sending a signal to the program that started it", 6, "kill('CONT', getppid)");
}

void TestChildProcess::aConfinedChildIsRefused()
{
    QFETCH(int, version);
    QFETCH(QString, expression);
    if (landlockVersion() < version)
        QSKIP("this kernel's Landlock is too old");
    const AbstractServer server;
    const auto answerOf = [&](ChildProcessRunner &runner) {
        const QTemporaryDir folder;
        writeFile(folder.filePath(QStringLiteral("file")), "text");
        QDir(folder.path()).mkdir(QStringLiteral("below"));
        auto request = perl(expression, folder.path(), server.name());
        request.environment.insert(QStringLiteral("QUESTION"), QString::number(RNDGETENTCNT));
        return runner.run(request).text;
    };
    ChildProcessRunner free;
    QCOMPARE(answerOf(free), QByteArray("done"));
    ChildProcessRunner confined;
    QVERIFY(confined.confine(QStringLiteral("/usr/bin/perl")));
    QCOMPARE(answerOf(confined), QByteArray("refused"));
}

void TestChildProcess::aChildThatCannotBeConfinedDoesNotRun()
{
    if (!isLandlockThere())
        QSKIP("this kernel has no Landlock");
    ChildProcessRunner runner;
    QVERIFY(runner.confine(QStringLiteral("/bin/bash")));
    QCOMPARE(runner.run(bash(QStringLiteral("echo runs"))).text, QByteArray("runs\n"));
    QVERIFY(loseTheRules());
    QCOMPARE(runner.run(bash(QStringLiteral("echo runs"))).text, QByteArray());
}

void TestChildProcess::ourselvesStayFree()
{
    if (!isLandlockThere())
        QSKIP("this kernel has no Landlock");
    ChildProcessRunner runner;
    QVERIFY(runner.confine(QStringLiteral("/usr/bin/git")));
    runner.run(git({QStringLiteral("--version")}, QStringLiteral("/")));
    QCOMPARE(outputOf(QStringLiteral("echo free")), QByteArray("free\n"));
    QTemporaryFile file;
    QVERIFY(file.open());
}

void TestChildProcess::aProgramThatIsUpgradedStillRuns()
{
    if (!isLandlockThere())
        QSKIP("this kernel has no Landlock");
    const QTemporaryDir folder;
    const auto program = folder.filePath(QStringLiteral("program"));
    const auto upgrade = folder.filePath(QStringLiteral("upgrade"));
    QVERIFY(QFile::copy(QStringLiteral("/bin/bash"), program) && QFile::copy(QStringLiteral("/bin/bash"), upgrade));
    auto request = bash(QStringLiteral("echo runs"));
    request.program = program;
    ChildProcessRunner runner;
    QVERIFY(runner.confine(program));
    QCOMPARE(runner.run(request).text, QByteArray("runs\n"));
    QCOMPARE(rename(QFile::encodeName(upgrade).constData(), QFile::encodeName(program).constData()), 0);
    QVERIFY(runner.confine(program));
    QCOMPARE(runner.run(request).text, QByteArray("runs\n"));
}

void TestChildProcess::scriptsAndMissingProgramsAreNotConfined()
{
    QTemporaryFile script;
    QVERIFY(script.open());
    script.write("#!/bin/sh\necho script\n");
    script.close();
    ChildProcessRunner runner;
    for (const auto &program : {script.fileName(), QStringLiteral("/no/such/program"), QStringLiteral("/dev/null")}) {
        QVERIFY(!runner.confine(program));
        QCOMPARE(runner.run(shell(QStringLiteral("echo free"))).text, QByteArray("free\n"));
    }
    QVERIFY(!elfInterpreter("/usr/bin/git").empty());
}

VELQUARIN_TEST(TestChildProcess)
#include "tst_childprocess.moc"
