// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/Popover.h"

#include "support/Offscreen.h"
#include "support/TestProgram.h"
#include "Views/Controls/Style.h"

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <functional>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr QPoint item(400, 10);
constexpr QRect besideItem(250, 28, 300, 350);

const WindowSystem x11;
const WindowSystem partlyX11{.knowsPointer = false};
const WindowSystem wayland{.placesWindows = false, .knowsPointer = false};

// As wide as the popover, as high as it is told to be, with two buttons.
class Content : public QWidget
{
public:
    explicit Content(int height)
        : m_layout(new QVBoxLayout(this))
        , m_spacer(new QSpacerItem(300, height, QSizePolicy::Fixed, QSizePolicy::Fixed))
    {
        m_layout->setContentsMargins({});
        m_layout->setSpacing(0);
        for (auto *button : {&first, &second}) {
            button->setFixedHeight(20);
            m_layout->addWidget(button);
        }
        m_layout->addItem(m_spacer);
        become(height);
    }

    void become(int height)
    {
        m_spacer->changeSize(300, height - 40, QSizePolicy::Fixed, QSizePolicy::Fixed);
        m_layout->invalidate();
    }

    QPushButton first;
    QPushButton second;

private:
    QVBoxLayout *m_layout;
    QSpacerItem *m_spacer;
};

void send(Popover &popover, QEvent::Type type, QPoint position, Qt::MouseButton button = Qt::LeftButton)
{
    const auto held = type == QEvent::MouseButtonPress ? button : Qt::NoButton;
    QMouseEvent event(type, popover.mapFromGlobal(position), position, button, held, Qt::NoModifier);
    QApplication::sendEvent(popover.windowHandle(), &event);
}

}  // namespace

class TestPopover : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void itOpensAtTheItemAndClosesWithTheNextClick();
    void whereTheHostIsWrongThePointerIsRight();
    void wherePartOfTheScreenIsNotX11TheHostIsRight();
    void wherePartOfTheScreenIsNotX11EveryClickComesToUs();
    void itGivesWayToAMenuButNotToOneOfBefore();
    void anotherClickOnTheItemOpensItAtTheSamePlace();
    void withoutAClickItOpensWhereItWas();
    void withoutAnyClickItOpensNearThePanel();
    void escapeClosesIt_data();
    void escapeClosesIt();
    void itStaysOpenWhereTheApplicationIsNoLongerTheActiveOne();
    void aClickElsewhereClosesItWhenTheButtonIsUp();
    void aRightClickBesideItIsNotKept_data();
    void aRightClickBesideItIsNotKept();
    void aRightButtonThatIsLetGoElsewhereIsNoClick();
    void aClickInsideLeavesItOpen();
    void theReleaseOfTheClickThatOpenedItLeavesItOpen();
    void closedInAnyWayItKeepsItsWindow_data();
    void closedInAnyWayItKeepsItsWindow();
    void whoeverWantsIsToldOfOpeningAndClosing();
    void openingItAgainWhileItIsOpenChangesNothing();
    void moreContentMakesItHigher();
    void contentBeyondTheScreenIsScrolled();
    void contentWiderThanTheScreenIsScrolled();
    void itFollowsItsContentWhileItIsOpen();
    void whatHappensWhileItIsClosedIsThereWhenItOpens();
    void nothingHasTheFocusWhenItOpens_data();
    void nothingHasTheFocusWhenItOpens();
    void theScrollAreaIsNoTabStop();
    void itIsNamed();
    void anActivatedWindowClosesAManagedOne();
    void theClickThatDeactivatedItDoesNotOpenItAgain();
    void closedByEscapeItOpensAtOnce();
    void aManagedOneStandsAtTheEdgesThatItCanBeTold();
    void itIsShownWithTheActivationToken();
    void itsSurfaceIsTheWindowsColourWithAHairline();
    void roundedCornersAreTransparent();
    void noPressIsHandedOnWhenItCloses();
    void itsEdgeIsDrawnByNumbers_data();
    void itsEdgeIsDrawnByNumbers();
};

