// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/MenuWindow.h"

#include "Platform/Linux/StatusItem/StatusMenu.h"
#include "support/Offscreen.h"
#include "support/TestProgram.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include <memory>

using namespace velquarin;

namespace {

//! Reads the token in the moment in which a window is shown.
class TokenWatch : public QObject
{
public:
    explicit TokenWatch(QByteArray &offered)
        : m_offered(offered)
    {
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            m_offered = qgetenv("XDG_ACTIVATION_TOKEN");
        return QObject::eventFilter(watched, event);
    }

private:
    QByteArray &m_offered;
};

}  // namespace

class TestMenuWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_menu.reset(); }
    void itIsAWindowOfItsOwnWithTheKeyboard();
    void itIsExactlyAsLargeAsItsEntries();
    void theArrowsAndReturnChooseAnEntry();
    void aClickChoosesAnEntry();
    void theKeysBesideTheEntriesChooseThem();
    void otherKeysChooseNothing();
    void escapeClosesIt();
    void anotherWindowClosesIt();
    void theNextRightClickClosesIt();
    void itOpensAgainWithNothingChosen();
    void theTokenOfTheClickIsThereWhileItOpensAndNoLonger();
    void aScreenReaderFindsAMenuWithItsEntries();

private:
    void open();
    [[nodiscard]] QPoint middleOf(int entry) const;

    std::unique_ptr<MenuWindow> m_menu;
    int m_refreshed = 0;
    int m_quit = 0;
};

void TestMenuWindow::init()
{
    test::failOnAnyWarningOfOurs();
    qunsetenv("XDG_ACTIVATION_TOKEN");
    m_refreshed = 0;
    m_quit = 0;
    m_menu = std::make_unique<MenuWindow>();
    fillMenu(*m_menu, {{QStringLiteral("Refresh"), QStringLiteral("r"), [this] { ++m_refreshed; }},
                       {},
                       {QStringLiteral("Quit Velquarin"), QStringLiteral("q"), [this] { ++m_quit; }}});
}

void TestMenuWindow::open()
{
    m_menu->toggle({});
    QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
}

QPoint TestMenuWindow::middleOf(int entry) const
{
    return m_menu->actionGeometry(m_menu->actions().at(entry)).center();
}

void TestMenuWindow::itIsAWindowOfItsOwnWithTheKeyboard()
{
    open();
    QCOMPARE(m_menu->windowType(), Qt::Tool);
    QVERIFY(m_menu->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(!QApplication::activePopupWidget());
    QVERIFY(m_menu->isActiveWindow());
}

void TestMenuWindow::itIsExactlyAsLargeAsItsEntries()
{
    open();
    const auto before = m_menu->size();
    QCOMPARE(before, m_menu->sizeHint());
    QCOMPARE(m_menu->minimumSize(), m_menu->maximumSize());
    m_menu->toggle({});
    m_menu->addAction(QStringLiteral("One more entry"));
    open();
    QVERIFY(m_menu->height() > before.height());
}

void TestMenuWindow::theArrowsAndReturnChooseAnEntry()
{
    open();
    QTest::keyClick(m_menu.get(), Qt::Key_Down);
    QTest::keyClick(m_menu.get(), Qt::Key_Down);
    QCOMPARE(m_menu->activeAction(), m_menu->actions().at(2));
    QTest::keyClick(m_menu.get(), Qt::Key_Return);
    QCOMPARE(m_quit, 1);
    QCOMPARE(m_refreshed, 0);
    QVERIFY(!m_menu->isVisible());
}

void TestMenuWindow::aClickChoosesAnEntry()
{
    open();
    QTest::mouseMove(m_menu.get(), middleOf(0));
    QTest::mouseClick(m_menu.get(), Qt::LeftButton, {}, middleOf(0));
    QCOMPARE(m_refreshed, 1);
    QCOMPARE(m_quit, 0);
    QVERIFY(!m_menu->isVisible());
}

void TestMenuWindow::theKeysBesideTheEntriesChooseThem()
{
    open();
    QTest::keyClick(m_menu.get(), Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(m_refreshed, 1);
    QVERIFY(!m_menu->isVisible());
    open();
    QTest::keyClick(m_menu.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(m_quit, 1);
}

void TestMenuWindow::otherKeysChooseNothing()
{
    open();
    QTest::keyClick(m_menu.get(), Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(m_menu.get(), Qt::Key_F5);
    QTest::keyClick(m_menu.get(), Qt::Key_Return);
    QCOMPARE(m_refreshed + m_quit, 0);
    QVERIFY(m_menu->isVisible());
}

void TestMenuWindow::escapeClosesIt()
{
    open();
    QTest::keyClick(m_menu.get(), Qt::Key_Escape);
    QVERIFY(!m_menu->isVisible());
    QCOMPARE(m_refreshed + m_quit, 0);
}

void TestMenuWindow::anotherWindowClosesIt()
{
    open();
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(!m_menu->isVisible());
}

void TestMenuWindow::theNextRightClickClosesIt()
{
    open();
    m_menu->toggle({});
    QVERIFY(!m_menu->isVisible());
    open();
    QVERIFY(m_menu->isVisible());
}

void TestMenuWindow::itOpensAgainWithNothingChosen()
{
    open();
    QTest::keyClick(m_menu.get(), Qt::Key_Down);
    QVERIFY(m_menu->activeAction());
    QTest::keyClick(m_menu.get(), Qt::Key_Escape);
    open();
    QVERIFY(!m_menu->activeAction());
}

void TestMenuWindow::theTokenOfTheClickIsThereWhileItOpensAndNoLonger()
{
    QByteArray offered;
    TokenWatch watch(offered);
    m_menu->installEventFilter(&watch);
    m_menu->toggle(QStringLiteral("a-token"));
    QCOMPARE(offered, QByteArray("a-token"));
    QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

void TestMenuWindow::aScreenReaderFindsAMenuWithItsEntries()
{
    open();
    const auto *read = QAccessible::queryAccessibleInterface(m_menu.get());
    QVERIFY(read);
    QCOMPARE(read->role(), QAccessible::PopupMenu);
    QCOMPARE(read->text(QAccessible::Name), QStringLiteral("Velquarin"));
    QCOMPARE(read->childCount(), 3);
    QCOMPARE(read->child(0)->text(QAccessible::Name), QStringLiteral("Refresh"));
    QCOMPARE(read->child(2)->text(QAccessible::Name), QStringLiteral("Quit Velquarin"));
}

VELQUARIN_WINDOW_TEST(TestMenuWindow)
#include "tst_menuwindow.moc"
