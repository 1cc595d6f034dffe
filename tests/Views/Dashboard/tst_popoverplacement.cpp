// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/PopoverPlacement.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr QRect fullHd(0, 0, 1920, 1080);

PopoverDimensions dimensions(int contentHeight = 350)
{
    return {.width = 300, .contentHeight = contentHeight, .leastHeight = 350, .item = 24, .gap = 4, .scrollBar = 12};
}

ScreenArea bare(QRect whole = fullHd)
{
    return {whole, whole};
}

ScreenArea withPanels(QMargins reserved, QRect whole = fullHd)
{
    return {whole, whole.marginsRemoved(reserved)};
}

const ScreenArea topPanel = withPanels({0, 28, 0, 0});
const ScreenArea bottomPanel = withPanels({0, 0, 0, 28});
const ScreenArea leftPanel = withPanels({48, 0, 0, 0});
const ScreenArea rightPanel = withPanels({0, 0, 48, 0});
const ScreenArea topPanelAndDock = withPanels({64, 28, 0, 0});

}  // namespace

Q_DECLARE_METATYPE(velquarin::ScreenArea)
Q_DECLARE_METATYPE(velquarin::PopoverPlace)

class TestPopoverPlacement : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void thePanelIsFound_data();
    void thePanelIsFound();
    void thePopoverLies_data();
    void thePopoverLies();
    void contentDecidesTheHeight_data();
    void contentDecidesTheHeight();
    void whatTheScreenCannotHoldIsScrolled();
    void whatIsWiderThanTheScreenIsScrolledSideways_data();
    void whatIsWiderThanTheScreenIsScrolledSideways();
    void whereverTheClickIsThePopoverIsInsideAndTheItemFree_data();
    void whereverTheClickIsThePopoverIsInsideAndTheItemFree();
    void severalScreens_data();
    void severalScreens();
    void withoutAnyScreenItIsAsLargeAsItLikes();
    void theClickIs_data();
    void theClickIs();
    void aClickOnTheSameItemKeepsThePlace();
    void withoutAClickTheEndOfThePanelIsMeant_data();
    void withoutAClickTheEndOfThePanelIsMeant();
    void itKeepsToTheEdges_data();
    void itKeepsToTheEdges();
    void withoutAnyScreenItKeepsToNoEdge();
};

void TestPopoverPlacement::thePanelIsFound_data()
{
    QTest::addColumn<QPoint>("click");
    QTest::addColumn<ScreenArea>("screen");
    QTest::addColumn<Qt::Edge>("side");
    const auto row = [](const char *name, QPoint click, const ScreenArea &screen, Qt::Edge side) {
        QTest::newRow(name) << click << screen << side;
    };
    row("at the top by its reserved strip", {1700, 14}, topPanel, Qt::TopEdge);
    row("at the bottom by its reserved strip", {1700, 1066}, bottomPanel, Qt::BottomEdge);
    row("at the left by its reserved strip", {24, 1000}, leftPanel, Qt::LeftEdge);
    row("at the right by its reserved strip", {1900, 1000}, rightPanel, Qt::RightEdge);
    row("at the left even at its upper end", {24, 10}, leftPanel, Qt::LeftEdge);
    row("at the right even at its lower end", {1900, 1079}, rightPanel, Qt::RightEdge);
    row("at the top where a dock reserves the left", {1700, 14}, topPanelAndDock, Qt::TopEdge);
    row("at the left where another reserves the top", {30, 500}, topPanelAndDock, Qt::LeftEdge);
    row("at the top where both cross", {30, 14}, topPanelAndDock, Qt::TopEdge);
    row("by the nearest edge where none is reserved: top", {1900, 10}, bare(), Qt::TopEdge);
    row("by the nearest edge where none is reserved: bottom", {1910, 1070}, bare(), Qt::BottomEdge);
    row("by the nearest edge where none is reserved: left", {10, 500}, bare(), Qt::LeftEdge);
    row("by the nearest edge where none is reserved: right", {1910, 500}, bare(), Qt::RightEdge);
    row("at the bottom although only the top is reserved", {1700, 1070}, topPanel, Qt::BottomEdge);
    row("above, for a click in the upper half", {900, 500}, bare(), Qt::TopEdge);
    row("below, for a click in the lower half", {900, 600}, bare(), Qt::BottomEdge);
}

void TestPopoverPlacement::thePanelIsFound()
{
    QFETCH(QPoint, click);
    QFETCH(ScreenArea, screen);
    QFETCH(Qt::Edge, side);
    QCOMPARE(panelSide(click, screen), side);
}

