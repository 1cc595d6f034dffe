// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RowList.h"

#include "Views/Controls/Style.h"

#include "support/Offscreen.h"
#include "support/Picture.h"
#include "support/TestProgram.h"

#include "SettingsWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr int heightOfRow = 40;

// Says a number, between two controls.
class NumberRow : public ListRow
{
public:
    explicit NumberRow(QWidget *parent)
        : ListRow(parent)
        , m_first(new QPushButton(this))
        , m_second(new QPushButton(this))
    {
        auto *const row = new QHBoxLayout(this);
        row->addWidget(m_first);
        row->addWidget(m_second);
        addControl(m_first);
        addControl(m_second);
    }

    void show(QUuid id, const QString &text)
    {
        setId(id);
        m_first->setText(text);
        m_second->setText(text + QLatin1Char('!'));
    }

    [[nodiscard]] QString text() const { return m_first->text(); }
    [[nodiscard]] QSize sizeHint() const override { return {200, heightOfRow}; }

private:
    QPushButton *m_first;
    QPushButton *m_second;
};

// A window with a list of numbers between two buttons; five rows and a half are in sight.
struct Window : QWidget
{
    QList<QUuid> ids;
    int made = 0;
    QPushButton *before = new QPushButton(QStringLiteral("before"), this);
    RowList *list = new RowList(
        [this](QWidget *parent) {
            ++made;
            return new NumberRow(parent);
        },
        [this](ListRow &row, int index) { static_cast<NumberRow &>(row).show(ids.at(index), nameOf(ids.at(index))); },
        this);
    QPushButton *after = new QPushButton(QStringLiteral("after"), this);

    explicit Window(int count)
    {
        auto *const column = new QVBoxLayout(this);
        column->addWidget(before);
        column->addWidget(list);
        column->addWidget(after);
        list->setFixedSize(200, 5 * heightOfRow + heightOfRow / 2);
        for (int index = 0; index < count; ++index)
            ids.append(QUuid(uint(index), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
        list->setIds(ids);
        QWidget::show();
        activateWindow();
        [this] { QVERIFY(QTest::qWaitForWindowActive(this)); }();
    }

    static QString nameOf(QUuid id) { return QString::number(id.data1); }

    void remove(int index)
    {
        ids.removeAt(index);
        list->setIds(ids);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    [[nodiscard]] QStringList shown() const
    {
        QList<NumberRow *> rows;
        for (auto *const child : list->viewport()->children()) {
            auto *const row = dynamic_cast<NumberRow *>(child);
            if (row != nullptr && !row->visibleRegion().isEmpty())
                rows.append(row);
        }
        std::ranges::sort(rows, {}, &QWidget::y);
        QStringList texts;
        for (const auto *const row : rows)
            texts.append(row->text());
        return texts;
    }

    // All rows there are, as a screen reader comes to them.
    [[nodiscard]] QStringList heard() const
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        auto *const all = QAccessible::queryAccessibleInterface(list->viewport());
        QStringList texts;
        for (int index = 0; index < all->childCount(); ++index)
            texts.append(all->child(index)->child(0)->text(QAccessible::Name));
        return texts;
    }

    [[nodiscard]] int scrolled() const { return list->verticalScrollBar()->value(); }
    void scroll(int to) const { list->verticalScrollBar()->setValue(to); }

    static QString focused()
    {
        const auto *const button = qobject_cast<QPushButton *>(QApplication::focusWidget());
        return button == nullptr ? QString() : button->text();
    }

    static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    // By the keys, from what stands before the list.
    void walkTo(int row) const
    {
        before->setFocus();
        press(Qt::Key_Tab);
        for (int step = 0; step < row; ++step)
            press(Qt::Key_Down);
    }
};

QStringList numbers(int first, int last)
{
    QStringList texts;
    for (int number = first; number <= last; ++number)
        texts.append(QString::number(number));
    return texts;
}

}  // namespace

class TestRowList : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }
    void rowsStandInTheirOrder();
    void onlyRowsInSightAreMade();
    void scrollingShowsTheOthers();
    void rowsOutOfSightAreForgotten();
    void aScreenReaderFindsTheRowsInTheirOrder();
    void theRowThatTheFocusLeftIsForgotten();
    void tabStopsAtOneRow();
    void arrowsGoToTheSameControlOfAnotherRow_data();
    void arrowsGoToTheSameControlOfAnotherRow();
    void theFocusBringsItsRowIntoSight();
    void theFocusThatComesBackBringsItsRowIntoSight();
    void theFocusOutlivesScrolling();
    void removingARowKeepsTheScrollPosition();
    void theNextRowTakesTheFocusOfARemovedOne();
    void theRowBeforeTakesTheFocusOfTheLastOne();
    void theFocusGoesStraightFromTheLastRowToTheOneBefore();
    void removingAnotherRowLeavesTheFocus();
    void theFocusStaysWithItsRowWhereThoseBeforeItGo();
    void rowsAddedAtTheEndMoveNothing();
    void anEmptyListShowsNothing();
    void whatIsPressedStaysUnderThePointer();
    void comingBackToTheWindowScrollsNothing_data();
    void comingBackToTheWindowScrollsNothing();
    void keysWithControlAreNotForTheList_data();
    void keysWithControlAreNotForTheList();
    void aListThatNeverHadARowIsNoTabStop();
    void itWantsThreeRowsAndNeedsOne();
    void theScrollBarStepsByHalfARowAndByWhatIsInSight();
    void rowsKeepClearOfABarThatIsLaidOverThem_data();
    void rowsKeepClearOfABarThatIsLaidOverThem();
    void aRowIsDrawnByNumbers_data();
    void aRowIsDrawnByNumbers();
    void theGroundEndsWithTheLastRow_data();
    void theGroundEndsWithTheLastRow();
};

