// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Desktop/StatusHost.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;

Q_DECLARE_METATYPE(velquarin::StatusHost)

namespace {

constexpr StatusHost labelAndMenu{CountDisplay::Label, true, false};
constexpr StatusHost label{CountDisplay::Label, false, false};
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
    void theVersionOfMateIsReadFromItsFile_data();
    void theVersionOfMateIsReadFromItsFile();
    void aProcessThatIsGoneIsToldByTheDesktop();
};

void TestStatusHost::aHostIsKnownByItsProcess_data()
{
    QTest::addColumn<QByteArray>("process");
    QTest::addColumn<QString>("mateVersion");
    QTest::addColumn<StatusHost>("expected");

    const auto row = [](const char *name, const char *process, const StatusHost &expected, const char *mate = "") {
        QTest::newRow(name) << QByteArray(process) << QString::fromLatin1(mate) << expected;
    };
    row("GNOME Shell writes labels and opens only the menu", "gnome-shell", labelAndMenu);
    row("the Ayatana indicators do as well", "ayatana-indicat", labelAndMenu);
    row("so do the indicators they came from", "indicator-appli", labelAndMenu);
    row("an old MATE panel loses an item with a label", "notification-ar", squareWithoutLabel, "1.26.0");
    row("so does the last version before the mend", "notification-ar", squareWithoutLabel, "1.27.1");
    row("a mended MATE panel writes labels", "notification-ar", label, "1.27.2");
    row("a later MATE panel writes labels", "notification-ar", label, "1.28.0");
    row("a MATE panel of unknown version is taken for an old one", "notification-ar", squareWithoutLabel);
    row("waybar shows wide pictures", "waybar", wide);
    row("Cinnamon's watcher shows wide pictures", "xapp-sn-watcher", wide);
    row("Plasma 5 shows squares", "kded5", square);
    row("Plasma 6 shows squares", "kded6", square);
    row("XFCE shows squares", "panel-8-systray", square);
    row("LXQt shows squares", "lxqt-panel", square);
    row("swaybar refuses anything but squares, and takes their colours for multiplied", "swaybar", multipliedSquare);
    row("Budgie shows squares", "budgie-panel", square);
    row("a host that nobody knows gets squares", "somebody-else", square);
    row("the version of MATE says nothing about other hosts", "gnome-shell", labelAndMenu, "1.26.0");
}

void TestStatusHost::aHostIsKnownByItsProcess()
{
    QFETCH(QByteArray, process);
    QFETCH(QString, mateVersion);
    QFETCH(StatusHost, expected);
    const auto version = QVersionNumber::fromString(mateVersion);
    QCOMPARE(statusHost(process, {}, version), expected);
    // A process that can be read is believed, whatever the desktop calls itself.
    QCOMPARE(statusHost(process, QStringLiteral("GNOME"), version), expected);
    QCOMPARE(statusHost(process, QStringLiteral("X-Cinnamon"), version), expected);
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
    QTest::newRow("MATE of an unknown version") << QStringLiteral("MATE") << squareWithoutLabel;
    QTest::newRow("KDE") << QStringLiteral("KDE") << square;
    QTest::newRow("XFCE") << QStringLiteral("XFCE") << square;
    QTest::newRow("nothing said") << QString() << square;
}

void TestStatusHost::theDesktopDecidesWhereTheProcessCannotBeRead()
{
    QFETCH(QString, desktop);
    QFETCH(StatusHost, expected);
    QCOMPARE(statusHost({}, desktop, {}), expected);
}

void TestStatusHost::theVersionOfMateIsReadFromItsFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QVersionNumber>("expected");
    QTest::newRow("a whole file") << QByteArray("<?xml version=\"1.0\"?>\n<mate-version>\n  <platform>1</platform>\n"
                                                "  <minor>28</minor>\n  <micro>2</micro>\n  <!-- a date -->\n"
                                                "</mate-version>\n")
                                  << QVersionNumber(1, 28, 2);
    QTest::newRow("no file") << QByteArray() << QVersionNumber();
    QTest::newRow("a file cut short") << QByteArray("<mate-version><platform>1</platform><min") << QVersionNumber();
    QTest::newRow("another file") << QByteArray("<html><platform>9</platform></html>") << QVersionNumber();
}

void TestStatusHost::theVersionOfMateIsReadFromItsFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QVersionNumber, expected);
    QCOMPARE(mateVersionIn(file), expected);
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