void TestPopover::init()
{
    failOnAnyWarningOfOurs();
    auto font = QApplication::font();
    font.setPixelSize(13);
    QApplication::setFont(font);
    QCursor::setPos(item);
}

void TestPopover::itOpensAtTheItemAndClosesWithTheNextClick()
{
    Popover popover(new Content(200));
    popover.toggle(item, {});
    QVERIFY(popover.isShown());
    QCOMPARE(popover.geometry(), besideItem);
    popover.toggle(item, {});
    QVERIFY(!popover.isShown());
    popover.toggle(item, {});
    QVERIFY(popover.isShown());
}

void TestPopover::whereTheHostIsWrongThePointerIsRight()
{
    Popover popover(new Content(200));
    popover.toggle({0, 26}, {});
    QCOMPARE(popover.geometry(), besideItem);
}

// The pointer stays where it last was over a window of X11.
void TestPopover::wherePartOfTheScreenIsNotX11TheHostIsRight()
{
    Popover popover(new Content(200), partlyX11);
    QCursor::setPos(700, 700);
    popover.toggle(item, {});
    QCOMPARE(popover.geometry(), besideItem);
}

void TestPopover::wherePartOfTheScreenIsNotX11EveryClickComesToUs()
{
    const auto windows = [] {
        QList<QRect> places;
        const auto all = QApplication::topLevelWidgets();
        for (const auto *window : all) {
            if (window->isVisible())
                places << window->geometry();
        }
        return places;
    };
    const auto screen = QGuiApplication::primaryScreen()->virtualGeometry();
    Popover popover(new Content(200), partlyX11);
    popover.toggle(item, {});
    QVERIFY(windows().contains(screen));
    const auto *const catcher = QApplication::topLevelAt(screen.bottomRight());
    if (catcher == nullptr || catcher == &popover)
        QFAIL("Nothing catches a click beside the popover");
    QVERIFY(catcher->testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(catcher->testAttribute(Qt::WA_ShowWithoutActivating));
    popover.toggle(item, {});
    QCOMPARE(windows(), QList<QRect>());
    for (const auto &other : {x11, wayland}) {
        Popover alone(new Content(200), other);
        alone.toggle(item, {});
        QVERIFY(!windows().contains(screen));
    }
}

void TestPopover::itGivesWayToAMenuButNotToOneOfBefore()
{
    Popover popover(new Content(200));
    popover.toggle(item, {});
    popover.giveWayToMenu();
    QVERIFY(popover.isShown());
    const auto givesWay = [&popover] {
        popover.giveWayToMenu();
        return !popover.isShown();
    };
    QTRY_VERIFY(givesWay());
    popover.toggle(item, {});
    popover.giveWayToMenu();
    QVERIFY(popover.isShown());
}

void TestPopover::anotherClickOnTheItemOpensItAtTheSamePlace()
{
    Popover popover(new Content(200));
    popover.toggle(item, {});
    popover.toggle(item, {});
    QCursor::setPos(item + QPoint(9, 5));
    popover.toggle(item + QPoint(9, 5), {});
    QCOMPARE(popover.geometry(), besideItem);
    popover.toggle(item, {});
    QCursor::setPos(item + QPoint(40, 0));
    popover.toggle(item + QPoint(40, 0), {});
    QCOMPARE(popover.geometry(), besideItem.translated(40, 0));
}

void TestPopover::withoutAClickItOpensWhereItWas()
{
    Popover popover(new Content(200));
    popover.toggle(item, {});
    popover.hide();
    QCursor::setPos(700, 700);
    popover.open({});
    QCOMPARE(popover.geometry(), besideItem);
}

void TestPopover::withoutAnyClickItOpensNearThePanel()
{
    Popover popover(new Content(200));
    popover.open({});
    const auto screen = QGuiApplication::primaryScreen()->geometry();
    QCOMPARE(popover.geometry(), QRect(screen.right() + 1 - 304, 28, 300, 350));
}

void TestPopover::escapeClosesIt_data()
{
    QTest::addColumn<WindowSystem>("windowSystem");
    QTest::newRow("one that grabs") << x11;
    QTest::newRow("one that is managed") << wayland;
}

void TestPopover::escapeClosesIt()
{
    QFETCH(WindowSystem, windowSystem);
    auto *content = new Content(200);
    Popover popover(content, windowSystem);
    popover.toggle(item, {});
    QTest::keyClick(&popover, Qt::Key_Escape);
    QVERIFY(!popover.isShown());
    popover.toggle(item, {});
    content->first.setFocus();
    QTest::keyClick(&content->first, Qt::Key_Escape);
    QVERIFY(!popover.isShown());
}

// Until the button is up again it holds the pointer, so that the status item never sees half a click.
void TestPopover::itStaysOpenWhereTheApplicationIsNoLongerTheActiveOne()
{
    Popover popover(new Content(200), x11);
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    QEvent inactive(QEvent::ApplicationDeactivate);
    QCoreApplication::sendEvent(qApp, &inactive);
    QVERIFY(popover.isShown());
    QCOMPARE(QApplication::activePopupWidget(), &popover);
}

void TestPopover::aClickElsewhereClosesItWhenTheButtonIsUp()
{
    Popover popover(new Content(200));
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    send(popover, QEvent::MouseButtonPress, {700, 700});
    QVERIFY(popover.isShown());
    send(popover, QEvent::MouseButtonRelease, {700, 700});
    QVERIFY(!popover.isShown());
}

void TestPopover::aRightClickBesideItIsNotKept_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<WindowSystem>("windowSystem");
    QTest::addColumn<int>("repeated");
    const QPoint elsewhere(700, 700);
    QTest::newRow("the right button on the item") << item << Qt::RightButton << x11 << 1;
    QTest::newRow("the right button elsewhere") << elsewhere << Qt::RightButton << x11 << 1;
    QTest::newRow("the right button inside") << besideItem.center() << Qt::RightButton << x11 << 0;
    QTest::newRow("the left button on the item") << item << Qt::LeftButton << x11 << 0;
    QTest::newRow("where not all is X11") << item << Qt::RightButton << partlyX11 << 0;
}

