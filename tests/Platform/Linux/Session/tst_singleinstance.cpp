// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/Linux/Session/SingleInstance.h"
#include "support/SilentServer.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

class TestSingleInstance : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarning();
        m_runtime = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime->path()));
        qputenv("DISPLAY", ":1");
        qunsetenv("WAYLAND_DISPLAY");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }
    void withoutABusALockDecides();
    void aLockEndsWithItsOwner();
    void everyDisplayHasItsOwn();
    void whereNoLockCanBeTakenTheProgramStarts();
    void aLinkInTheLocksPlaceIsNotFollowed();
    void whatAnotherProgramLeftInTheLockCountsForNothing_data();
    void whatAnotherProgramLeftInTheLockCountsForNothing();
    void whatCannotBeALockKeepsNobodyFromStarting_data();
    void whatCannotBeALockKeepsNobodyFromStarting();
    void aLockIsHeldByItsOwnerUnderEveryContent();
    void aProcessThatIsKilledLeavesTheLockFree();
    void aStrangersLockKeepsNobodyFromStarting();
    void aFolderThatCannotBeWrittenKeepsNobodyFromStarting();
    void whereNobodyListensThereIsNoBus();
    void aBusThatStaysSilentIsNone();
    void addressesOfOtherKindsPass();
    void theSecondOfTwoAddressesMayAnswer();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_runtime->filePath(name); }
    [[nodiscard]] QString lock() const { return path(QStringLiteral("velquarin-%1-:1.lock").arg(getuid())); }
    void writeLock(const QByteArray &content) const
    {
        QFile file(lock());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

    std::unique_ptr<QTemporaryDir> m_runtime;
};

void TestSingleInstance::withoutABusALockDecides()
{
    SessionBus bus;
    SingleInstance first(bus);
    SingleInstance second(bus);
    QCOMPARE(first.settle(), SingleInstance::Role::First);
    QCOMPARE(second.settle(), SingleInstance::Role::Second);
}

void TestSingleInstance::aLockEndsWithItsOwner()
{
    SessionBus bus;
    {
        SingleInstance first(bus);
        QCOMPARE(first.settle(), SingleInstance::Role::First);
    }
    SingleInstance second(bus);
    QCOMPARE(second.settle(), SingleInstance::Role::First);
}

void TestSingleInstance::everyDisplayHasItsOwn()
{
    SessionBus bus;
    SingleInstance first(bus);
    QCOMPARE(first.settle(), SingleInstance::Role::First);
    qputenv("DISPLAY", ":2");
    SingleInstance second(bus);
    QCOMPARE(second.settle(), SingleInstance::Role::First);
}

