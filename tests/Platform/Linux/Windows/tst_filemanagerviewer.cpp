// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/FolderWindows.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "support/DbusTesting.h"
#include "support/PrivateBus.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QDesktopServices>
#include <QTemporaryDir>
#include <QUrl>

#include <optional>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const QString managerName = QStringLiteral("org.freedesktop.FileManager1");

// A file manager that writes down what it was asked to show, and refuses when told to.
class FakeFileManager : public QDBusVirtualObject
{
public:
    explicit FakeFileManager(QDBusConnection connection)
        : m_connection(std::move(connection))
    {
        m_connection.registerVirtualObject(path(), this);
        m_connection.registerService(managerName);
    }
    ~FakeFileManager() override
    {
        m_connection.unregisterService(managerName);
        m_connection.unregisterObject(path());
    }

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        calls.append(message);
        return connection.send(isRefusing ? message.createErrorReply(QDBusError::Failed, QStringLiteral("no"))
                                          : message.createReply());
    }

    QList<QDBusMessage> calls;
    bool isRefusing = false;

private:
    static QString path() { return QStringLiteral("/org/freedesktop/FileManager1"); }

    QDBusConnection m_connection;
};

}  // namespace

class TestFileManagerViewer : public QObject
{
    Q_OBJECT
public Q_SLOTS:
    void open(const QUrl &url) { m_opened.append(url); }

private Q_SLOTS:
    void init()
    {
        failOnAnyWarning();
        m_opened.clear();
        m_privateBus.start();
        m_bus.emplace();
        QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open");
    }

    void cleanup()
    {
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        m_bus.reset();
        m_privateBus.stop();
    }

    void aFolderIsShownByTheFileManager()
    {
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        reveal(m_folder.path(), QStringLiteral("token-7"));
        QTRY_COMPARE(manager.calls.size(), 1);
        const auto call = manager.calls.constFirst();
        QCOMPARE(call.interface(), managerName);
        QCOMPARE(call.member(), QStringLiteral("ShowFolders"));
        QCOMPARE(call.signature(), QStringLiteral("ass"));
        const QStringList folders{QUrl::fromLocalFile(m_folder.path()).toString(QUrl::FullyEncoded)};
        QCOMPARE(call.arguments(), (QVariantList{folders, QStringLiteral("token-7")}));
        QCOMPARE(m_opened, QList<QUrl>());
    }

    void whoeverStandsInTheWayIsToldBeforeTheWindowComes()
    {
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        QStringList order;
        FileManagerViewer viewer(*m_bus);
        viewer.reveal(m_folder.path(), [&] { order << QStringLiteral("way, %1 calls").arg(manager.calls.size()); });
        QTRY_COMPARE(manager.calls.size(), 1);
        QCOMPARE(order, QStringList{QStringLiteral("way, 0 calls")});
    }

    void aFolderThatIsGoneMovesNobody()
    {
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        int ways = 0;
        FileManagerViewer viewer(*m_bus);
        viewer.reveal(m_folder.filePath(QStringLiteral("gone")), [&ways] { ++ways; });
        viewer.reveal(m_folder.path(), [&ways] { ways += 10; });
        QTRY_COMPARE(manager.calls.size(), 1);
        QCOMPARE(ways, 10);
    }

    // Afterwards nobody knows any more when the user clicked.
    void theTokenIsMadeBeforeAnythingIsWaitedFor()
    {
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        auto token = QStringLiteral("at the click");
        FileManagerViewer(*m_bus, [&token] { return token; }).reveal(m_folder.path(), [] {});
        token = QStringLiteral("later");
        QTRY_COMPARE(manager.calls.size(), 1);
        QCOMPARE(manager.calls.constFirst().arguments().at(1).toString(), QStringLiteral("at the click"));
    }

    void aNameWithEveryKindOfLetterArrivesWhole()
    {
        const auto path = m_folder.filePath(QStringLiteral("50% of #1 ü?&"));
        QVERIFY(QDir().mkpath(path));
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        reveal(path, {});
        QTRY_COMPARE(manager.calls.size(), 1);
        const auto uri = manager.calls.constFirst().arguments().constFirst().toStringList().constFirst();
        QVERIFY2(uri.endsWith(QLatin1String("/50%25%20of%20%231%20%C3%BC%3F&")), qPrintable(uri));
        QCOMPARE(QUrl::fromEncoded(uri.toLatin1(), QUrl::StrictMode).toLocalFile(), path);
    }

    void withoutAFileManagerTheDesktopOpensTheFolder()
    {
        reveal(m_folder.path(), {});
        QTRY_COMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_folder.path())});
    }

    void whatTheFileManagerRefusesTheDesktopOpens()
    {
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        manager.isRefusing = true;
        reveal(m_folder.path(), {});
        QTRY_COMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_folder.path())});
        QCOMPARE(manager.calls.size(), 1);
    }

    void withoutASessionBusTheDesktopOpensTheFolder()
    {
        m_bus.reset();
        m_privateBus.stop();
        m_bus.emplace();
        reveal(m_folder.path(), {});
        QVERIFY(!m_bus->connection().isConnected());
        QTRY_COMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_folder.path())});
    }

    void whatIsNoFolderIsNotShown_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("a folder that is gone") << m_folder.filePath(QStringLiteral("gone"));
        QTest::newRow("a file") << QCoreApplication::applicationFilePath();
        QTest::newRow("nothing") << QString();
    }

    void whatIsNoFolderIsNotShown()
    {
        QFETCH(QString, path);
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        reveal(path, {});
        reveal(m_folder.path(), QStringLiteral("the one after it"));
        QTRY_VERIFY(!manager.calls.isEmpty());
        QCOMPARE(manager.calls.constFirst().arguments().at(1).toString(), QStringLiteral("the one after it"));
        QCOMPARE(m_opened, QList<QUrl>());
    }

    void revealingReturnsBeforeTheFileManagerAnswers()
    {
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        reveal(m_folder.path(), {});
        QVERIFY(manager.calls.isEmpty());
        QTRY_COMPARE(manager.calls.size(), 1);
    }

    void aViewerThatIsGoneHarmsNothing()
    {
        SecondConnection desktop("desktop");
        FakeFileManager manager(*desktop);
        reveal(m_folder.path(), {});
        m_bus.reset();
        QTRY_COMPARE(manager.calls.size() + m_opened.size(), 1);
    }

private:
    void reveal(const QString &path, const QString &activationToken)
    {
        FileManagerViewer(*m_bus, [activationToken] { return activationToken; }).reveal(path, [] {});
    }

    PrivateBus m_privateBus;
    QTemporaryDir m_folder;
    std::optional<SessionBus> m_bus;
    QList<QUrl> m_opened;
};

VELQUARIN_WINDOW_TEST(TestFileManagerViewer)
#include "tst_filemanagerviewer.moc"