void TestPopover::aRightClickBesideItIsNotKept()
{
    QFETCH(QPoint, position);
    QFETCH(Qt::MouseButton, button);
    QFETCH(WindowSystem, windowSystem);
    Popover popover(new Content(200), windowSystem);
    int repeated = 0;
    connect(&popover, &Popover::rightClickKept, this, [&](QPoint at) {
        QVERIFY(!popover.isShown());
        QCOMPARE(at, position);
        ++repeated;
    });
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    send(popover, QEvent::MouseButtonPress, position, button);
    QCOMPARE(repeated, 0);
    send(popover, QEvent::MouseButtonRelease, position, button);
    QTEST(repeated, "repeated");
}

void TestPopover::aRightButtonThatIsLetGoElsewhereIsNoClick()
{
    Popover popover(new Content(200), x11);
    const QSignalSpy kept(&popover, &Popover::rightClickKept);
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    send(popover, QEvent::MouseButtonPress, item, Qt::RightButton);
    send(popover, QEvent::MouseButtonRelease, item + QPoint(QApplication::startDragDistance(), 0), Qt::RightButton);
    QVERIFY(!popover.isShown());
    QCOMPARE(kept.size(), 0);
}

void TestPopover::aClickInsideLeavesItOpen()
{
    Popover popover(new Content(200));
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    send(popover, QEvent::MouseButtonPress, besideItem.center());
    send(popover, QEvent::MouseButtonRelease, {700, 700});
    QVERIFY(popover.isShown());
}

void TestPopover::theReleaseOfTheClickThatOpenedItLeavesItOpen()
{
    Popover popover(new Content(200));
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    send(popover, QEvent::MouseButtonRelease, item);
    QVERIFY(popover.isShown());
}

