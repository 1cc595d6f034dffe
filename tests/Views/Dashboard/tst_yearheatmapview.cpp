// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/YearHeatmapView.h"

#include "Platform/DateTexts.h"
#include "Views/Controls/Style.h"
#include "Views/Dashboard/HeatmapGeometry.h"
#include "Views/Dashboard/YearSection.h"

#include "support/FakeClock.h"
#include "support/Offscreen.h"
#include "support/TestProgram.h"
#include "support/WhatIsShown.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <cmath>
#include <optional>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// A Friday: six days of the week, the last of them today, and one clear cell.
const char *const noon = "2026-11-20T12:00:00Z";
constexpr int today = 369;
constexpr int firstDay = 5;

QPalette light()
{
    return {QColor(0xf2f2f2), QColor(0xf2f2f2)};
}

QPalette dark()
{
    QPalette palette(QColor(0x2b2b2b), QColor(0x2b2b2b));
    palette.setColor(QPalette::WindowText, QColor(0xf0f0f0));
    return palette;
}

DayCounts history(const QMap<int, qint64> &countsByDaysAgo)
{
    const auto calendar = calendarIn("UTC");
    DayCounts counts;
    for (auto entry = countsByDaysAgo.begin(); entry != countsByDaysAgo.end(); ++entry)
        counts[calendar.addDays(calendar.startOfDay(instant(noon)), -entry.key()).value()] = entry.value();
    return counts;
}

void show(YearHeatmapView &view, const DayCounts &counts, const char *now = noon, const char *locale = "en_US")
{
    const auto calendar = calendarIn("UTC");
    view.setContents(counts, calendar, instant(now), DateTexts(locale, calendar));
}

// As large as it likes to be, which a screen of few pixels a point would not give to a window by itself.
void open(YearHeatmapView &view)
{
    view.resize(view.sizeHint());
    view.show();
    view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    view.clearFocus();
    QApplication::processEvents();
}

// A square that the pointer reaches on every screen.
constexpr int somewhere = 70;

HeatmapGeometry shapesOf(const YearHeatmapView &view, Qt::LayoutDirection direction = Qt::LeftToRight)
{
    return {{53, static_cast<int>(view.labels().size()), direction}, style::scale() * view.devicePixelRatioF()};
}

bool isNear(const QColor &left, const QColor &right)
{
    return qAbs(left.red() - right.red()) <= 2 && qAbs(left.green() - right.green()) <= 2 &&
           qAbs(left.blue() - right.blue()) <= 2;
}

QColor over(const QPalette &palette, style::Accent accent, double opacity)
{
    const auto ground = palette.color(QPalette::Window);
    const auto top = style::accent(palette, accent);
    const auto mix = [opacity](int below, int above) { return qRound(below * (1 - opacity) + above * opacity); };
    return {mix(ground.red(), top.red()), mix(ground.green(), top.green()), mix(ground.blue(), top.blue())};
}

}  // namespace

class TestYearHeatmapView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void theYearIsReadWhole();
    void itIsAsLargeAsItsPicture();
    void todaysColumnIsToScrollTo();
    void squaresHaveTheColourOfTheirCount_data();
    void squaresHaveTheColourOfTheirCount();
    void squaresAreSharpWhereverTheViewBegins();
    void theSquareUnderThePointerHasARing();
    void theRingStaysUnderThePointerWhileTheYearIsScrolled();
    void thePointerPaintsNoMoreThanItsSquares();
    void whatLooksAsBeforeIsNotPaintedAgain();
    void aNewCommitRepaintsItsSquareAlone();
    void aNewDayMovesTheGridOn();
    void aYearThatComesTakesItsRoom();
    void anotherMonthRepaintsAll();
    void monthsAreWritten();
    void noLetterOfAMonthIsCutOff();
    void aMonthIsReadFromTheLeftEverywhere();
    void theYearKeepsTheCurrentSquareInSight_data();
    void theYearKeepsTheCurrentSquareInSight();
    void thePointerIsToldTheDay();
    void nothingIsToldWhereThereIsNoDay();
    void theKeysMoveBetweenTheDays_data();
    void theKeysMoveBetweenTheDays();
    void theKeysGoTheOtherWayFromRightToLeft();
    void theKeysShowTheToolTip();
    void otherKeysAreLeftToOthers();
    void theKeysStayOnTheirDayWhenTheGridMovesOn();
    void theSquareThatTheKeysReachedIsMarked();
    void aMagnifierIsToldWhereTheKeysAre();
    void squaresAndTheMarkAreDrawnByNumbers();
    void onlyTheKeyboardBringsTheFocus();
    void aScrollAreaKeepsTheCurrentSquareInSight();
    void fromRightToLeftTheOldestWeekIsAtTheRight();
    void aScreenReaderSeesEverySquareAndLabel();
    void aScreenReaderFindsTheSquareUnderAPoint();
    void aScreenReaderSeesWhereTheKeysAre();
    void squaresOutOfRangeAreInvisibleToAScreenReader();
    void aSquareHoldsNothingAndSaysWhereItIs();
    void aSquareOutOfSightSaysSo();
    void noSquareOutlivesItsYearForAScreenReader();
    void aSquareIsNoneWhileItsYearIsTakenApart();
    void aYearWithoutAGridIsEmpty();
};

