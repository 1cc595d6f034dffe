// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/SingleInstance.h"
#include "Platform/Linux/Windows/StartupNotification.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <optional>

using namespace velquarin;
using namespace velquarin::test;

namespace {

class TimedButton : public QPushButton
{
public:
    quint32 releasedAt = 0;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        releasedAt = quint32(event->timestamp());
        QPushButton::mouseReleaseEvent(event);
    }
};

}  // namespace

class TestActivationTokens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarning();
        qunsetenv("XDG_ACTIVATION_TOKEN");
        qunsetenv("DESKTOP_STARTUP_ID");
    }

    void theTokensOfAStartAreTakenOutOfTheEnvironment()
    {
        qputenv("XDG_ACTIVATION_TOKEN", "token-7");
        qputenv("DESKTOP_STARTUP_ID", "menu-1_TIME42");
        const LaunchTokens given{QStringLiteral("token-7"), QStringLiteral("menu-1_TIME42")};
        QCOMPARE(takeLaunchTokens(), given);
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
        QVERIFY(!qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"));
        QCOMPARE(takeLaunchTokens(), LaunchTokens());
    }

    void aStartupIdEndsWithTheTimeOfTheUsersAction()
    {
        const QRegularExpression form(QStringLiteral("^velquarin-.+_TIME4294967295$"));
        const auto id = newStartupId(4294967295U);
        QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
        QVERIFY(!id.contains(QLatin1Char(' ')));
    }

    void noTwoStartupIdsAreTheSame() { QVERIFY(newStartupId(7) != newStartupId(7)); }

    void onlyX11HasStartupIdsAndOnlyForWhatTheUserDoes_data()
    {
        QTest::addColumn<QString>("platform");
        QTest::addColumn<std::optional<quint32>>("userTime");
        QTest::addColumn<QString>("end");
        const std::optional<quint32> never;
        QTest::newRow("on X11") << QStringLiteral("xcb") << std::optional(0U) << QStringLiteral("_TIME0");
        QTest::newRow("on X11 by nobody") << QStringLiteral("xcb") << never << QString();
        QTest::newRow("on Wayland") << QStringLiteral("wayland") << std::optional(7U) << QString();
        QTest::newRow("on Wayland by nobody") << QStringLiteral("wayland") << never << QString();
    }

    void onlyX11HasStartupIdsAndOnlyForWhatTheUserDoes()
    {
        QFETCH(QString, platform);
        QFETCH(std::optional<quint32>, userTime);
        QFETCH(QString, end);
        const auto id = startupIdOn(platform, userTime);
        QVERIFY2(id.endsWith(end) && id.isEmpty() == end.isEmpty(), qPrintable(id));
    }

    void theEndOfAStartNamesItsIdInQuotes_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QByteArray>("inQuotes");
        QTest::newRow("a plain one") << QStringLiteral("menu-1_TIME42") << QByteArray("menu-1_TIME42");
        QTest::newRow("one with spaces") << QStringLiteral("a b") << QByteArray("a b");
        QTest::newRow("one with quotes and backslashes") << QStringLiteral("a\"b\\c") << QByteArray(R"(a\"b\\c)");
    }

    void theEndOfAStartNamesItsIdInQuotes()
    {
        QFETCH(QString, id);
        QFETCH(QByteArray, inQuotes);
        QCOMPARE(endOfStartup(id), "remove: ID=\"" + inQuotes + '"');
    }

    void elsewhereThanOnX11NoStartIsFinished() { finishStartup(QStringLiteral("menu-1_TIME42")); }

    void whatAClickSetsOffKnowsItsTime()
    {
        const InputTime time;
        TimedButton button;
        std::optional<quint32> seen;
        connect(&button, &QPushButton::clicked, this, [&] { seen = time.now(); });
        QTest::lastMouseTimestamp = 4711;
        QTest::mouseClick(&button, Qt::LeftButton);
        QVERIFY(button.releasedAt > 4711U);
        QCOMPARE(seen, std::optional(button.releasedAt));
    }

    void whatAKeySetsOffKnowsThatThereWasOne()
    {
        const InputTime time;
        QPushButton button;
        std::optional<quint32> seen;
        connect(&button, &QPushButton::clicked, this, [&] { seen = time.now(); });
        QTest::keyClick(&button, Qt::Key_Space);
        QVERIFY(seen);
    }

    void whatComesLaterThanTheClickHasNoTime()
    {
        const InputTime time;
        QPushButton button;
        QTest::mouseClick(&button, Qt::LeftButton);
        QCoreApplication::processEvents();
        QVERIFY(!time.now());
    }

    void whatNobodyClickedHasNoTime()
    {
        const InputTime time;
        QPushButton button;
        bool isClicked = false;
        connect(&button, &QPushButton::clicked, this, [&] {
            isClicked = true;
            QVERIFY(!time.now());
        });
        button.click();
        QVERIFY(isClicked);
    }
};

VELQUARIN_WINDOW_TEST(TestActivationTokens)
#include "tst_activationtokens.moc"
