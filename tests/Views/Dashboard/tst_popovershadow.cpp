// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/PopoverShadow.h"

#include "support/AnimatingStyle.h"
#include "support/Offscreen.h"
#include "support/TestProgram.h"
#include "Views/Controls/Style.h"
#include "Views/Dashboard/Popover.h"

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr QPoint item(400, 10);
constexpr QRect besideItem(250, 28, 300, 350);
constexpr QMargins shadow(22, 16, 22, 28);
const QColor ground(0x336699);

const WindowSystem blending{.blendsWindows = [] { return true; }};

// As large as the popover, with one button all over it.
class Content : public QWidget
{
public:
    Content()
    {
        auto *const column = new QVBoxLayout(this);
        column->setContentsMargins({});
        column->addWidget(&button);
        button.setFixedSize(300, 350);
        button.setFocusPolicy(Qt::NoFocus);
    }

    QPushButton button;
};

// One that opens without delay unless it is told to take its time.
class Opened
{
public:
    explicit Opened(QPoint click = item, const WindowSystem &windowSystem = blending, int milliseconds = 0)
        : m_style(milliseconds)
        , popover(content, windowSystem)
    {
        popover.setStyle(&m_style);
        popover.setPalette(QPalette(ground, ground));
        open(click);
    }

    void open(QPoint click = item)
    {
        QCursor::setPos(click);
        popover.toggle(click, {});
    }

    [[nodiscard]] QImage picture() { return popover.grab().toImage(); }
    [[nodiscard]] QRect place() const
    {
        return {popover.mapToGlobal(popover.contentsRect().topLeft()), popover.contentsRect().size()};
    }
    [[nodiscard]] QVariantAnimation &opening() const
    {
        return *popover.findChild<QVariantAnimation *>(QStringLiteral("opening"));
    }

private:
    AnimatingStyle m_style;

public:
    Content *content = new Content;
    Popover popover;
};

void send(Popover &popover, QEvent::Type type, QPoint position, Qt::MouseButton button)
{
    const auto held = type == QEvent::MouseButtonPress ? button : Qt::NoButton;
    QMouseEvent event(type, popover.mapFromGlobal(position), position, button, held, Qt::NoModifier);
    QApplication::sendEvent(popover.windowHandle(), &event);
}

void click(Popover &popover, QPoint position, Qt::MouseButton button = Qt::LeftButton)
{
    send(popover, QEvent::MouseButtonPress, position, button);
    send(popover, QEvent::MouseButtonRelease, position, button);
}

int alphaOf(const QImage &image, int x, int y)
{
    return image.pixelColor(x, y).alpha();
}

}  // namespace

class TestPopoverShadow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void theShadowIsAroundThePlace_data();
    void theShadowIsAroundThePlace();
    void itsSurfaceIsRoundAndTheShadowBeside();
    void whetherWindowsBlendIsAskedAtEachOpening();
    void whileItIsOpenItStaysAsItOpened();
    void onWaylandNobodyAsksAndNoShadowIsCast();
    void aClickOnTheShadowClosesIt();
    void aRightClickOnTheShadowIsNotKept();
    void aClickAtItsEdgeLeavesItOpen_data();
    void aClickAtItsEdgeLeavesItOpen();
    void aScreenReaderHearsOfThePlaceWithoutTheShadow();
    void itFollowsItsContent();

    void theShadowIsAsStrongAsThePaletteWants_data();
    void theShadowIsAsStrongAsThePaletteWants();
    void theShadowFallsDownwardsAndFadesAway();
    void theShadowIsTheSameOnDenserScreens();
    void theShadowIsDrawnOnceForWhatItIsDrawnFor();

    void itComesOutOfThePanel_data();
    void itComesOutOfThePanel();
    void whileItComesItIsAllThere();
    void onceOpenNothingRuns();
    void itClosesAtOnce();
    void whereNoAnimationsAreWantedItIsThereAtOnce();
    void whereNothingBlendsItIsThereAtOnce_data();
    void whereNothingBlendsItIsThereAtOnce();
};

void TestPopoverShadow::init()
{
    failOnAnyWarningOfOurs();
    auto font = QApplication::font();
    font.setPixelSize(13);
    QApplication::setFont(font);
}

void TestPopoverShadow::cleanup()
{
    QCursor::setPos(700, 700);
}

void TestPopoverShadow::theShadowIsAroundThePlace_data()
{
    QTest::addColumn<QPoint>("click");
    QTest::newRow("a panel above") << QPoint(400, 10);
    QTest::newRow("a panel below") << QPoint(400, 790);
    QTest::newRow("a panel on the left") << QPoint(10, 400);
    QTest::newRow("a panel on the right") << QPoint(790, 400);
    QTest::newRow("a corner") << QPoint(799, 0);
}