void TestYearHeatmapView::init()
{
    failOnAnyWarningOfOurs();
    auto font = QApplication::font();
    font.setPixelSize(13);
    QApplication::setFont(font);
}

void TestYearHeatmapView::cleanup()
{
    QToolTip::hideText();
}

// The first, since what it looks for holds for the whole process from then on.
void TestYearHeatmapView::theYearIsReadWhole()
{
    YearSection section;
    auto *const area = section.findChild<QScrollArea *>();
    const auto parts = area->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    QCOMPARE(QAccessible::queryAccessibleInterface(area)->childCount(), parts.size());
}

void TestYearHeatmapView::itIsAsLargeAsItsPicture()
{
    YearHeatmapView view;
    show(view, {});
    const auto ratio = view.devicePixelRatioF();
    const auto pixels = shapesOf(view).size();
    QCOMPARE(view.sizeHint(), QSize(qCeil(pixels.width() / ratio), qCeil(pixels.height() / ratio)));
    QCOMPARE(view.minimumSizeHint(), view.sizeHint());
    QCOMPARE(view.sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
}

void TestYearHeatmapView::todaysColumnIsToScrollTo()
{
    YearHeatmapView view;
    show(view, {});
    QCOMPARE(view.todayX(), view.rectangleOf(today).center().x());
    QVERIFY(view.todayX() > view.sizeHint().width() * 9 / 10);
}

void TestYearHeatmapView::squaresHaveTheColourOfTheirCount_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("in a light palette") << light();
    QTest::newRow("in a dark palette") << dark();
}

void TestYearHeatmapView::squaresHaveTheColourOfTheirCount()
{
    QFETCH(QPalette, palette);
    YearHeatmapView view;
    view.setPalette(palette);
    view.resize(view.sizeHint());
    show(view, history({{0, 1}, {1, 4}, {2, 8}, {3, 11}, {4, 0}}));
    view.resize(view.sizeHint());
    const auto image = view.grab().toImage();
    const auto colorOf = [&](int cell) { return image.pixelColor(shapesOf(view).cell(cell).center()); };
    using style::Accent;
    QVERIFY(isNear(colorOf(today), over(palette, Accent::HeatGreen, 0.3)));
    QVERIFY(isNear(colorOf(today - 1), over(palette, Accent::HeatGreen, 0.5)));
    QVERIFY(isNear(colorOf(today - 2), over(palette, Accent::HeatGreen, 0.7)));
    QVERIFY(isNear(colorOf(today - 3), over(palette, Accent::HeatGreen, 0.9)));
    QVERIFY(isNear(colorOf(today - 4), over(palette, Accent::Grey, 0.15)));
    QVERIFY(isNear(colorOf(today - 5), over(palette, Accent::Grey, 0.15)));
    QCOMPARE(colorOf(today + 1), palette.color(QPalette::Window));
    QCOMPARE(colorOf(firstDay - 1), palette.color(QPalette::Window));
}