void TestRowList::rowsStandInTheirOrder()
{
    const Window window(3);
    QCOMPARE(window.shown(), numbers(0, 2));
}

void TestRowList::onlyRowsInSightAreMade()
{
    const Window window(10000);
    QCOMPARE(window.shown(), numbers(0, 5));
    QVERIFY2(window.made < 10, qPrintable(QString::number(window.made)));
}

void TestRowList::scrollingShowsTheOthers()
{
    const Window window(1000);
    window.scroll(100 * heightOfRow);
    QCOMPARE(window.shown(), numbers(100, 105));
    window.scroll(window.list->verticalScrollBar()->maximum());
    QCOMPARE(window.shown(), numbers(994, 999));
}

void TestRowList::rowsOutOfSightAreForgotten()
{
    const Window window(1000);
    for (int row = 0; row < 900; row += 3)
        window.scroll(row * heightOfRow);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(window.list->viewport()->children().size() < 12);
}

void TestRowList::aScreenReaderFindsTheRowsInTheirOrder()
{
    const Window window(100);
    window.scroll(50 * heightOfRow);
    QCOMPARE(window.heard(), QStringList(QStringLiteral("0")) + numbers(50, 55));
    window.scroll(48 * heightOfRow);
    QCOMPARE(window.heard(), QStringList(QStringLiteral("0")) + numbers(48, 53));
}

void TestRowList::theRowThatTheFocusLeftIsForgotten()
{
    const Window window(100);
    window.walkTo(0);
    Window::press(Qt::Key_End);
    QCOMPARE(Window::focused(), QStringLiteral("99"));
    QCOMPARE(window.heard(), numbers(94, 99));
    Window::press(Qt::Key_Home);
    QCOMPARE(window.heard(), numbers(0, 5));
}

void TestRowList::tabStopsAtOneRow()
{
    const Window window(50);
    window.before->setFocus();
    QStringList stops;
    for (int stop = 0; stop < 3; ++stop) {
        Window::press(Qt::Key_Tab);
        stops.append(Window::focused());
    }
    QCOMPARE(stops, (QStringList{QStringLiteral("0"), QStringLiteral("0!"), QStringLiteral("after")}));
    Window::press(Qt::Key_Backtab);
    QCOMPARE(Window::focused(), QStringLiteral("0!"));
    Window::press(Qt::Key_Down);
    Window::press(Qt::Key_Backtab);
    QCOMPARE(Window::focused(), QStringLiteral("1"));
    Window::press(Qt::Key_Backtab);
    QCOMPARE(Window::focused(), QStringLiteral("before"));
    stops.clear();
    for (int stop = 0; stop < 3; ++stop) {
        Window::press(Qt::Key_Tab);
        stops.append(Window::focused());
    }
    QCOMPARE(stops, (QStringList{QStringLiteral("1"), QStringLiteral("1!"), QStringLiteral("after")}));
}