void TestSingleInstance::whereNoLockCanBeTakenTheProgramStarts()
{
    qputenv("XDG_RUNTIME_DIR", "/no/such/folder");
    SessionBus bus;
    SingleInstance instance(bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
}

void TestSingleInstance::aLinkInTheLocksPlaceIsNotFollowed()
{
    const auto victim = path(QStringLiteral("victim"));
    QVERIFY(QFile::link(victim, lock()));
    SessionBus bus;
    SingleInstance instance(bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QVERIFY(!QFile::exists(victim));
}

void TestSingleInstance::whatAnotherProgramLeftInTheLockCountsForNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("the id of a process that lives") << QByteArray::number(qint64(getpid())) + "\nvelquarin\nhere\n";
    QTest::newRow("the id of a process that is dead") << QByteArray("4194303\nvelquarin\nhere\n");
    QTest::newRow("the name of another machine") << QByteArray("1\nvelquarin\nelsewhere.example\n");
    QTest::newRow("no text at all") << QByteArray("\0\xff\xfe\n", 4);
}

void TestSingleInstance::whatAnotherProgramLeftInTheLockCountsForNothing()
{
    QFETCH(QByteArray, content);
    writeLock(content);
    SessionBus bus;
    SingleInstance instance(bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QFile file(lock());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
}

void TestSingleInstance::whatCannotBeALockKeepsNobodyFromStarting_data()
{
    QTest::addColumn<std::function<bool(QByteArray)>>("make");
    using Make = std::function<bool(QByteArray)>;
    QTest::newRow("a folder") << Make([](const QByteArray &name) { return mkdir(name.constData(), 0700) == 0; });
    QTest::newRow("a pipe") << Make([](const QByteArray &name) { return mkfifo(name.constData(), 0600) == 0; });
    QTest::newRow("a link to itself") << Make(
        [](const QByteArray &name) { return symlink(name.constData(), name.constData()) == 0; });
    QTest::newRow("a socket") << Make([](const QByteArray &name) {
        const SilentServer server(QFile::decodeName(name));
        return access(name.constData(), F_OK) == 0;
    });
}

void TestSingleInstance::whatCannotBeALockKeepsNobodyFromStarting()
{
    QFETCH(std::function<bool(QByteArray)>, make);
    QVERIFY(make(QFile::encodeName(lock())));
    SessionBus bus;
    SingleInstance instance(bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
}

void TestSingleInstance::aLockIsHeldByItsOwnerUnderEveryContent()
{
    writeLock("4194303\nvelquarin\nelsewhere.example\n");
    SessionBus bus;
    SingleInstance first(bus);
    SingleInstance second(bus);
    QCOMPARE(first.settle(), SingleInstance::Role::First);
    QCOMPARE(second.settle(), SingleInstance::Role::Second);
}

void TestSingleInstance::aProcessThatIsKilledLeavesTheLockFree()
{
    QProcess holder;
    holder.start(QStringLiteral("flock"), {QStringLiteral("--no-fork"), lock(), QStringLiteral("sh"),
                                           QStringLiteral("-c"), QStringLiteral("echo held; exec sleep 1000")});
    QVERIFY(holder.waitForReadyRead());
    SessionBus bus;
    QCOMPARE(SingleInstance(bus).settle(), SingleInstance::Role::Second);
    holder.kill();
    QVERIFY(holder.waitForFinished());
    QCOMPARE(SingleInstance(bus).settle(), SingleInstance::Role::First);
}

// Where there is no folder of our own, everybody can make the file first, and hold it for ever.
void TestSingleInstance::aStrangersLockKeepsNobodyFromStarting()
{
    if (getuid() != 0)
        QSKIP("only an administrator can make a file somebody else's");
    writeLock("");
    constexpr uid_t nobody = 65534;
    QCOMPARE(chown(QFile::encodeName(lock()).constData(), nobody, nobody), 0);
    const auto strangers = open(QFile::encodeName(lock()).constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(flock(strangers, LOCK_EX | LOCK_NB), 0);
    SessionBus bus;
    QCOMPARE(SingleInstance(bus).settle(), SingleInstance::Role::First);
    close(strangers);
}

// An administrator may write everywhere, but not in the folder that describes a process.
void TestSingleInstance::aFolderThatCannotBeWrittenKeepsNobodyFromStarting()
{
    qputenv("XDG_RUNTIME_DIR", "/proc/self");
    SessionBus bus;
    QCOMPARE(SingleInstance(bus).settle(), SingleInstance::Role::First);
}

void TestSingleInstance::whereNobodyListensThereIsNoBus()
{
    QVERIFY(!busAnswers("unix:path=" + QFile::encodeName(path(QStringLiteral("missing"))), 60s));
    QVERIFY(!busAnswers("unix:abstract=velquarin-no-such-bus", 60s));
}

void TestSingleInstance::aBusThatStaysSilentIsNone()
{
    const SilentServer server(path(QStringLiteral("bus")));
    QVERIFY(!busAnswers("unix:path=" + QFile::encodeName(path(QStringLiteral("bus"))), 10ms));
    // Found below the runtime folder, as where no address is given.
    SessionBus bus;
    QVERIFY(!bus.connection().isConnected());
}

void TestSingleInstance::addressesOfOtherKindsPass()
{
    QVERIFY(busAnswers("tcp:host=127.0.0.1,port=1", 0ms));
    QVERIFY(busAnswers("unix:tmpdir=/tmp", 0ms));
}

void TestSingleInstance::theSecondOfTwoAddressesMayAnswer()
{
    QVERIFY(!busAnswers("unix:path=/no/such;unix:path=/nor/this,guid=12", 60s));
    QVERIFY(busAnswers("unix:path=/no/such;tcp:host=127.0.0.1,port=1", 60s));
}

VELQUARIN_TEST(TestSingleInstance)
#include "tst_singleinstance.moc"
