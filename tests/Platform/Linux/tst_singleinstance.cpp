// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/BusProbe.h"
#include "Platform/Linux/System/SessionBus.h"
#include "Platform/Linux/System/SingleInstance.h"
#include "support/Strict.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

// A socket that accepts, as a stopped bus does, and on which nobody ever speaks.
class SilentServer
{
public:
    explicit SilentServer(const QString &path)
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
        if (bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
            listen(m_socket, 5) != 0)
            qFatal("no server");
    }
    ~SilentServer() { close(m_socket); }
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

private:
    int m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

}  // namespace

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
    void whereNobodyListensThereIsNoBus();
    void aBusThatStaysSilentIsNone();
    void addressesOfOtherKindsPass();
    void theSecondOfTwoAddressesMayAnswer();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_runtime->filePath(name); }

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
    const auto lock = path(QStringLiteral("velquarin-%1-:1.lock").arg(getuid()));
    QVERIFY(QFile::link(victim, lock));
    SessionBus bus;
    SingleInstance instance(bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QVERIFY(!QFile::exists(victim));
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

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"
