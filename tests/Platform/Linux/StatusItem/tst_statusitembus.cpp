// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/LinuxStatusItem.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "support/DbusTesting.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QDBusArgument>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>

using namespace velquarin;

namespace {

const StatusItemAppearance syncing{QStringLiteral("arrow.triangle.2.circlepath"), true, QStringLiteral("Syncing"), {}};
const StatusItemAppearance waiting{QStringLiteral("flame"), true, QStringLiteral("Velquarin"), QStringLiteral(" 12")};

}  // namespace

// The session bus of this test is its own, at one address, so that it can end and come back.
class TestStatusItemBus : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init() { test::failOnAnyWarning(); }
    void withoutABusNothingFails();
    void aBusThatComesLaterIsFoundWithTheNextAppearance();
    void aBusThatEndsAndComesBackIsFoundAgain();

private:
    void startBus();
    void endBus();

    QTemporaryDir m_folder;
    QProcess m_daemon;
};

void TestStatusItemBus::initTestCase()
{
    const QString address = QStringLiteral("unix:path=") + m_folder.filePath(QStringLiteral("bus"));
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
}

void TestStatusItemBus::startBus()
{
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                    QStringLiteral("--address=") + qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS")});
    QVERIFY(m_daemon.waitForReadyRead());
}

void TestStatusItemBus::endBus()
{
    m_daemon.kill();
    QVERIFY(m_daemon.waitForFinished());
}

void TestStatusItemBus::withoutABusNothingFails()
{
    SessionBus bus;
    LinuxStatusItem item(bus, QStringLiteral("/our/icons"));
    item.setMenu({{QStringLiteral("Refresh"), QStringLiteral("r"), {}}});
    item.setAppearance(syncing);
    item.setAppearance(waiting);
    QVERIFY(!bus.connection().isConnected());
}

void TestStatusItemBus::aBusThatComesLaterIsFoundWithTheNextAppearance()
{
    SessionBus bus;
    LinuxStatusItem item(bus, QStringLiteral("/our/icons"));
    item.setAppearance(syncing);
    startBus();
    test::SecondConnection host("host");
    test::FakeStatusWatcher watcher(*host);
    watcher.appear();
    // Each appearance looks for the bus anew, and none waits for one that is slow.
    const auto isFound = [&] {
        item.setAppearance(waiting);
        return watcher.announced.size() == 1;
    };
    QTRY_VERIFY(isFound());
    endBus();
}

void TestStatusItemBus::aBusThatEndsAndComesBackIsFoundAgain()
{
    startBus();
    SessionBus bus;
    LinuxStatusItem item(bus, QStringLiteral("/our/icons"));
    {
        test::SecondConnection host("host");
        test::FakeStatusWatcher watcher(*host);
        watcher.appear();
        item.setAppearance(syncing);
        QTRY_COMPARE(watcher.announced.size(), 1);
        QSignalSpy lost(&bus, &SessionBus::disconnected);
        endBus();
        QTRY_COMPARE(lost.size(), 1);
    }
    startBus();
    test::SecondConnection host("host again");
    test::FakeStatusWatcher watcher(*host);
    watcher.appear();
    // Each appearance looks for the bus anew, and none waits for one that is slow.
    const auto isFound = [&] {
        item.setAppearance(waiting);
        return watcher.announced.size() == 1;
    };
    QTRY_VERIFY(isFound());
    const auto reply = test::answerOf(*host, bus.connection().baseService(), QStringLiteral("/StatusNotifierItem"),
                                      QStringLiteral("org.freedesktop.DBus.Properties"), "GetAll",
                                      {QStringLiteral("org.kde.StatusNotifierItem")});
    const auto properties = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    QCOMPARE(properties.value(QStringLiteral("XAyatanaLabel")).toString(), QStringLiteral(" 12"));
    endBus();
}

VELQUARIN_WINDOW_TEST(TestStatusItemBus)
#include "tst_statusitembus.moc"