void TestPopover::closedInAnyWayItKeepsItsWindow_data()
{
    using Close = std::function<void(Popover &)>;
    QTest::addColumn<WindowSystem>("windowSystem");
    QTest::addColumn<Close>("close");
    QTest::newRow("a click on the item") << x11 << Close([](Popover &popover) { popover.toggle(item, {}); });
    QTest::newRow("Esc") << x11 << Close([](Popover &popover) { QTest::keyClick(&popover, Qt::Key_Escape); });
    QTest::newRow("a click elsewhere") << x11 << Close([](Popover &popover) {
        send(popover, QEvent::MouseButtonPress, {700, 700});
        send(popover, QEvent::MouseButtonRelease, {700, 700});
    });
    QTest::newRow("another window") << wayland << Close([](Popover &popover) {
        QEvent deactivation(QEvent::WindowDeactivate);
        QApplication::sendEvent(&popover, &deactivation);
    });
}

void TestPopover::closedInAnyWayItKeepsItsWindow()
{
    QFETCH(WindowSystem, windowSystem);
    QFETCH(std::function<void(Popover &)>, close);
    Popover popover(new Content(200), windowSystem);
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    const auto window = popover.internalWinId();
    close(popover);
    QVERIFY(!popover.isShown());
    QVERIFY(window != 0);
    QCOMPARE(popover.internalWinId(), window);
}

void TestPopover::whoeverWantsIsToldOfOpeningAndClosing()
{
    Popover popover(new Content(200));
    QSignalSpy shown(&popover, &Popover::shown);
    QSignalSpy hidden(&popover, &Popover::hidden);
    popover.toggle(item, {});
    QCOMPARE(shown.size(), 1);
    QCOMPARE(hidden.size(), 0);
    popover.hide();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(hidden.size(), 1);
}

void TestPopover::openingItAgainWhileItIsOpenChangesNothing()
{
    auto *content = new Content(200);
    Popover popover(content);
    popover.toggle(item, {});
    content->second.setFocus();
    QSignalSpy shown(&popover, &Popover::shown);
    popover.open({});
    QCOMPARE(shown.size(), 0);
    QCOMPARE(popover.geometry(), besideItem);
    QCOMPARE(popover.focusWidget(), &content->second);
}

void TestPopover::moreContentMakesItHigher()
{
    auto *content = new Content(600);
    Popover popover(content);
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    QCOMPARE(popover.geometry(), QRect(250, 28, 300, 600));
    QCOMPARE(content->size(), QSize(300, 600));
    QVERIFY(!popover.findChild<QScrollArea *>()->verticalScrollBar()->isVisible());
}

void TestPopover::contentBeyondTheScreenIsScrolled()
{
    auto *content = new Content(2000);
    Popover popover(content);
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    const auto *area = popover.findChild<QScrollArea *>();
    const auto *bar = area->verticalScrollBar();
    const auto screen = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(bar->isVisible());
    QCOMPARE(popover.geometry().bottom(), screen.bottom() - 4);
    QCOMPARE(popover.width(), 300 + bar->width());
    QCOMPARE(area->viewport()->width(), 300);
    QCOMPARE(content->size(), QSize(300, 2000));
    QCOMPARE(bar->maximum(), 2000 - popover.height());
}

void TestPopover::contentWiderThanTheScreenIsScrolled()
{
    auto font = QApplication::font();
    font.setPixelSize(40);
    QApplication::setFont(font);
    auto *content = new Content(200);
    content->setFixedWidth(923);
    Popover popover(content);
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    const auto *area = popover.findChild<QScrollArea *>();
    QVERIFY(area->viewport()->width() < content->width());
    QCOMPARE(area->horizontalScrollBar()->maximum(), content->width() - area->viewport()->width());
    QVERIFY(area->horizontalScrollBar()->isVisible());
}