void TestPopoverPlacement::thePopoverLies_data()
{
    QTest::addColumn<QPoint>("click");
    QTest::addColumn<ScreenArea>("screen");
    QTest::addColumn<QRect>("expected");
    const auto row = [](const char *name, QPoint click, const ScreenArea &screen, QRect expected) {
        QTest::newRow(name) << click << screen << expected;
    };
    row("below a panel at the top", {1000, 14}, topPanel, {850, 32, 300, 350});
    row("above a panel at the bottom", {1000, 1066}, bottomPanel, {850, 1052 - 4 - 350, 300, 350});
    row("right of a panel at the left", {24, 500}, leftPanel, {52, 325, 300, 350});
    row("left of a panel at the right", {1900, 500}, rightPanel, {1872 - 4 - 300, 325, 300, 350});
    row("as far right as the screen allows", {1910, 14}, topPanel, {1920 - 4 - 300, 32, 300, 350});
    row("as far left as the screen allows", {3, 14}, topPanel, {4, 32, 300, 350});
    row("beside the dock, not over it", {70, 14}, topPanelAndDock, {68, 32, 300, 350});
    row("as far down as the screen allows", {24, 1070}, leftPanel, {52, 1080 - 4 - 350, 300, 350});
    row("below the item where the panel reserves nothing", {1000, 14}, bare(), {850, 26 + 4, 300, 350});
    row("above the item where the panel reserves nothing", {1000, 1066}, bare(), {850, 1054 - 4 - 350, 300, 350});
    row("right of the item where the panel reserves nothing", {20, 500}, bare(), {32 + 4, 325, 300, 350});
    row("left of the item where the panel reserves nothing", {1900, 500}, bare(), {1888 - 4 - 300, 325, 300, 350});
    row("below an item that was hit at the very edge", {1000, 0}, bare(), {850, 24 + 4, 300, 350});
    row("above an item that was hit at the very edge", {1000, 1079}, bare(), {850, 1056 - 4 - 350, 300, 350});
    row("at the panel even if a menu of it was clicked", {1000, 50}, topPanel, {850, 32, 300, 350});
}

void TestPopoverPlacement::thePopoverLies()
{
    QFETCH(QPoint, click);
    QFETCH(ScreenArea, screen);
    QFETCH(QRect, expected);
    QCOMPARE(placePopover(click, {screen}, dimensions()), (PopoverPlace{expected, false}));
}

void TestPopoverPlacement::contentDecidesTheHeight_data()
{
    QTest::addColumn<int>("contentHeight");
    QTest::addColumn<QRect>("expected");
    QTest::addColumn<bool>("scrolls");
    const int room = 1080 - 28 - 8;
    QTest::newRow("little content leaves it as high as ever") << 200 << QRect(850, 32, 300, 350) << false;
    QTest::newRow("more content makes it higher") << 600 << QRect(850, 32, 300, 600) << false;
    QTest::newRow("until the screen is full") << room << QRect(850, 32, 300, room) << false;
    QTest::newRow("then it scrolls, with room for the scroll bar") << room + 1 << QRect(844, 32, 312, room) << true;
}

void TestPopoverPlacement::contentDecidesTheHeight()
{
    QFETCH(int, contentHeight);
    QFETCH(QRect, expected);
    QFETCH(bool, scrolls);
    QCOMPARE(placePopover({1000, 14}, {topPanel}, dimensions(contentHeight)), (PopoverPlace{expected, scrolls}));
}

void TestPopoverPlacement::whatTheScreenCannotHoldIsScrolled()
{
    const auto small = withPanels({0, 20, 0, 0}, {0, 0, 280, 240});
    QCOMPARE(placePopover({100, 10}, {small}, dimensions()), (PopoverPlace{QRect(4, 24, 272, 212), true, true}));
}

void TestPopoverPlacement::whatIsWiderThanTheScreenIsScrolledSideways_data()
{
    QTest::addColumn<QSize>("room");
    QTest::addColumn<PopoverPlace>("expected");
    const auto row = [](const char *name, QSize room, QSize size, bool scrolls, bool scrollsSideways) {
        QTest::newRow(name) << room << PopoverPlace{{QPoint(4, 24), size}, scrolls, scrollsSideways};
    };
    row("not where it fits to the pixel", {300, 400}, {300, 400}, false, false);
    row("with room for the scroll bar below", {299, 420}, {299, 412}, false, true);
    row("and down too where that room is lacking", {299, 411}, {299, 411}, true, true);
    row("as well where the scroll bar beside takes the width", {311, 399}, {311, 399}, true, true);
    row("not where there is width for the scroll bar beside", {312, 399}, {312, 399}, true, false);
}