// At an odd place of a window with a broken scale the widget itself begins between two pixels.
void TestYearHeatmapView::squaresAreSharpWhereverTheViewBegins()
{
    QWidget window;
    window.setPalette(light());
    YearHeatmapView view(&window);
    show(view, history({{8, 20}}));
    view.setGeometry({QPoint(3, 5), view.sizeHint()});
    window.resize(view.geometry().bottomRight().x() + 20, view.geometry().bottom() + 20);
    const auto image = window.grab().toImage();
    const auto ratio = view.devicePixelRatioF();
    const auto square = shapesOf(view).cell(today - 8).translated(qRound(3 * ratio), qRound(5 * ratio));
    const auto inside = image.pixelColor(square.center());
    const auto x = square.center().x();
    const auto y = square.center().y();
    for (const auto point :
         {QPoint(square.left(), y), QPoint(square.right(), y), QPoint(x, square.top()), QPoint(x, square.bottom())})
        QCOMPARE(image.pixelColor(point), inside);
    for (const auto point : {QPoint(square.left() - 1, y), QPoint(square.right() + 1, y), QPoint(x, square.top() - 1),
                             QPoint(x, square.bottom() + 1)})
        QCOMPARE(image.pixelColor(point), light().color(QPalette::Window));
}

void TestYearHeatmapView::theSquareUnderThePointerHasARing()
{
    YearHeatmapView view;
    show(view, history({{0, 1}}));
    open(view);
    const auto edgeOf = [&view](int cell) {
        const auto square = shapesOf(view).cell(cell);
        return view.grab().toImage().pixelColor(square.center().x(), square.top());
    };
    const auto bare = edgeOf(somewhere);
    QTest::mouseMove(&view, view.rectangleOf(somewhere).center());
    QTRY_COMPARE(edgeOf(somewhere), style::ink(view.palette(), style::Ink::Primary));
    QTest::mouseMove(&view, view.rectangleOf(somewhere + 1).center());
    QTRY_COMPARE(edgeOf(somewhere), bare);
    QCOMPARE(edgeOf(somewhere + 1), style::ink(view.palette(), style::Ink::Primary));
    QEvent leaving(QEvent::Leave);
    QApplication::sendEvent(&view, &leaving);
    QVERIFY(edgeOf(somewhere + 1) != style::ink(view.palette(), style::Ink::Primary));
    // Before the first of the 365 days there is no square.
    QTest::mouseMove(&view, view.rectangleOf(0).center());
    QApplication::processEvents();
    QVERIFY(edgeOf(0) != style::ink(view.palette(), style::Ink::Primary));
}

void TestYearHeatmapView::theRingStaysUnderThePointerWhileTheYearIsScrolled()
{
    QScrollArea area;
    auto *const view = new YearHeatmapView;
    show(*view, history({{0, 1}}));
    view->resize(view->sizeHint());
    area.setWidget(view);
    area.resize(200, view->height() + 20);
    area.show();
    QVERIFY(QTest::qWaitForWindowExposed(&area));
    const auto hasRing = [view](int cell) {
        const auto square = shapesOf(*view).cell(cell);
        return view->grab().toImage().pixelColor(square.center().x(), square.top()) ==
               style::ink(view->palette(), style::Ink::Primary);
    };
    const auto place = view->mapToGlobal(view->rectangleOf(somewhere).center());
    QCursor::setPos(place);
    QTest::mouseMove(area.windowHandle(), area.mapFromGlobal(place));
    QTRY_VERIFY(hasRing(somewhere));
    constexpr int nextWeek = somewhere + 7;
    const auto step = view->rectangleOf(nextWeek).x() - view->rectangleOf(somewhere).x();
    area.horizontalScrollBar()->setValue(area.horizontalScrollBar()->value() + step);
    QVERIFY(hasRing(nextWeek));
    QVERIFY(!hasRing(somewhere));
}

void TestYearHeatmapView::thePointerPaintsNoMoreThanItsSquares()
{
    YearHeatmapView view;
    show(view, history({{0, 1}}));
    open(view);
    QTest::mouseMove(&view, view.rectangleOf(somewhere).center());
    QApplication::processEvents();
    PaintRecorder painted(view);
    QTest::mouseMove(&view, view.rectangleOf(somewhere + 1).center());
    QTRY_COMPARE(painted.region, QRegion(view.rectangleOf(somewhere)) + view.rectangleOf(somewhere + 1));
}

void TestYearHeatmapView::whatLooksAsBeforeIsNotPaintedAgain()
{
    YearHeatmapView view;
    show(view, history({{0, 1}}));
    open(view);
    PaintRecorder painted(view);
    show(view, history({{0, 1}, {1, 0}, {400, 7}}), "2026-11-20T23:59:59Z");
    QApplication::processEvents();
    QVERIFY(painted.region.isEmpty());
}

