// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusMenu.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QMenu>
#include <QTest>

using namespace velquarin;

class TestStatusMenu : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void entriesAreShownWithTheirKeys();
    void aMenuIsFilledAnew();
    void anAmpersandIsShownAsItIs();
    void theOpenEntryComesFirst();
    void aWindowOpensWhereTheClickWas_data();
    void aWindowOpensWhereTheClickWas();
};

void TestStatusMenu::entriesAreShownWithTheirKeys()
{
    int refreshed = 0;
    QMenu menu;
    fillMenu(menu, {{QStringLiteral("Refresh"), QStringLiteral("r"), [&] { ++refreshed; }},
                    {},
                    {QStringLiteral("Quit Velquarin"), QStringLiteral("q"), {}}});
    const auto actions = menu.actions();
    QCOMPARE(actions.size(), 3);
    QCOMPARE(actions.at(0)->text(), QStringLiteral("Refresh"));
    QCOMPARE(actions.at(0)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_R));
    QVERIFY(actions.at(0)->isShortcutVisibleInContextMenu());
    QVERIFY(actions.at(1)->isSeparator());
    QCOMPARE(actions.at(2)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    actions.at(0)->trigger();
    QCOMPARE(refreshed, 1);
}

void TestStatusMenu::aMenuIsFilledAnew()
{
    QMenu menu;
    fillMenu(menu, {{QStringLiteral("One"), {}, {}}, {QStringLiteral("Two"), {}, {}}});
    fillMenu(menu, {{QStringLiteral("Three"), {}, {}}});
    QCOMPARE(menu.actions().size(), 1);
    QCOMPARE(menu.actions().at(0)->text(), QStringLiteral("Three"));
}

void TestStatusMenu::anAmpersandIsShownAsItIs()
{
    QMenu menu;
    fillMenu(menu, {{QStringLiteral("Bread & Butter"), {}, {}}});
    QCOMPARE(menu.actions().at(0)->text(), QStringLiteral("Bread && Butter"));
}

void TestStatusMenu::theOpenEntryComesFirst()
{
    bool opened = false;
    const auto entries = withOpenEntry({{QStringLiteral("Refresh"), {}, {}}}, [&] { opened = true; });
    QCOMPARE(entries.size(), 3);
    QCOMPARE(entries.at(0).text, QStringLiteral("Open Velquarin"));
    QVERIFY(entries.at(0).keyEquivalent.isEmpty());
    QVERIFY(entries.at(1).isSeparator());
    QCOMPARE(entries.at(2).text, QStringLiteral("Refresh"));
    entries.at(0).action();
    QVERIFY(opened);
}

void TestStatusMenu::aWindowOpensWhereTheClickWas_data()
{
    QTest::addColumn<QPoint>("said");
    QTest::addColumn<QPoint>("cursor");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("a host that tells the truth is believed") << QPoint(927, 16) << QPoint(930, 14) << QPoint(927, 16);
    QTest::newRow("also on the second screen") << QPoint(2000, 16) << QPoint(930, 14) << QPoint(2000, 16);
    QTest::newRow("a point counted from the panel gives way") << QPoint(0, 26) << QPoint(930, 14) << QPoint(930, 14);
    QTest::newRow("a point counted from the item gives way") << QPoint(9, 13) << QPoint(930, 14) << QPoint(930, 14);
    QTest::newRow("a point beyond all screens gives way") << QPoint(-5, 9000) << QPoint(930, 14) << QPoint(930, 14);
    QTest::newRow("without a pointer the host is all there is") << QPoint(9, 13) << QPoint(-1, -1) << QPoint(9, 13);
}

void TestStatusMenu::aWindowOpensWhereTheClickWas()
{
    QFETCH(QPoint, said);
    QFETCH(QPoint, cursor);
    QFETCH(QPoint, expected);
    QCOMPARE(believablePosition(said, cursor, {{0, 0, 1024, 768}, {1024, 0, 1280, 1024}}), expected);
}

VELQUARIN_WINDOW_TEST(TestStatusMenu)
#include "tst_statusmenu.moc"