void TestPopoverPlacement::whatIsWiderThanTheScreenIsScrolledSideways()
{
    QFETCH(QSize, room);
    const auto screen = withPanels({0, 20, 0, 0}, {0, 0, room.width() + 8, room.height() + 28});
    QTEST(placePopover({100, 10}, {screen}, dimensions(400)), "expected");
}

void TestPopoverPlacement::whereverTheClickIsThePopoverIsInsideAndTheItemFree_data()
{
    QTest::addColumn<ScreenArea>("screen");
    QTest::newRow("without reserved strips") << bare();
    QTest::newRow("with a panel at the top") << topPanel;
    QTest::newRow("with a panel at the bottom") << bottomPanel;
    QTest::newRow("with a panel at the left") << leftPanel;
    QTest::newRow("with a panel at the right") << rightPanel;
    QTest::newRow("with two panels") << topPanelAndDock;
    QTest::newRow("on a screen that does not begin at the origin") << bare({-1280, 300, 1280, 720});
}

void TestPopoverPlacement::whereverTheClickIsThePopoverIsInsideAndTheItemFree()
{
    QFETCH(ScreenArea, screen);
    const auto &whole = screen.whole;
    const QRect panels = whole.adjusted(64, 64, -64, -64);
    for (int x = whole.left(); x <= whole.right(); x += 7) {
        for (int y = whole.top(); y <= whole.bottom(); y += 7) {
            const QPoint click(x, y);
            const auto place = placePopover(click, {screen}, dimensions()).rectangle;
            QVERIFY(screen.available.contains(place));
            // Items stand in panels, so a click elsewhere came from a menu.
            if (!panels.contains(click) && !screen.available.contains(click))
                QVERIFY(!place.contains(click));
        }
    }
}

void TestPopoverPlacement::severalScreens_data()
{
    QTest::addColumn<QList<ScreenArea>>("screens");
    QTest::addColumn<QPoint>("click");
    QTest::addColumn<QRect>("expected");
    const auto row = [](const char *name, const QList<ScreenArea> &screens, QPoint click, QRect expected) {
        QTest::newRow(name) << screens << click << expected;
    };
    const QRect right(1920, 0, 1280, 1024);
    const QRect above(0, -1200, 1920, 1200);
    row("opens on the one that was clicked", {topPanel, bare(right)}, {2500, 10}, {2350, 24 + 4, 300, 350});
    row("never lies across two", {topPanel, bare(right)}, {1925, 10}, {1924, 28, 300, 350});
    row("nor across two from the left", {topPanel, bare(right)}, {1910, 14}, {1616, 32, 300, 350});
    row("looks at the half of that screen alone", {bottomPanel, bare(above)}, {900, -20},
        {750, -32 - 4 - 350, 300, 350});
    row("takes the nearest for a point on none", {topPanel, bare(right)}, {2500, 1050},
        {2350, 1000 - 4 - 350, 300, 350});
}

void TestPopoverPlacement::severalScreens()
{
    QFETCH(QList<ScreenArea>, screens);
    QFETCH(QPoint, click);
    QFETCH(QRect, expected);
    QCOMPARE(placePopover(click, screens, dimensions()).rectangle, expected);
}

void TestPopoverPlacement::withoutAnyScreenItIsAsLargeAsItLikes()
{
    QCOMPARE(placePopover({5, 6}, {}, dimensions(900)), (PopoverPlace{QRect(5, 6, 300, 900)}));
}

void TestPopoverPlacement::theClickIs_data()
{
    QTest::addColumn<QPoint>("said");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<std::optional<QPoint>>("expected");
    const auto row = [](const char *name, QPoint said, QPoint pointer, std::optional<QPoint> expected) {
        QTest::newRow(name) << said << pointer << expected;
    };
    const QPoint nowhere(5000, 5000);
    row("where the pointer is, if the host agrees", {1000, 14}, {1001, 13}, QPoint(1001, 13));
    row("where the pointer is, if the host counts from the item", {0, 26}, {1001, 13}, QPoint(1001, 13));
    row("where the pointer is, if the host says a place on no screen", nowhere, {1001, 13}, QPoint(1001, 13));
    row("where the host says, if the pointer is on no screen", {1000, 14}, nowhere, QPoint(1000, 14));
    row("unknown if both are on no screen", nowhere, {-1, -1}, std::nullopt);
}