void TestYearHeatmapView::aNewCommitRepaintsItsSquareAlone()
{
    YearHeatmapView view;
    show(view, history({{0, 1}}));
    open(view);
    PaintRecorder painted(view);
    show(view, history({{0, 2}}));
    QTRY_VERIFY(!painted.region.isEmpty());
    QCOMPARE(painted.region.boundingRect(), view.rectangleOf(today));
}

void TestYearHeatmapView::aNewDayMovesTheGridOn()
{
    YearHeatmapView view;
    show(view, history({{0, 1}}));
    show(view, history({{0, 1}}), "2026-11-21T00:00:00Z");
    QCOMPARE(view.textOf(today), QStringLiteral("Nov 20, 2026: 1 commit"));
    QCOMPARE(view.textOf(today + 1), QStringLiteral("Nov 21, 2026: 0 commits"));
    QCOMPARE(view.textOf(firstDay), QString());
}

void TestYearHeatmapView::aYearThatComesTakesItsRoom()
{
    QWidget window;
    QHBoxLayout row(&window);
    YearHeatmapView view;
    row.addWidget(&view);
    window.resize(view.sizeHint() * 2);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    show(view, {});
    QTRY_COMPARE(view.size(), view.sizeHint());
}

void TestYearHeatmapView::anotherMonthRepaintsAll()
{
    YearHeatmapView view;
    show(view, {});
    open(view);
    PaintRecorder painted(view);
    show(view, {}, "2026-12-20T12:00:00Z");
    QTRY_COMPARE(painted.region.boundingRect(), view.rect());
}

void TestYearHeatmapView::monthsAreWritten()
{
    YearHeatmapView view;
    view.setPalette(light());
    show(view, {});
    view.resize(view.sizeHint());
    QCOMPARE(view.labels().mid(0, 3),
             QStringList({QStringLiteral("Nov"), QStringLiteral("Dec"), QStringLiteral("Jan")}));
    const auto image = view.grab().toImage();
    for (int position = 0; position < view.labels().size(); ++position) {
        const auto frame = shapesOf(view).label(position);
        int inked = 0;
        for (int x = frame.left(); x < frame.center().x(); ++x) {
            for (int y = frame.top(); y <= frame.bottom(); ++y)
                inked += image.pixelColor(x, y) != light().color(QPalette::Window);
        }
        QVERIFY(inked > 8);
    }
}

// Some fonts are higher than the labels' frames, and begin their letters a little before their place.
void TestYearHeatmapView::noLetterOfAMonthIsCutOff()
{
    const auto before = QApplication::font();
    QFont font(QStringLiteral("Noto Sans"));
    font.setPixelSize(13);
    if (!QFontInfo(font).exactMatch())
        QSKIP("The font Noto Sans is not installed");
    QApplication::setFont(font);
    YearHeatmapView view;
    show(view, {});
    view.resize(view.sizeHint());
    const auto june = view.rectangleOfLabel(static_cast<int>(view.labels().indexOf(QStringLiteral("Jun"))));
    QImage expected(view.size(), QImage::Format_RGB32);
    expected.fill(view.palette().color(QPalette::Window));
    auto actual = expected;
    view.render(&actual);
    QPainter painter(&expected);
    painter.setFont(style::systemFont(8));
    painter.setPen(style::ink(view.palette(), style::Ink::Secondary));
    painter.drawText(june, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip,
                     QStringLiteral("Jun"));
    QApplication::setFont(before);
    // The next name may begin a little before its own frame as well.
    const auto around = june.adjusted(-2, 0, -2, 0);
    QCOMPARE(actual.copy(around), expected.copy(around));
}

void TestYearHeatmapView::aMonthIsReadFromTheLeftEverywhere()
{
    YearHeatmapView view;
    view.setLayoutDirection(Qt::RightToLeft);
    show(view, {}, noon, "fr_FR");
    view.resize(view.sizeHint());
    const auto july = view.rectangleOfLabel(static_cast<int>(view.labels().indexOf(QStringLiteral("juil."))));
    QImage expected(view.size(), QImage::Format_RGB32);
    expected.fill(view.palette().color(QPalette::Window));
    auto actual = expected;
    view.render(&actual);
    QPainter painter(&expected);
    painter.setFont(style::systemFont(8));
    painter.setPen(style::ink(view.palette(), style::Ink::Secondary));
    painter.drawText(july, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, QStringLiteral("juil."));
    const auto inside = july.adjusted(2, 1, -2, -1);
    QCOMPARE(actual.copy(inside), expected.copy(inside));
}