void TestPopover::itFollowsItsContentWhileItIsOpen()
{
    auto *content = new Content(200);
    Popover popover(content);
    QCursor::setPos(400, 790);
    popover.toggle({400, 790}, {});
    QVERIFY(QTest::qWaitForWindowExposed(&popover));
    const auto bottom = popover.geometry().bottom();
    content->become(500);
    QTRY_COMPARE(popover.height(), 500);
    QCOMPARE(popover.geometry().bottom(), bottom);
    content->become(3000);
    QTRY_VERIFY(popover.findChild<QScrollArea *>()->verticalScrollBar()->isVisible());
    content->become(200);
    QTRY_COMPARE(popover.size(), QSize(300, 350));
    QCOMPARE(popover.geometry().bottom(), bottom);
    QTRY_COMPARE(content->size(), QSize(300, 350));
}

void TestPopover::whatHappensWhileItIsClosedIsThereWhenItOpens()
{
    auto *content = new Content(600);
    Popover popover(content);
    popover.toggle(item, {});
    popover.hide();
    content->become(400);
    popover.toggle(item, {});
    QCOMPARE(popover.size(), QSize(300, 400));
}

void TestPopover::nothingHasTheFocusWhenItOpens_data()
{
    escapeClosesIt_data();
}

void TestPopover::nothingHasTheFocusWhenItOpens()
{
    QFETCH(WindowSystem, windowSystem);
    auto *content = new Content(200);
    Popover popover(content, windowSystem);
    for (int opening = 0; opening < 2; ++opening) {
        popover.open({});
        QVERIFY(QTest::qWaitForWindowActive(&popover));
        QCOMPARE(QApplication::focusWidget(), &popover);
        QTest::keyClick(&popover, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &content->first);
        // The off-screen platform takes the focus from no window that is only hidden, so a managed one is destroyed.
        popover.close();
        popover.hide();
    }
}

void TestPopover::theScrollAreaIsNoTabStop()
{
    auto *content = new Content(2000);
    Popover popover(content);
    popover.open({});
    QVERIFY(QTest::qWaitForWindowActive(&popover));
    QList<QWidget *> stops;
    for (int press = 0; press < 4; ++press) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        stops.append(QApplication::focusWidget());
    }
    QCOMPARE(stops, QList<QWidget *>({&content->first, &content->second, &content->first, &content->second}));
}

void TestPopover::itIsNamed()
{
    Popover popover(new Content(200));
    QCOMPARE(popover.windowTitle(), QStringLiteral("Velquarin"));
    auto *accessible = QAccessible::queryAccessibleInterface(&popover);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Velquarin"));
    QCOMPARE(accessible->role(), QAccessible::Window);
}

void TestPopover::anActivatedWindowClosesAManagedOne()
{
    QWidget other;
    Popover popover(new Content(200), wayland);
    popover.toggle(item, {});
    QVERIFY(QTest::qWaitForWindowActive(&popover));
    other.show();
    other.activateWindow();
    QTRY_VERIFY(!popover.isShown());
}

void TestPopover::theClickThatDeactivatedItDoesNotOpenItAgain()
{
    Popover popover(new Content(200), wayland);
    popover.toggle(item, {});
    QEvent deactivation(QEvent::WindowDeactivate);
    QApplication::sendEvent(&popover, &deactivation);
    QVERIFY(!popover.isShown());
    popover.toggle(item, {});
    QVERIFY(!popover.isShown());
    const auto clickAgain = [&popover] {
        if (!popover.isShown())
            popover.toggle(item, {});
        return popover.isShown();
    };
    QTRY_VERIFY(clickAgain());
}

void TestPopover::closedByEscapeItOpensAtOnce()
{
    Popover popover(new Content(200), wayland);
    popover.toggle(item, {});
    QTest::keyClick(&popover, Qt::Key_Escape);
    popover.toggle(item, {});
    QVERIFY(popover.isShown());
}