void TestRowList::arrowsGoToTheSameControlOfAnotherRow_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("focused");
    QTest::newRow("down") << int(Qt::Key_Down) << QStringLiteral("11!");
    QTest::newRow("up") << int(Qt::Key_Up) << QStringLiteral("9!");
    QTest::newRow("a page down") << int(Qt::Key_PageDown) << QStringLiteral("15!");
    QTest::newRow("a page up") << int(Qt::Key_PageUp) << QStringLiteral("5!");
    QTest::newRow("to the first") << int(Qt::Key_Home) << QStringLiteral("0!");
    QTest::newRow("to the last") << int(Qt::Key_End) << QStringLiteral("49!");
}

void TestRowList::arrowsGoToTheSameControlOfAnotherRow()
{
    QFETCH(int, key);
    QFETCH(QString, focused);
    const Window window(50);
    window.walkTo(0);
    Window::press(Qt::Key_Tab);
    for (int step = 0; step < 10; ++step)
        Window::press(Qt::Key_Down);
    QCOMPARE(Window::focused(), QStringLiteral("10!"));
    Window::press(Qt::Key(key));
    QCOMPARE(Window::focused(), focused);
}

void TestRowList::theFocusBringsItsRowIntoSight()
{
    const Window window(50);
    window.walkTo(0);
    Window::press(Qt::Key_End);
    QVERIFY(window.shown().contains(QStringLiteral("49")));
    QVERIFY(!QApplication::focusWidget()->visibleRegion().isEmpty());
    Window::press(Qt::Key_Home);
    QCOMPARE(window.scrolled(), 0);
}

void TestRowList::theFocusThatComesBackBringsItsRowIntoSight()
{
    const Window window(50);
    window.walkTo(0);
    Window::press(Qt::Key_Backtab);
    window.scroll(30 * heightOfRow);
    Window::press(Qt::Key_Tab);
    QCOMPARE(Window::focused(), QStringLiteral("0"));
    QCOMPARE(window.scrolled(), 0);
}

void TestRowList::theFocusOutlivesScrolling()
{
    const Window window(1000);
    window.walkTo(0);
    window.scroll(500 * heightOfRow);
    QCOMPARE(Window::focused(), QStringLiteral("0"));
    Window::press(Qt::Key_Down);
    QCOMPARE(Window::focused(), QStringLiteral("1"));
    QVERIFY(window.shown().contains(QStringLiteral("1")));
}

void TestRowList::removingARowKeepsTheScrollPosition()
{
    Window window(100);
    window.scroll(30 * heightOfRow);
    window.remove(32);
    QCOMPARE(window.scrolled(), 30 * heightOfRow);
    QCOMPARE(window.shown(), numbers(30, 31) + numbers(33, 36));
}

void TestRowList::theNextRowTakesTheFocusOfARemovedOne()
{
    Window window(10);
    window.walkTo(0);
    Window::press(Qt::Key_Tab);
    Window::press(Qt::Key_Down);
    window.remove(1);
    QCOMPARE(Window::focused(), QStringLiteral("2!"));
    window.remove(1);
    QCOMPARE(Window::focused(), QStringLiteral("3!"));
}

void TestRowList::theRowBeforeTakesTheFocusOfTheLastOne()
{
    Window window(3);
    window.walkTo(0);
    Window::press(Qt::Key_End);
    window.remove(2);
    QCOMPARE(Window::focused(), QStringLiteral("1"));
}