void TestYearHeatmapView::theYearKeepsTheCurrentSquareInSight_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("from left to right") << Qt::LeftToRight;
    QTest::newRow("from right to left") << Qt::RightToLeft;
}

void TestYearHeatmapView::theYearKeepsTheCurrentSquareInSight()
{
    QFETCH(Qt::LayoutDirection, direction);
    YearSection section;
    section.setLayoutDirection(direction);
    const auto calendar = calendarIn("UTC");
    section.setHistory({}, DateTexts("en_US", calendar), calendar, instant(noon));
    section.setFixedWidth(300);
    section.show();
    section.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&section));
    auto *const view = section.findChild<YearHeatmapView *>();
    view->setFocus(Qt::TabFocusReason);
    for (const auto key : {Qt::Key_Home, Qt::Key_End}) {
        QTest::keyClick(view, key);
        const auto cell = view->rectangleOf(view->currentPaintedChild().value());
        QVERIFY(view->parentWidget()->rect().contains(QRect(view->mapToParent(cell.topLeft()), cell.size())));
    }
}

void TestYearHeatmapView::thePointerIsToldTheDay()
{
    YearHeatmapView view;
    show(view, history({{1, 1}}));
    open(view);
    const auto place = view.rectangleOf(today - 1).center();
    QHelpEvent event(QEvent::ToolTip, place, view.mapToGlobal(place));
    QVERIFY(QApplication::sendEvent(&view, &event));
    QVERIFY(event.isAccepted());
    QCOMPARE(QToolTip::text(), QStringLiteral("Nov 19, 2026: 1 commit"));
}

void TestYearHeatmapView::nothingIsToldWhereThereIsNoDay()
{
    YearHeatmapView view;
    show(view, {});
    open(view);
    for (const auto place : {view.rectangleOf(today + 1).center(), view.rectangleOf(0).center(), QPoint(5, 3)}) {
        QHelpEvent event(QEvent::ToolTip, place, view.mapToGlobal(place));
        QApplication::sendEvent(&view, &event);
        QVERIFY(!event.isAccepted());
        QVERIFY(!QToolTip::isVisible());
    }
}

void TestYearHeatmapView::theKeysMoveBetweenTheDays_data()
{
    QTest::addColumn<QList<Qt::Key>>("keys");
    QTest::addColumn<int>("reached");
    const auto row = [](const char *name, const QList<Qt::Key> &keys, int reached) {
        QTest::newRow(name) << keys << reached;
    };
    row("at first they are on today", {}, today);
    row("up is the day before", {Qt::Key_Up}, today - 1);
    row("left is the week before", {Qt::Key_Left}, today - 7);
    row("down and right come back", {Qt::Key_Up, Qt::Key_Left, Qt::Key_Right, Qt::Key_Down}, today);
    row("up from a Sunday is the Saturday before", QList<Qt::Key>(6, Qt::Key_Up), 363);
    row("Home is the oldest day", {Qt::Key_Home}, firstDay);
    row("End is today", {Qt::Key_Home, Qt::Key_End}, today);
    row("nothing comes after today", {Qt::Key_Down}, today);
    row("no week comes after today's", {Qt::Key_Right}, today);
    row("nothing comes before the oldest day", {Qt::Key_Home, Qt::Key_Up}, firstDay);
    row("no week comes before the oldest day's", {Qt::Key_Home, Qt::Key_Left}, firstDay);
}

void TestYearHeatmapView::theKeysMoveBetweenTheDays()
{
    QFETCH(QList<Qt::Key>, keys);
    QFETCH(int, reached);
    YearHeatmapView view;
    show(view, {});
    QSignalSpy moved(&view, &YearHeatmapView::currentCellMoved);
    for (const auto key : keys)
        QTest::keyClick(&view, key);
    QCOMPARE(view.currentPaintedChild(), reached);
    QCOMPARE(moved.size(), keys.size());
    if (!keys.isEmpty())
        QCOMPARE(moved.last().constFirst().toRect(), view.rectangleOf(reached));
}

void TestYearHeatmapView::theKeysGoTheOtherWayFromRightToLeft()
{
    YearHeatmapView view;
    view.setLayoutDirection(Qt::RightToLeft);
    show(view, {});
    QTest::keyClick(&view, Qt::Key_Right);
    QCOMPARE(view.currentPaintedChild(), today - 7);
    QTest::keyClick(&view, Qt::Key_Left);
    QCOMPARE(view.currentPaintedChild(), today);
}

