// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusMenu.h"

#include "Platform/Linux/Windows/DesktopAppearance.h"
#include "support/Offscreen.h"
#include "support/TestProgram.h"

#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QWidget>

using namespace velquarin;

namespace {

constexpr QRect screen(1024, 0, 1280, 800);
const QColor darkPanel(53, 53, 53);
const QColor lightPanel(246, 245, 244);

//! A panel along the upper edge of the screen.
class Panel : public QWidget
{
public:
    explicit Panel(const QColor &color)
        : QWidget(nullptr, Qt::FramelessWindowHint)
    {
        auto palette = this->palette();
        palette.setColor(QPalette::Window, color);
        setPalette(palette);
        const auto whole = QGuiApplication::primaryScreen()->geometry();
        setGeometry(whole.x(), whole.y(), whole.width(), 30);
        show();
    }

    [[nodiscard]] QPoint click() const { return geometry().center(); }
};

}  // namespace

class TestPanelGround : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarningOfOurs(); }
    void theStripLiesAlongTheNearestEdge_data();
    void theStripLiesAlongTheNearestEdge();
    void mostOfAPictureDecides();
    void whereTheScreenCannotBeSeenTheDesktopsPaletteHolds();
    void aMenuThatWasDarkFollowsAPanelThatIsLightNow();
};

void TestPanelGround::theStripLiesAlongTheNearestEdge_data()
{
    QTest::addColumn<QPoint>("click");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("above") << QPoint(1600, 12) << QRect(QPoint(1540, 11), QPoint(1660, 13));
    QTest::newRow("below") << QPoint(1600, 790) << QRect(QPoint(1540, 789), QPoint(1660, 791));
    QTest::newRow("at the left") << QPoint(1030, 400) << QRect(QPoint(1029, 340), QPoint(1031, 460));
    QTest::newRow("at the right") << QPoint(2290, 400) << QRect(QPoint(2289, 340), QPoint(2291, 460));
    QTest::newRow("in a corner it is cut") << QPoint(2300, 0) << QRect(QPoint(2240, 0), QPoint(2303, 1));
}

void TestPanelGround::theStripLiesAlongTheNearestEdge()
{
    QFETCH(QPoint, click);
    QFETCH(QRect, expected);
    QCOMPARE(panelStrip(click, screen), expected);
}

void TestPanelGround::mostOfAPictureDecides()
{
    QImage picture(10, 1, QImage::Format_RGB32);
    picture.fill(lightPanel);
    QVERIFY(!isMostlyDark(picture));
    for (int x = 0; x < 5; ++x)
        picture.setPixelColor(x, 0, darkPanel);
    QVERIFY(!isMostlyDark(picture));
    picture.setPixelColor(5, 0, darkPanel);
    QVERIFY(isMostlyDark(picture));
    QVERIFY(!isMostlyDark(QImage()));
}

void TestPanelGround::whereTheScreenCannotBeSeenTheDesktopsPaletteHolds()
{
    Panel panel(darkPanel);
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    qputenv("WAYLAND_DISPLAY", "wayland-1");
    QMenu menu;
    matchPanel(menu, panel.click());
    qunsetenv("WAYLAND_DISPLAY");
    QVERIFY(!isDark(menu.palette()));
}

void TestPanelGround::aMenuThatWasDarkFollowsAPanelThatIsLightNow()
{
    QMenu menu;
    for (const bool isPanelDark : {true, false, true}) {
        Panel panel(isPanelDark ? darkPanel : lightPanel);
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        matchPanel(menu, panel.click());
        QCOMPARE(isDark(menu.palette()), isPanelDark);
    }
}

VELQUARIN_WINDOW_TEST(TestPanelGround)
#include "tst_panelground.moc"