void TestPopoverShadow::theShadowIsAroundThePlace()
{
    QFETCH(QPoint, click);
    const Opened plain(click, {});
    const auto place = plain.popover.geometry();
    const Opened opened(click);
    QCOMPARE(place.size(), QSize(300, 350));
    QCOMPARE(opened.place(), place);
    QCOMPARE(opened.popover.geometry(), place.marginsAdded(shadow));
    QCOMPARE(opened.content->mapToGlobal(QPoint()), place.topLeft());
    QCOMPARE(opened.content->size(), place.size());
}

void TestPopoverShadow::itsSurfaceIsRoundAndTheShadowBeside()
{
    Opened opened;
    opened.content->hide();
    const auto surface = opened.popover.contentsRect();
    QImage expected(opened.popover.size(), QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    PopoverShadow drawn;
    painter.drawImage(0, 0, drawn.of(surface.size(), 12, 1, opened.popover.palette()));
    painter.setPen(QPen(style::divider(opened.popover.palette()), 1));
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(surface).adjusted(0.5, 0.5, -0.5, -0.5), 12, 12);
    painter.end();
    const auto shown = opened.picture().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(shown, expected);
    QCOMPARE(shown.pixelColor(0, 0).alpha(), 0);
    QVERIFY(shown.pixelColor(surface.topLeft()).alpha() < 64);
    QCOMPARE(shown.pixelColor(surface.center()), ground);
}

// Without anybody who composes windows, what is not painted would be black.
void TestPopoverShadow::whetherWindowsBlendIsAskedAtEachOpening()
{
    bool blends = false;
    Opened opened(item, WindowSystem{.blendsWindows = [&blends] { return blends; }});
    for (int opening = 0; opening < 4; ++opening) {
        QCOMPARE(opened.popover.geometry(), blends ? besideItem.marginsAdded(shadow) : besideItem);
        QCOMPARE(opened.place(), besideItem);
        QCOMPARE(opened.picture().pixelColor(0, 0).alpha(), blends ? 0 : 255);
        // Painting on an alpha channel takes longer, for nothing where nothing shows through.
        QCOMPARE(opened.popover.windowHandle()->requestedFormat().hasAlpha(), blends);
        opened.popover.hide();
        blends = !blends;
        opened.open();
    }
    const auto window = opened.popover.internalWinId();
    opened.popover.hide();
    opened.open();
    QCOMPARE(opened.popover.internalWinId(), window);
}

void TestPopoverShadow::whileItIsOpenItStaysAsItOpened()
{
    int asked = 0;
    Opened opened(item, WindowSystem{.blendsWindows = [&asked] { return ++asked == 1; }});
    opened.popover.open({});
    QCOMPARE(asked, 1);
    QCOMPARE(opened.popover.geometry(), besideItem.marginsAdded(shadow));
}

void TestPopoverShadow::onWaylandNobodyAsksAndNoShadowIsCast()
{
    const auto ask = [] {
        qWarning("Somebody asks");
        return true;
    };
    const Opened opened(item, {.placesWindows = false, .knowsPointer = false, .blendsWindows = ask});
    QCOMPARE(opened.popover.size(), QSize(300, 350));
    QCOMPARE(opened.popover.contentsRect(), opened.popover.rect());
}

void TestPopoverShadow::aClickOnTheShadowClosesIt()
{
    for (const auto side : {QPoint(-10, 175), QPoint(309, 175), QPoint(150, -8), QPoint(150, 360)}) {
        Opened opened;
        QVERIFY(opened.popover.geometry().contains(besideItem.topLeft() + side));
        QVERIFY(QTest::qWaitForWindowExposed(&opened.popover));
        send(opened.popover, QEvent::MouseButtonPress, besideItem.topLeft() + side, Qt::LeftButton);
        QVERIFY(opened.popover.isShown());
        send(opened.popover, QEvent::MouseButtonRelease, besideItem.topLeft() + side, Qt::LeftButton);
        QVERIFY(!opened.popover.isShown());
    }
}

void TestPopoverShadow::aRightClickOnTheShadowIsNotKept()
{
    Opened opened;
    QSignalSpy kept(&opened.popover, &Popover::rightClickKept);
    QVERIFY(QTest::qWaitForWindowExposed(&opened.popover));
    click(opened.popover, besideItem.topLeft() - QPoint(5, 5), Qt::RightButton);
    QCOMPARE(kept.size(), 1);
    QCOMPARE(kept.at(0).at(0).toPoint(), besideItem.topLeft() - QPoint(5, 5));
}