void TestYearHeatmapView::theKeysShowTheToolTip()
{
    YearHeatmapView view;
    show(view, history({{7, 3}}));
    open(view);
    QTest::keyClick(&view, Qt::Key_Left);
    QCOMPARE(QToolTip::text(), QStringLiteral("Nov 13, 2026: 3 commits"));
    QTest::keyClick(&view, Qt::Key_Up);
    QCOMPARE(QToolTip::text(), QStringLiteral("Nov 12, 2026: 0 commits"));
}

void TestYearHeatmapView::otherKeysAreLeftToOthers()
{
    YearHeatmapView view;
    show(view, {});
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&view, &escape);
    QVERIFY(!escape.isAccepted());
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(&view, &down);
    QVERIFY(down.isAccepted());
}

void TestYearHeatmapView::theKeysStayOnTheirDayWhenTheGridMovesOn()
{
    YearHeatmapView view;
    show(view, {});
    QTest::keyClick(&view, Qt::Key_Left);
    const auto text = view.textOf(today - 7);
    show(view, {}, "2026-11-22T12:00:00Z");
    QCOMPARE(view.currentPaintedChild(), today - 14);
    QCOMPARE(view.textOf(today - 14), text);
    QTest::keyClick(&view, Qt::Key_Home);
    show(view, {}, "2026-11-24T12:00:00Z");
    QCOMPARE(view.textOf(*view.currentPaintedChild()), QStringLiteral("Nov 24, 2026: 0 commits"));
}

void TestYearHeatmapView::theSquareThatTheKeysReachedIsMarked()
{
    YearHeatmapView view;
    view.setPalette(light());
    show(view, history({{0, 20}}));
    open(view);
    const auto edgeColor = [&view] {
        const auto square = shapesOf(view).cell(today);
        return view.grab().toImage().pixelColor(square.center().x(), square.top());
    };
    QVERIFY(isNear(edgeColor(), over(light(), style::Accent::HeatGreen, 0.9)));
    view.setFocus(Qt::TabFocusReason);
    QCOMPARE(edgeColor(), style::ink(light(), style::Ink::Primary));
}

// By the same word as where somebody writes.
void TestYearHeatmapView::aMagnifierIsToldWhereTheKeysAre()
{
    YearHeatmapView view;
    const auto place = [&view] { return view.inputMethodQuery(Qt::ImCursorRectangle).toRect(); };
    QVERIFY2(!place().isEmpty(), "as every widget, until there is a year");
    show(view, history({{0, 20}}));
    open(view);
    view.setFocus(Qt::TabFocusReason);
    QCOMPARE(place(), view.rectangleOf(today));
    QTest::keyClick(&view, Qt::Key_Up);
    QCOMPARE(place(), view.rectangleOf(today - 1));
}

void TestYearHeatmapView::squaresAndTheMarkAreDrawnByNumbers()
{
    YearHeatmapView view;
    view.setPalette(light());
    show(view, history({{0, 20}, {7, 3}}));
    open(view);
    view.setFocus(Qt::TabFocusReason);
    const auto pixels = view.devicePixelRatioF();
    const auto width = std::max(std::round(pixels), 1.0);
    auto drawn = view.grab().toImage();
    drawn.setDevicePixelRatio(1);
    auto expected = drawn;
    expected.fill(light().color(QPalette::Window));
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int cell = firstDay; cell <= today; ++cell) {
        auto color =
            style::accent(light(), cell < today && cell != today - 7 ? style::Accent::Grey : style::Accent::HeatGreen);
        color.setAlphaF(cell == today ? 0.9F : cell == today - 7 ? 0.5F : 0.15F);
        painter.setBrush(color);
        painter.drawRoundedRect(shapesOf(view).cell(cell), 2 * pixels, 2 * pixels);
    }
    painter.setPen(QPen(style::ink(light(), style::Ink::Primary), width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(shapesOf(view).cell(today)).adjusted(width / 2, width / 2, -width / 2, -width / 2),
                            2 * pixels - width / 2, 2 * pixels - width / 2);
    painter.end();
    const QRect grid(0, shapesOf(view).cell(0).top(), drawn.width(), drawn.height());
    QCOMPARE(drawn.copy(grid), expected.copy(grid));
}