void TestPopoverPlacement::theClickIs()
{
    QFETCH(QPoint, said);
    QFETCH(QPoint, pointer);
    QFETCH(std::optional<QPoint>, expected);
    QCOMPARE(clickedPoint(said, pointer, {bare()}), expected);
}

void TestPopoverPlacement::aClickOnTheSameItemKeepsThePlace()
{
    const QPoint last(1000, 14);
    QCOMPARE(steadyClick(std::nullopt, last, 24), last);
    QCOMPARE(steadyClick(last, {1009, 5}, 24), last);
    QCOMPARE(steadyClick(last, {988, 25}, 24), last);
    QCOMPARE(steadyClick(last, {1012, 14}, 24), QPoint(1012, 14));
    QCOMPARE(steadyClick(last, {1000, 1066}, 24), QPoint(1000, 1066));
}

void TestPopoverPlacement::withoutAClickTheEndOfThePanelIsMeant_data()
{
    QTest::addColumn<ScreenArea>("screen");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<QRect>("expected");
    const auto row = [](const char *name, const ScreenArea &screen, Qt::LayoutDirection direction, QRect expected) {
        QTest::newRow(name) << screen << direction << expected;
    };
    row("at the right of a panel at the top", topPanel, Qt::LeftToRight, {1616, 32, 300, 350});
    row("at the left of it where one reads from the right", topPanel, Qt::RightToLeft, {4, 32, 300, 350});
    row("at the right of a panel at the bottom", bottomPanel, Qt::LeftToRight, {1616, 698, 300, 350});
    row("at the foot of a panel at the left", leftPanel, Qt::LeftToRight, {52, 726, 300, 350});
    row("at the foot of a panel at the right", rightPanel, Qt::LeftToRight, {1568, 726, 300, 350});
    row("in the upper right corner without one", bare(), Qt::LeftToRight, {1616, 28, 300, 350});
}

void TestPopoverPlacement::withoutAClickTheEndOfThePanelIsMeant()
{
    QFETCH(ScreenArea, screen);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(QRect, expected);
    QCOMPARE(placePopover(likelyItem(screen, direction), {screen}, dimensions()).rectangle, expected);
}

void TestPopoverPlacement::itKeepsToTheEdges_data()
{
    QTest::addColumn<QPoint>("click");
    QTest::addColumn<QList<ScreenArea>>("screens");
    QTest::addColumn<QRect>("place");
    QTest::addColumn<Qt::Edges>("edges");
    QTest::addColumn<QMargins>("margins");
    const auto row = [](const char *name, QPoint click, QRect place, Qt::Edges edges, QMargins margins,
                        const QList<ScreenArea> &screens = {bare()}) {
        QTest::newRow(name) << click << screens << place << edges << margins;
    };
    row("upper and right", {1700, 14}, {1550, 68, 300, 350}, Qt::TopEdge | Qt::RightEdge, {1550, 4, 70, 4});
    row("upper and left", {100, 14}, {4, 68, 300, 350}, Qt::TopEdge | Qt::LeftEdge, {4, 4, 1616, 4});
    row("lower and right", {1700, 1066}, {1550, 662, 300, 350}, Qt::BottomEdge | Qt::RightEdge, {1550, 4, 70, 4});
    row("left and lower", {14, 900}, {68, 700, 300, 350}, Qt::LeftEdge | Qt::BottomEdge, {4, 700, 4, 30});
    row("right and upper", {1900, 200}, {1552, 40, 300, 350}, Qt::RightEdge | Qt::TopEdge, {4, 40, 4, 690});
    const QList<ScreenArea> two{bare(), bare({1920, 0, 1280, 800})};
    row("those of its own screen", {3100, 14}, {2890, 68, 300, 350}, Qt::TopEdge | Qt::RightEdge, {970, 4, 10, 4}, two);
}

void TestPopoverPlacement::itKeepsToTheEdges()
{
    QFETCH(QPoint, click);
    QFETCH(QList<ScreenArea>, screens);
    QFETCH(QRect, place);
    const auto anchor = anchorPopover(click, place, screens, 4);
    QTEST(anchor.edges, "edges");
    QTEST(anchor.margins, "margins");
}

void TestPopoverPlacement::withoutAnyScreenItKeepsToNoEdge()
{
    QCOMPARE(anchorPopover({7, 7}, {7, 7, 300, 350}, {}, 4), WindowAnchor());
}

VELQUARIN_TEST_RUN(velquarin::test::runAlone<TestPopoverPlacement>)
#include "tst_popoverplacement.moc"