void TestPopoverShadow::aClickAtItsEdgeLeavesItOpen_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::newRow("left") << QPoint(besideItem.left(), 200);
    QTest::newRow("right") << QPoint(besideItem.right(), 200);
    QTest::newRow("above") << QPoint(400, besideItem.top());
    QTest::newRow("below") << QPoint(400, besideItem.bottom());
}

void TestPopoverShadow::aClickAtItsEdgeLeavesItOpen()
{
    QFETCH(QPoint, position);
    Opened opened;
    // What lies on the surface would take the click.
    opened.content->hide();
    QVERIFY(QTest::qWaitForWindowExposed(&opened.popover));
    click(opened.popover, position);
    QVERIFY(opened.popover.isShown());
}

void TestPopoverShadow::aScreenReaderHearsOfThePlaceWithoutTheShadow()
{
    Opened opened;
    QCOMPARE(QAccessible::queryAccessibleInterface(&opened.popover)->rect(), besideItem);
}

void TestPopoverShadow::itFollowsItsContent()
{
    Opened opened({400, 790});
    QVERIFY(QTest::qWaitForWindowExposed(&opened.popover));
    const auto bottom = opened.place().bottom();
    opened.content->button.setFixedHeight(500);
    QTRY_COMPARE(opened.place().height(), 500);
    QCOMPARE(opened.place().bottom(), bottom);
    QTRY_COMPARE(opened.content->size(), QSize(300, 500));
}

void TestPopoverShadow::theShadowIsAsStrongAsThePaletteWants_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<double>("strength");
    QTest::newRow("light") << QColor(0xf0f0f0) << 0.26;
    QTest::newRow("dark") << QColor(0x202020) << 0.55;
}

void TestPopoverShadow::theShadowIsAsStrongAsThePaletteWants()
{
    QFETCH(QColor, window);
    QFETCH(double, strength);
    PopoverShadow drawn;
    const auto image = drawn.of({300, 350}, 12, 1, QPalette(window, window));
    QCOMPARE(image.size(), QSize(344, 394));
    QCOMPARE(alphaOf(image, 172, 197), qRound(255 * strength));
}

void TestPopoverShadow::theShadowFallsDownwardsAndFadesAway()
{
    PopoverShadow drawn;
    const auto image = drawn.of({300, 350}, 12, 1, QPalette(Qt::white));
    const auto full = alphaOf(image, 172, 197);
    QCOMPARE(alphaOf(image, 172, 16 + 350 + 5), full);
    QVERIFY(alphaOf(image, 172, 15) < full);
    int last = full;
    for (int y = 16 + 350 + 6; y < image.height(); ++y) {
        QVERIFY(alphaOf(image, 172, y) <= last);
        last = alphaOf(image, 172, y);
    }
    QCOMPARE(alphaOf(image, 172, 393), 0);
    QCOMPARE(alphaOf(image, 172, 0), 0);
    QCOMPARE(alphaOf(image, 0, 197), 0);
    QCOMPARE(alphaOf(image, 343, 197), 0);
    QCOMPARE(alphaOf(image, 21, 197), alphaOf(image, 322, 197));
    QVERIFY(alphaOf(image, 21, 21) < alphaOf(image, 21, 197));
}

void TestPopoverShadow::theShadowIsTheSameOnDenserScreens()
{
    PopoverShadow drawn;
    const auto plain = drawn.of({300, 350}, 12, 1, QPalette(Qt::white));
    const auto dense = drawn.of({300, 350}, 12, 2, QPalette(Qt::white));
    QCOMPARE(dense.size(), QSize(688, 788));
    QCOMPARE(dense.deviceIndependentSize(), QSizeF(344, 394));
    for (int x = 0; x < 344; ++x)
        QVERIFY(std::abs(alphaOf(dense, 2 * x, 394) - alphaOf(plain, x, 197)) <= 3);
}

void TestPopoverShadow::theShadowIsDrawnOnceForWhatItIsDrawnFor()
{
    PopoverShadow drawn;
    const QPalette light(Qt::white);
    const QPalette dark(Qt::black);
    const auto first = drawn.of({300, 350}, 12, 1, light).cacheKey();
    QCOMPARE(drawn.of({300, 350}, 12, 1, light).cacheKey(), first);
    auto last = first;
    const auto isNew = [&](const QImage &image) { return std::exchange(last, image.cacheKey()) != image.cacheKey(); };
    QVERIFY(isNew(drawn.of({300, 351}, 12, 1, light)));
    QVERIFY(isNew(drawn.of({300, 351}, 10, 1, light)));
    QVERIFY(isNew(drawn.of({300, 351}, 10, 2, light)));
    QVERIFY(isNew(drawn.of({300, 351}, 10, 2, dark)));
    QVERIFY(!isNew(drawn.of({300, 351}, 10, 2, dark)));
}