void TestPopover::aManagedOneStandsAtTheEdgesThatItCanBeTold()
{
    auto windowSystem = wayland;
    QList<WindowAnchor> anchors;
    windowSystem.anchorWindow = [&](const QWindow &window, const WindowAnchor &anchor) {
        QCOMPARE(window.title(), QStringLiteral("Velquarin"));
        QVERIFY(anchors.isEmpty() != window.isVisible());
        anchors.append(anchor);
    };
    Popover popover(new Content(200), windowSystem);
    popover.toggle(item, {});
    QCOMPARE(anchors.value(0).edges, Qt::TopEdge | Qt::RightEdge);
    QCOMPARE(anchors.value(0).margins.left(), besideItem.left());
    QCOMPARE(anchors.value(0).margins.top(), 8);
    popover.open({});
    QCOMPARE(anchors.size(), 2);
    QCOMPARE(anchors.value(1), anchors.value(0));
}

void TestPopover::itIsShownWithTheActivationToken()
{
    auto windowSystem = wayland;
    QStringList tokens;
    Popover *shown = nullptr;
    windowSystem.showWithToken = [&](const QString &token, const std::function<void()> &show) {
        QVERIFY(!shown->isShown());
        show();
        QVERIFY(shown->isShown());
        tokens.append(token);
    };
    Popover popover(new Content(200), windowSystem);
    shown = &popover;
    popover.toggle(item, QStringLiteral("token-7"));
    popover.hide();
    popover.open(QStringLiteral("token-8"));
    QCOMPARE(tokens, (QStringList{QStringLiteral("token-7"), QStringLiteral("token-8")}));
}

void TestPopover::itsSurfaceIsTheWindowsColourWithAHairline()
{
    Popover popover(new Content(200), x11);
    popover.setPalette(QPalette(QColor(0x336699), QColor(0x336699)));
    popover.toggle(item, {});
    const auto image = popover.grab().toImage();
    QCOMPARE(image.pixelColor(150, 300), QColor(0x336699));
    QCOMPARE(image.pixelColor(1, 300), QColor(0x336699));
    QVERIFY(image.pixelColor(0, 300) != QColor(0x336699));
    QCOMPARE(image.pixelColor(0, 0), image.pixelColor(0, 300));
    QCOMPARE(image.pixelColor(299, 349), image.pixelColor(0, 300));
}

void TestPopover::roundedCornersAreTransparent()
{
    Popover popover(new Content(200), wayland);
    popover.setPalette(QPalette(QColor(0x336699), QColor(0x336699)));
    popover.toggle(item, {});
    const auto image = popover.grab().toImage();
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(image.pixelColor(299, 349).alpha(), 0);
    QCOMPARE(image.pixelColor(150, 300), QColor(0x336699));
}

// Only Qt on X11 would do so.
void TestPopover::noPressIsHandedOnWhenItCloses()
{
    const Popover popover(new Content(200));
    QVERIFY(popover.testAttribute(Qt::WA_NoMouseReplay));
}

void TestPopover::itsEdgeIsDrawnByNumbers_data()
{
    QTest::addColumn<WindowSystem>("windowSystem");
    QTest::addColumn<int>("radius");
    QTest::newRow("square") << x11 << 0;
    QTest::newRow("rounded") << wayland << 10;
}

void TestPopover::itsEdgeIsDrawnByNumbers()
{
    QFETCH(WindowSystem, windowSystem);
    QFETCH(int, radius);
    Popover popover(new Content(200), windowSystem);
    popover.resize(300, 350);
    QImage drawn(popover.size(), QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    auto expected = drawn;
    popover.render(&drawn, {}, {}, QWidget::RenderFlags());
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing, radius > 0);
    painter.setPen(QPen(style::divider(popover.palette()), 1));
    painter.setBrush(popover.palette().color(QPalette::Window));
    painter.drawRoundedRect(QRectF(0.5, 0.5, 299, 349), radius, radius);
    painter.end();
    QCOMPARE(drawn, expected);
}

VELQUARIN_WINDOW_TEST(TestPopover)
#include "tst_popover.moc"