// A screen reader would say what is beside the list.
void TestRowList::theFocusGoesStraightFromTheLastRowToTheOneBefore()
{
    Window window(10);
    window.walkTo(0);
    Window::press(Qt::Key_Tab);
    Window::press(Qt::Key_End);
    QStringList stops;
    const auto note = [&stops] { stops.append(Window::focused()); };
    const auto watch = QObject::connect(qApp, &QApplication::focusChanged, &window, note);
    window.remove(9);
    QObject::disconnect(watch);
    QCOMPARE(stops, QStringList(QStringLiteral("8!")));
}

void TestRowList::removingAnotherRowLeavesTheFocus()
{
    Window window(10);
    window.walkTo(3);
    window.remove(0);
    QCOMPARE(Window::focused(), QStringLiteral("3"));
    Window::press(Qt::Key_Down);
    QCOMPARE(Window::focused(), QStringLiteral("4"));
}

void TestRowList::theFocusStaysWithItsRowWhereThoseBeforeItGo()
{
    Window window(10);
    window.walkTo(3);
    window.ids.remove(0, 3);
    window.list->setIds(window.ids);
    QCOMPARE(Window::focused(), QStringLiteral("3"));
    Window::press(Qt::Key_Down);
    QCOMPARE(Window::focused(), QStringLiteral("4"));
}

void TestRowList::rowsAddedAtTheEndMoveNothing()
{
    Window window(100);
    window.walkTo(0);
    window.scroll(30 * heightOfRow);
    window.ids.append(QUuid::createUuid());
    window.list->setIds(window.ids);
    QCOMPARE(window.scrolled(), 30 * heightOfRow);
    QCOMPARE(window.shown(), numbers(30, 35));
}

void TestRowList::anEmptyListShowsNothing()
{
    Window window(1);
    window.remove(0);
    QCOMPARE(window.shown(), QStringList());
    window.walkTo(0);
    QCOMPARE(Window::focused(), QStringLiteral("after"));
}

// The row at the lower edge is half in sight: the list must not move between press and release.
void TestRowList::whatIsPressedStaysUnderThePointer()
{
    const Window window(50);
    auto *const row = window.list->viewport()->childAt(20, 5 * heightOfRow + 10);
    auto *const button = qobject_cast<QPushButton *>(row);
    QVERIFY(button != nullptr);
    QCOMPARE(button->text(), QStringLiteral("5"));
    const QSignalSpy clicks(button, &QPushButton::clicked);
    const auto place = button->mapTo(&window, QPoint(5, 5));
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place);
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(window.scrolled(), 0);
    QCOMPARE(Window::focused(), QStringLiteral("5"));
}

void TestRowList::comingBackToTheWindowScrollsNothing_data()
{
    QTest::addColumn<int>("reason");
    QTest::newRow("from another window") << int(Qt::ActiveWindowFocusReason);
    QTest::newRow("from a pop-up") << int(Qt::PopupFocusReason);
}

void TestRowList::comingBackToTheWindowScrollsNothing()
{
    QFETCH(int, reason);
    const Window window(1000);
    window.walkTo(0);
    window.scroll(500 * heightOfRow);
    QFocusEvent back(QEvent::FocusIn, Qt::FocusReason(reason));
    QApplication::sendEvent(QApplication::focusWidget(), &back);
    QCOMPARE(window.scrolled(), 500 * heightOfRow);
    Window::press(Qt::Key_Down);
    QCOMPARE(Window::focused(), QStringLiteral("1"));
}

void TestRowList::keysWithControlAreNotForTheList_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("page down") << int(Qt::Key_PageDown);
    QTest::newRow("page up") << int(Qt::Key_PageUp);
    QTest::newRow("end") << int(Qt::Key_End);
}

void TestRowList::keysWithControlAreNotForTheList()
{
    QFETCH(int, key);
    const Window window(50);
    window.walkTo(0);
    Window::press(Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), Qt::ControlModifier);
    QCOMPARE(Window::focused(), QStringLiteral("1"));
}

void TestRowList::aListThatNeverHadARowIsNoTabStop()
{
    const Window window(0);
    window.walkTo(0);
    QCOMPARE(Window::focused(), QStringLiteral("after"));
    QCOMPARE(window.list->focusPolicy(), Qt::NoFocus);
}