void TestPopoverShadow::itComesOutOfThePanel_data()
{
    QTest::addColumn<QPoint>("click");
    QTest::addColumn<QPoint>("ahead");
    QTest::newRow("a panel above") << QPoint(400, 10) << QPoint(0, -6);
    QTest::newRow("a panel below") << QPoint(400, 790) << QPoint(0, 6);
    QTest::newRow("a panel on the left") << QPoint(10, 400) << QPoint(-6, 0);
    QTest::newRow("a panel on the right") << QPoint(790, 400) << QPoint(6, 0);
}

void TestPopoverShadow::itComesOutOfThePanel()
{
    QFETCH(QPoint, click);
    QFETCH(QPoint, ahead);
    const auto place = Opened(click).place();
    const Opened opened(click, blending, 200);
    auto &opening = opened.opening();
    opening.pause();
    QCOMPARE(opening.duration(), 90);
    opening.setCurrentTime(0);
    QCOMPARE(opened.popover.windowOpacity(), 0.0);
    QCOMPARE(opened.place(), place.translated(ahead));
    opening.setCurrentTime(45);
    QVERIFY(std::abs(opened.popover.windowOpacity() - 0.5) < 0.01);
    QCOMPARE(opened.place(), place.translated(ahead / 2));
    opening.setCurrentTime(90);
    QCOMPARE(opened.popover.windowOpacity(), 1.0);
    QCOMPARE(opened.place(), place);
}

void TestPopoverShadow::whileItComesItIsAllThere()
{
    Opened opened(item, blending, 200);
    opened.opening().pause();
    opened.opening().setCurrentTime(10);
    QVERIFY(opened.popover.isShown());
    QCOMPARE(opened.content->size(), besideItem.size());
    QVERIFY(opened.content->button.isEnabled());
    QSignalSpy clicked(&opened.content->button, &QPushButton::clicked);
    QVERIFY(QTest::qWaitForWindowExposed(&opened.popover));
    click(opened.popover, besideItem.center());
    QCOMPARE(clicked.size(), 1);
    click(opened.popover, {700, 700});
    QVERIFY(!opened.popover.isShown());
}

void TestPopoverShadow::onceOpenNothingRuns()
{
    const Opened opened(item, blending, 200);
    QCOMPARE(opened.opening().state(), QAbstractAnimation::Running);
    QTRY_COMPARE(opened.opening().state(), QAbstractAnimation::Stopped);
    QCOMPARE(opened.popover.windowOpacity(), 1.0);
    QCOMPARE(opened.place(), besideItem);
}

void TestPopoverShadow::itClosesAtOnce()
{
    Opened opened(item, blending, 200);
    QCOMPARE(opened.opening().state(), QAbstractAnimation::Running);
    opened.popover.toggle(item, {});
    QVERIFY(!opened.popover.isVisible());
    QCOMPARE(opened.opening().state(), QAbstractAnimation::Stopped);
    opened.open();
    QCOMPARE(opened.opening().state(), QAbstractAnimation::Running);
    QCOMPARE(opened.opening().currentTime(), 0);
    QCOMPARE(opened.popover.windowOpacity(), 0.0);
}

void TestPopoverShadow::whereNoAnimationsAreWantedItIsThereAtOnce()
{
    const Opened opened(item, blending, 0);
    QCOMPARE(opened.opening().state(), QAbstractAnimation::Stopped);
    QCOMPARE(opened.popover.windowOpacity(), 1.0);
    QCOMPARE(opened.place(), besideItem);
}

void TestPopoverShadow::whereNothingBlendsItIsThereAtOnce_data()
{
    QTest::addColumn<WindowSystem>("windowSystem");
    QTest::newRow("X11 alone") << WindowSystem{};
    QTest::newRow("Wayland") << WindowSystem{.placesWindows = false, .knowsPointer = false};
}

void TestPopoverShadow::whereNothingBlendsItIsThereAtOnce()
{
    QFETCH(WindowSystem, windowSystem);
    const Opened opened(item, windowSystem, 200);
    QCOMPARE(opened.opening().state(), QAbstractAnimation::Stopped);
    QCOMPARE(opened.popover.windowOpacity(), 1.0);
}

VELQUARIN_WINDOW_TEST(TestPopoverShadow)
#include "tst_popovershadow.moc"