void TestYearHeatmapView::onlyTheKeyboardBringsTheFocus()
{
    QCOMPARE(YearHeatmapView().focusPolicy(), Qt::TabFocus);
}

void TestYearHeatmapView::aScrollAreaKeepsTheCurrentSquareInSight()
{
    QWidget window;
    QScrollArea area(&window);
    auto *view = new YearHeatmapView;
    show(*view, {});
    area.setFocusPolicy(Qt::NoFocus);
    area.setWidget(view);
    QPushButton after(&window);
    view->resize(view->sizeHint());
    QObject::connect(view, &YearHeatmapView::currentCellMoved, &area, [&area](const QRect &rectangle) {
        area.ensureVisible(rectangle.center().x(), rectangle.center().y());
    });
    area.resize(150, 130);
    window.resize(300, 200);
    window.setFocus();
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(QApplication::focusWidget(), &window);
    QCOMPARE(area.horizontalScrollBar()->value(), 0);
    for (auto *const reached : {static_cast<QWidget *>(view), static_cast<QWidget *>(&after)}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), reached);
        QVERIFY(view->visibleRegion().contains(view->rectangleOf(today)));
    }
}

void TestYearHeatmapView::fromRightToLeftTheOldestWeekIsAtTheRight()
{
    YearHeatmapView view;
    view.setPalette(light());
    view.setLayoutDirection(Qt::RightToLeft);
    show(view, history({{0, 20}}));
    view.resize(view.sizeHint());
    QVERIFY(view.rectangleOf(0).x() > view.rectangleOf(today).x());
    QVERIFY(view.todayX() < view.width() / 10);
    QCOMPARE(view.paintedChildAt(view.rectangleOf(today).center()), today);
    const auto square = shapesOf(view, Qt::RightToLeft).cell(today);
    QVERIFY(isNear(view.grab().toImage().pixelColor(square.center()), over(light(), style::Accent::HeatGreen, 0.9)));
}

void TestYearHeatmapView::aScreenReaderSeesEverySquareAndLabel()
{
    YearHeatmapView view;
    show(view, history({{0, 1}}));
    open(view);
    auto *list = QAccessible::queryAccessibleInterface(&view);
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->text(QAccessible::Name), QStringLiteral("Last 365 Days"));
    QCOMPARE(list->childCount(), 371 + 13);
    QCOMPARE(list->child(384), nullptr);
    QCOMPARE(list->child(-1), nullptr);
    for (int index = 0; index < 371; ++index) {
        auto *cell = list->child(index);
        QVERIFY(cell && cell->isValid());
        QCOMPARE(cell->text(QAccessible::Name), view.textOf(index));
        QCOMPARE(cell->role(), QAccessible::ListItem);
        QCOMPARE(cell->rect(), view.rectangleOf(index).translated(view.mapToGlobal(QPoint())));
        QCOMPARE(list->indexOfChild(cell), index);
        QCOMPARE(cell->parent(), list);
    }
    QCOMPARE(list->child(today)->text(QAccessible::Name), QStringLiteral("Nov 20, 2026: 1 commit"));
    QCOMPARE(list->child(371)->text(QAccessible::Name), QStringLiteral("Nov"));
    QCOMPARE(list->child(371)->role(), QAccessible::StaticText);
    QCOMPARE(list->child(383)->rect().topLeft(), view.mapToGlobal(view.rectangleOfLabel(12).topLeft()));
}

void TestYearHeatmapView::aScreenReaderFindsTheSquareUnderAPoint()
{
    YearHeatmapView view;
    show(view, {});
    auto *list = QAccessible::queryAccessibleInterface(&view);
    const auto point = view.mapToGlobal(view.rectangleOf(200).center());
    QCOMPARE(list->childAt(point.x(), point.y()), list->child(200));
    QCOMPARE(list->childAt(point.x(), view.mapToGlobal(QPoint(0, 3)).y()), nullptr);
}

void TestYearHeatmapView::aScreenReaderSeesWhereTheKeysAre()
{
    YearHeatmapView view;
    show(view, {});
    open(view);
    auto *list = QAccessible::queryAccessibleInterface(&view);
    QCOMPARE(list->focusChild(), nullptr);
    view.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&view, Qt::Key_Left);
    QCOMPARE(list->focusChild(), list->child(today - 7));
    QVERIFY(list->child(today - 7)->state().focused);
    QVERIFY(!list->child(today)->state().focused);
}