void TestRowList::itWantsThreeRowsAndNeedsOne()
{
    const Window window(1);
    QCOMPARE(window.list->sizeHint(), QSize(0, 3 * heightOfRow));
    QCOMPARE(window.list->minimumSizeHint(), QSize(0, heightOfRow));
}

void TestRowList::theScrollBarStepsByHalfARowAndByWhatIsInSight()
{
    const Window window(50);
    auto *const bar = window.list->verticalScrollBar();
    const auto inSight = window.list->viewport()->height();
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 50 * heightOfRow - inSight);
    bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    QCOMPARE(window.scrolled(), heightOfRow / 2);
    bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(window.scrolled(), heightOfRow / 2 + inSight);
    const Window small(2);
    QCOMPARE(small.list->verticalScrollBar()->maximum(), 0);
    QVERIFY(!small.list->horizontalScrollBar()->isVisible());
}

void TestRowList::rowsKeepClearOfABarThatIsLaidOverThem_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<QMargins>("free");
    QTest::newRow("from the left") << Qt::LeftToRight << QMargins(0, 0, style::points(4), 0);
    QTest::newRow("from the right") << Qt::RightToLeft << QMargins(style::points(4), 0, 0, 0);
}

void TestRowList::rowsKeepClearOfABarThatIsLaidOverThem()
{
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(QMargins, free);
    Window window(6);
    window.setLayoutDirection(direction);
    window.list->setIds(window.ids);
    const auto firstRow = [&window] { return window.list->viewport()->childAt(40, 20)->parentWidget()->geometry(); };
    const QRect all(0, 0, window.list->viewport()->width(), heightOfRow);
    QCOMPARE(firstRow(), all.marginsRemoved(free));
    window.remove(0);
    QCOMPARE(firstRow(), all);
}

void TestRowList::aRowIsDrawnByNumbers_data()
{
    QTest::addColumn<bool>("isLast");
    QTest::addColumn<bool>("isUnderPointer");
    QTest::newRow("one of many") << false << false;
    QTest::newRow("one of many, under the pointer") << false << true;
    QTest::newRow("the last one") << true << false;
    QTest::newRow("the last one, under the pointer") << true << true;
}

void TestRowList::aRowIsDrawnByNumbers()
{
    QFETCH(bool, isLast);
    QFETCH(bool, isUnderPointer);
    const FontOfPixels font(13);
    ListRow row(nullptr);
    row.resize(100, 40);
    row.setLast(isLast);
    row.setAttribute(Qt::WA_UnderMouse, isUnderPointer);
    const auto expected = drawnOn(row, [&](QPainter &painter) {
        if (!isLast)
            painter.fillRect(QRect(10, 39, 80, 1), style::divider(row.palette()));
        painter.setBrush(style::hoveredGround(row.palette()));
        if (isUnderPointer)
            painter.drawRoundedRect(QRect(3, 3, 94, 33), 5, 5);
    });
    QCOMPARE(pictureOf(row, 1), expected);
}

void TestRowList::theGroundEndsWithTheLastRow_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("height");
    QTest::newRow("one row") << 1 << heightOfRow;
    QTest::newRow("two rows") << 2 << 2 * heightOfRow;
    QTest::newRow("more than there is room for") << 30 << 5 * heightOfRow + heightOfRow / 2;
}

void TestRowList::theGroundEndsWithTheLastRow()
{
    QFETCH(int, rows);
    QFETCH(int, height);
    const FontOfPixels font(13);
    const Window window(rows);
    auto &viewport = *window.list->viewport();
    for (auto *const row : viewport.findChildren<ListRow *>())
        row->hide();
    const auto expected = drawnOn(viewport, [&](QPainter &painter) {
        painter.setBrush(style::groupGround(viewport.palette()));
        painter.drawRoundedRect(QRectF(0, 0, viewport.width(), height), 8, 8);
    });
    QCOMPARE(pictureOf(viewport, 1), expected);
}

VELQUARIN_WINDOW_TEST(TestRowList)
#include "tst_rowlist.moc"
