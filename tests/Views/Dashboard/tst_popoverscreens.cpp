// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/Popover.h"

#include "support/Offscreen.h"
#include "support/TwoScreens.h"

#include <QScreen>
#include <QWindow>

using namespace velquarin;
using namespace velquarin::test;

class TestPopoverScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void itOpensOnTheScreenThatWasClicked();
    void aManagedOneIsHandedOverOnTheScreenThatWasClicked();
    void withoutAClickItOpensOnThePrimaryScreen();
};

void TestPopoverScreens::init()
{
    failOnAnyWarningOfOurs();
    QCOMPARE(QGuiApplication::screens().size(), 2);
    QCOMPARE(QGuiApplication::screens().at(1)->geometry(), rightScreen);
}

void TestPopoverScreens::itOpensOnTheScreenThatWasClicked()
{
    for (const auto &screen : {leftScreen, rightScreen}) {
        Popover popover(new QWidget, {.knowsPointer = false});
        popover.toggle(screen.topRight() + QPoint(-40, 10), {});
        QVERIFY2(screen.contains(popover.geometry()), qPrintable(QDebug::toString(popover.geometry())));
    }
}

// The compositor anchors a window on the screen that it was made for.
void TestPopoverScreens::aManagedOneIsHandedOverOnTheScreenThatWasClicked()
{
    QList<QRect> screens;
    WindowSystem wayland{.placesWindows = false, .knowsPointer = false};
    wayland.anchorWindow = [&](const QWindow &window, const WindowAnchor & /*anchor*/) {
        screens.append(window.screen()->geometry());
    };
    for (const auto &screen : {leftScreen, rightScreen}) {
        Popover popover(new QWidget, wayland);
        popover.toggle(screen.topRight() + QPoint(-40, 10), {});
    }
    QCOMPARE(screens, (QList<QRect>{leftScreen, rightScreen}));
}

void TestPopoverScreens::withoutAClickItOpensOnThePrimaryScreen()
{
    Popover popover(new QWidget, {});
    popover.open({});
    QVERIFY2(leftScreen.contains(popover.geometry()), qPrintable(QDebug::toString(popover.geometry())));
}

VELQUARIN_TEST_RUN(runOnTwoScreens<TestPopoverScreens>)
#include "tst_popoverscreens.moc"
