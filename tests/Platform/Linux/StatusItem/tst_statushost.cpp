// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusHost.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;

Q_DECLARE_METATYPE(velquarin::StatusHost)

namespace {

constexpr StatusHost labelAndMenu{CountDisplay::Label, true, false};
constexpr StatusHost wide{CountDisplay::Wide, false, false};
constexpr StatusHost square{CountDisplay::Square, false, false};
constexpr StatusHost multipliedSquare{CountDisplay::Square, false, false, true};
constexpr StatusHost squareWithoutLabel{CountDisplay::Square, false, true};

}  // namespace

class TestStatusHost : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void aHostIsKnownByItsProcess_data();
    void aHostIsKnownByItsProcess();
    void theDesktopDecidesWhereTheProcessCannotBeRead_data();
    void theDesktopDecidesWhereTheProcessCannotBeRead();
    void aProcessThatIsGoneIsToldByTheDesktop();
};

void TestStatusHost::aHostIsKnownByItsProcess_data()
{
    QTest::addColumn<QByteArray>("process");
    QTest::addColumn<StatusHost>("expected");

    const auto row = [](const char *name, const char *process, const StatusHost &expected) {
        QTest::newRow(name) << QByteArray(process) << expected;
    };
    row("GNOME Shell writes labels and opens only the menu", "gnome-shell", labelAndMenu);
    row("the Ayatana indicators do as well", "ayatana-indicat", labelAndMenu);
    row("so do the indicators they came from", "indicator-appli", labelAndMenu);
    row("an old MATE panel loses an item with a label", "notification-ar", squareWithoutLabel);
    row("waybar shows wide pictures", "waybar", wide);
    row("Cinnamon's watcher shows wide pictures", "xapp-sn-watcher", wide);
    row("Plasma 5 shows squares", "kded5", square);
    row("Plasma 6 shows squares", "kded6", square);
    row("XFCE shows squares", "panel-8-systray", square);
    row("LXQt shows squares", "lxqt-panel", square);
    row("swaybar refuses anything but squares, and takes their colours for multiplied", "swaybar", multipliedSquare);
    row("Budgie shows squares", "budgie-panel", square);
    row("a host that nobody knows gets squares", "somebody-else", square);
}

void TestStatusHost::aHostIsKnownByItsProcess()
{
    QFETCH(QByteArray, process);
    QFETCH(StatusHost, expected);
    QCOMPARE(statusHost(process, {}), expected);
    // A process that can be read is believed, whatever the desktop calls itself.
    QCOMPARE(statusHost(process, QStringLiteral("GNOME")), expected);
    QCOMPARE(statusHost(process, QStringLiteral("X-Cinnamon")), expected);
}

void TestStatusHost::theDesktopDecidesWhereTheProcessCannotBeRead_data()
{
    QTest::addColumn<QString>("desktop");
    QTest::addColumn<StatusHost>("expected");
    QTest::newRow("GNOME") << QStringLiteral("GNOME") << labelAndMenu;
    QTest::newRow("Ubuntu's GNOME") << QStringLiteral("ubuntu:GNOME") << labelAndMenu;
    QTest::newRow("Budgie is not the GNOME it resembles") << QStringLiteral("Budgie:GNOME") << square;
    QTest::newRow("Flashback is not the GNOME it resembles") << QStringLiteral("GNOME-Flashback:GNOME") << square;
    QTest::newRow("Unity") << QStringLiteral("Unity:Unity7:ubuntu") << labelAndMenu;
    QTest::newRow("Cinnamon") << QStringLiteral("X-Cinnamon") << wide;
    QTest::newRow("MATE") << QStringLiteral("MATE") << squareWithoutLabel;
    QTest::newRow("KDE") << QStringLiteral("KDE") << square;
    QTest::newRow("XFCE") << QStringLiteral("XFCE") << square;
    QTest::newRow("nothing said") << QString() << square;
}

void TestStatusHost::theDesktopDecidesWhereTheProcessCannotBeRead()
{
    QFETCH(QString, desktop);
    QFETCH(StatusHost, expected);
    QCOMPARE(statusHost({}, desktop), expected);
}

void TestStatusHost::aProcessThatIsGoneIsToldByTheDesktop()
{
    qputenv("XDG_CURRENT_DESKTOP", "X-Cinnamon");
    QCOMPARE(statusHostOfProcess(0), wide);
    qunsetenv("XDG_CURRENT_DESKTOP");
    QCOMPARE(statusHostOfProcess(0), square);
}

VELQUARIN_TEST(TestStatusHost)
#include "tst_statushost.moc"