void TestYearHeatmapView::squaresOutOfRangeAreInvisibleToAScreenReader()
{
    YearHeatmapView view;
    show(view, {});
    open(view);
    auto *list = QAccessible::queryAccessibleInterface(&view);
    QVERIFY(list->child(today + 1)->state().invisible);
    QVERIFY(!list->child(today)->state().invisible);
    QVERIFY(list->child(today)->state().focusable);
}

void TestYearHeatmapView::aSquareHoldsNothingAndSaysWhereItIs()
{
    YearHeatmapView view;
    show(view, {});
    open(view);
    auto *list = QAccessible::queryAccessibleInterface(&view);
    for (auto *const part : {list->child(today), list->child(371)}) {
        QCOMPARE(part->childCount(), 0);
        QCOMPARE(part->child(0), nullptr);
        QCOMPARE(part->childAt(part->rect().center().x(), part->rect().center().y()), nullptr);
        QCOMPARE(part->indexOfChild(list), -1);
        QCOMPARE(part->object(), nullptr);
        QCOMPARE(part->window(), view.windowHandle());
        QCOMPARE(part->text(QAccessible::Description), QString());
        QVERIFY(part->state().readOnly);
        QVERIFY(!part->state().invalid && !part->state().invisible && !part->state().offscreen);
        QCOMPARE(bool(part->state().focusable), part == list->child(today));
    }
    QCOMPARE(list->indexOfChild(list), -1);
    const auto calendar = calendarIn("Pacific/Apia");
    const QList<QAccessibleInterface *> parts{list->child(0), list->child(383)};
    view.setContents({}, calendar, instant("2012-12-27T12:00:00Z"), DateTexts("en_US", calendar));
    for (const auto *const part : parts) {
        QVERIFY(!part->isValid() && part->state().invalid);
        QCOMPARE(part->text(QAccessible::Name), QString());
        QCOMPARE(part->rect(), QRect());
    }
}

void TestYearHeatmapView::aSquareOutOfSightSaysSo()
{
    QWidget window;
    YearHeatmapView view(&window);
    show(view, {});
    view.resize(view.sizeHint());
    window.resize(view.width() / 2, view.height());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *list = QAccessible::queryAccessibleInterface(&view);
    QVERIFY(list->child(today)->state().offscreen);
    QVERIFY(!list->child(firstDay)->state().offscreen);
    window.hide();
    QVERIFY(list->child(firstDay)->state().invisible);
}

void TestYearHeatmapView::noSquareOutlivesItsYearForAScreenReader()
{
    auto view = std::make_unique<YearHeatmapView>();
    show(*view, {});
    const auto id = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(view.get())->child(today));
    QVERIFY(QAccessible::accessibleInterface(id) != nullptr);
    view.reset();
    QCOMPARE(QAccessible::accessibleInterface(id), nullptr);
}

// Whoever keeps the squares for screen readers may ask them once more before they go.
void TestYearHeatmapView::aSquareIsNoneWhileItsYearIsTakenApart()
{
    auto view = std::make_unique<YearHeatmapView>();
    show(*view, {});
    QAccessible::Id id = 0;
    std::optional<bool> wasValid;
    connect(view.get(), &QObject::destroyed, this, [&] {
        const auto *square = QAccessible::accessibleInterface(id);
        wasValid = square && square->isValid();
    });
    id = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(view.get())->child(today));
    view.reset();
    QCOMPARE(wasValid, false);
}

void TestYearHeatmapView::aYearWithoutAGridIsEmpty()
{
    YearHeatmapView view;
    const auto calendar = calendarIn("Pacific/Apia");
    view.setContents({}, calendar, instant("2012-12-27T12:00:00Z"), DateTexts("en_US", calendar));
    QCOMPARE(view.cells(), 0);
    QCOMPARE(view.todayX(), 0);
    QCOMPARE(view.currentPaintedChild(), std::nullopt);
    QTest::keyClick(&view, Qt::Key_Left);
    view.resize(100, 100);
    QVERIFY(!view.grab().isNull());
    QCOMPARE(QAccessible::queryAccessibleInterface(&view)->childCount(), 0);
}

VELQUARIN_WINDOW_TEST(TestYearHeatmapView)
#include "tst_yearheatmapview.moc"
