// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/AnimatingStyle.h"
#include "support/Offscreen.h"
#include "support/Picture.h"
#include "support/TestProgram.h"
#include "Views/Controls/PlainButton.h"

#include <QApplication>
#include <QTest>
#include <QVariantAnimation>

#include <cmath>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// Every painting from now on.
class PaintCount : public QObject
{
public:
    explicit PaintCount(QWidget &widget) { widget.installEventFilter(this); }
    int paints = 0;

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

// How much lies on the ground, in all.
double inkOf(const QImage &picture)
{
    double ink = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ink += std::abs(picture.pixelColor(x, y).lightness() - picture.pixelColor(0, 0).lightness());
    }
    return ink;
}

QColor groundOf(QWidget &button)
{
    const auto picture = pictureOf(button, 1);
    return picture.pixelColor(button.width() / 2, 1);
}

// One that stands alone, and would have the focus as soon as its window is active.
class LoneButton : public IconButton
{
public:
    explicit LoneButton(QStyle &style)
        : IconButton(QStringLiteral("arrow.clockwise"), QStringLiteral("Refresh"))
    {
        setStyle(&style);
        setFocusPolicy(Qt::NoFocus);
    }
};

}  // namespace

class TestPlainButton : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarningOfOurs();
        // Windows open in the upper left corner, and the pointer is on none of them.
        QCursor::setPos(700, 700);
    }

    void thePointerAndAPressShowOnItsGround()
    {
        IconButton button(QStringLiteral("gear"), QStringLiteral("Settings"));
        const auto bare = groundOf(button);
        button.setAttribute(Qt::WA_UnderMouse);
        QCOMPARE(groundOf(button), style::hoveredGround(button.palette()));
        button.setDown(true);
        QCOMPARE(groundOf(button), style::selectedGround(button.palette()));
        button.setDown(false);
        button.setEnabled(false);
        QCOMPARE(groundOf(button), bare);
        button.setEnabled(true);
        button.setAttribute(Qt::WA_UnderMouse, false);
        QCOMPARE(groundOf(button), bare);
    }

    void itIsPaintedAnewAsThePointerComesAndGoes()
    {
        IconButton button(QStringLiteral("gear"), QStringLiteral("Settings"));
        QVERIFY(button.testAttribute(Qt::WA_Hover));
    }

    void aSymbolTurnsAtLeastOnceAndThenStandsStill()
    {
        AnimatingStyle motion(200);
        LoneButton button(motion);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        const auto atRest = pictureOf(button, 1);
        button.setTurning(true);
        button.setTurning(false);
        QTRY_VERIFY(pictureOf(button, 1) != atRest);
        QTRY_COMPARE(pictureOf(button, 1), atRest);
        QCoreApplication::processEvents();
        // One that goes on would be painted many times while another one turns.
        const PaintCount still(button);
        LoneButton other(motion);
        other.show();
        other.setTurning(true);
        other.setTurning(false);
        QTRY_VERIFY(pictureOf(other, 1) != atRest);
        QTRY_COMPARE(pictureOf(other, 1), atRest);
        QVERIFY2(still.paints <= 1, qPrintable(QString::number(still.paints)));
    }

    void aSymbolTurnsForAsLongAsItIsWanted()
    {
        AnimatingStyle motion(200);
        LoneButton button(motion);
        button.setTurning(true);
        button.show();
        const auto atRest = pictureOf(button, 1);
        for (int turn = 0; turn < 2; ++turn) {
            QTRY_VERIFY(pictureOf(button, 1) != atRest);
            const auto before = pictureOf(button, 1);
            QTRY_VERIFY(pictureOf(button, 1) != before);
        }
        button.hide();
        QCOMPARE(pictureOf(button, 1), atRest);
    }

    void aSymbolThatTurnsKeepsItsSize()
    {
        AnimatingStyle motion(200);
        LoneButton button(motion);
        button.show();
        const auto atRest = inkOf(pictureOf(button, 2));
        button.setTurning(true);
        auto &turning = *button.findChild<QVariantAnimation *>(QStringLiteral("turning"));
        turning.pause();
        for (int eighth = 1; eighth < 8; ++eighth) {
            turning.setCurrentTime(turning.duration() * eighth / 8);
            const auto ink = inkOf(pictureOf(button, 2)) / atRest;
            QVERIFY2(std::abs(ink - 1) < 0.05, qPrintable(QStringLiteral("%1/8: %2").arg(eighth).arg(ink)));
        }
    }

    void whereNoAnimationsAreWantedItStandsStill()
    {
        AnimatingStyle motion(0);
        LoneButton button(motion);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        QCoreApplication::processEvents();
        const PaintCount still(button);
        button.setTurning(true);
        AnimatingStyle lively(200);
        LoneButton other(lively);
        other.show();
        const auto atRest = pictureOf(other, 1);
        other.setTurning(true);
        QTRY_VERIFY(pictureOf(other, 1) != atRest);
        QVERIFY2(still.paints <= 1, qPrintable(QString::number(still.paints)));
    }
};

VELQUARIN_WINDOW_TEST(TestPlainButton)
#include "tst_plainbutton.moc"
