// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Offscreen.h"
#include "support/Picture.h"
#include "support/TestProgram.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/GuestStyle.h"
#include "Views/Controls/HouseStyle.h"
#include "Views/Controls/Motion.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolTip>

#include <algorithm>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// What is painted of @p control, its focus and the pointer as @p state says.
template <typename Option, typename Paint>
QImage painted(QWidget &control, QStyle::State state, Paint paint)
{
    Option option;
    option.initFrom(&control);
    option.rect = QRect(QPoint(), control.sizeHint());
    option.state = QStyle::State_Enabled | QStyle::State_Active | state;
    QImage image(option.rect.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(style::ground(control.palette()));
    QPainter painter(&image);
    paint(option, painter);
    return image;
}

QImage paintedButton(QPushButton &button, QStyle::State state = {})
{
    return painted<QStyleOptionButton>(button, state, [&](QStyleOptionButton &option, QPainter &painter) {
        option.text = button.text();
        button.style()->drawControl(QStyle::CE_PushButton, &option, &painter, &button);
    });
}

QImage paintedBox(QCheckBox &box, QStyle::State state)
{
    return painted<QStyleOptionButton>(box, state, [&](QStyleOptionButton &option, QPainter &painter) {
        box.style()->drawControl(QStyle::CE_CheckBox, &option, &painter, &box);
    });
}

// The best that any pixel of the middle row has against the ground: what an edge or a filling is told by.
double standsOutOf(const QImage &image, const QColor &ground)
{
    double best = 1;
    for (int x = 0; x < image.width(); ++x)
        best = std::max(best, style::contrast(image.pixelColor(x, image.height() / 2), ground));
    return best;
}

QRect partOf(const QScrollBar &bar, QStyle::SubControl part)
{
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = bar.orientation();
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.pageStep = bar.pageStep();
    option.sliderPosition = bar.sliderPosition();
    option.upsideDown = bar.invertedAppearance();
    return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, part, &bar);
}

QWidget *shownTip()
{
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find_if(
        windows, [](const QWidget *window) { return window->inherits("QTipLabel") && window->isVisible(); });
    return found == windows.end() ? nullptr : *found;
}

}  // namespace

class TestHouseStyle : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void itTakesThePlaceOfFusionAlone();
    void whoChoosesFusionByNameGetsIt();
    void aButtonIsAsHighAsItIsDrawn();
    void aButtonTellsWhatIsDoneToIt_data() { addPalettes(); }
    void aButtonTellsWhatIsDoneToIt();
    void theFocusOfAButtonCanBeSeen();
    void aProminentButtonIsFilledWithTheAccent();
    void boxesCanBeSeen_data() { addPalettes(); }
    void boxesCanBeSeen();
    void aBoxHasRoomForItsRing();
    void aPickerShowsItsTextWhole();
    void theChevronsOfAPickerPointAwayFromEachOther();
    void buttonsAreReadWhateverThePaletteHasForThem();
    void aPillStandsWhereTheBarIs();
    void aPillCanBeDragged_data();
    void aPillCanBeDragged();
    void aPillIsThickerUnderThePointer();
    void aBarWithoutRangeShowsNothing();
    void aPillLaidOverTakesNoRoom();
    void aPillLaidOverKeepsClearOfRoundCorners();
    void aPillLeavesTheGroundAroundIt();
    void aPillIsTheSameUnderEveryStyle();
    void aSliderIsNoPill();
    void aTooltipIsQuietAndDark();
    void reducedMotionEndsAllAnimations();
    void whatMovesAndBeginsAgainBeginsFromTheStart();

private:
    static void addPalettes();
};

void TestHouseStyle::init()
{
    failOnAnyWarningOfOurs();
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    GuestStyle::install();
    QApplication::setPalette(lightPalette());
    auto font = QApplication::font();
    font.setPixelSize(13);
    QApplication::setFont(font);
}

void TestHouseStyle::cleanup()
{
    QApplication::setPalette(QPalette());
}

void TestHouseStyle::addPalettes()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << lightPalette();
    QTest::newRow("dark") << darkPalette();
    QTest::newRow("black on white") << contrastPalette(Qt::black, Qt::white);
    QTest::newRow("white on black") << contrastPalette(Qt::white, Qt::black);
}

void TestHouseStyle::itTakesThePlaceOfFusionAlone()
{
    const auto baseOf = [](const QStyle *style) { return qobject_cast<const QProxyStyle *>(style)->baseStyle(); };
    QCOMPARE(QApplication::style()->objectName(), QStringLiteral("fusion"));
    QVERIFY(qobject_cast<HouseStyle *>(baseOf(QApplication::style())) != nullptr);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Windows")));
    GuestStyle::install();
    QCOMPARE(QApplication::style()->objectName(), QStringLiteral("windows"));
    QVERIFY(qobject_cast<HouseStyle *>(baseOf(QApplication::style())) == nullptr);
}

void TestHouseStyle::whoChoosesFusionByNameGetsIt()
{
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
    QVERIFY(HouseStyle::isWantedFor(*fusion));
    qputenv("QT_STYLE_OVERRIDE", "fusion");
    const bool isWanted = HouseStyle::isWantedFor(*fusion);
    qunsetenv("QT_STYLE_OVERRIDE");
    QVERIFY(!isWanted);
}

void TestHouseStyle::aButtonIsAsHighAsItIsDrawn()
{
    QPushButton button(QStringLiteral("Refresh Now"));
    const auto text = button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
    QCOMPARE(button.sizeHint(), QSize(text.width() + 24, 28));
    button.setIcon(QPixmap(14, 14));
    button.setIconSize({14, 14});
    QCOMPARE(button.sizeHint(), QSize(text.width() + 24 + 14 + 6, 28));
}

void TestHouseStyle::aButtonTellsWhatIsDoneToIt()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    QPushButton button(QStringLiteral("Scan Now"));
    const auto groundOf = [&button](QStyle::State state) { return paintedButton(button, state).pixelColor(6, 14); };
    const auto text = style::ink(palette, style::Ink::Primary);
    const auto resting = groundOf({});
    const auto hovered = groundOf(QStyle::State_MouseOver);
    const auto pressed = groundOf(QStyle::State_MouseOver | QStyle::State_Sunken);
    QVERIFY(style::contrast(resting, text) > style::contrast(hovered, text));
    QVERIFY(style::contrast(hovered, text) > style::contrast(pressed, text));
    QVERIFY(style::contrast(pressed, text) >= 4.5);
}

void TestHouseStyle::theFocusOfAButtonCanBeSeen()
{
    QPushButton button(QStringLiteral("Scan Now"));
    const auto image = paintedButton(button, QStyle::State_HasFocus);
    QCOMPARE(image.pixelColor(image.width() / 2, 0), style::desktopAccent(button.palette()));
    QVERIFY(paintedButton(button).pixelColor(image.width() / 2, 0) != style::desktopAccent(button.palette()));
    auto dark = darkPalette();
    for (const auto &accent : {QColor(0x2190a4), QColor(0x3a944a), QColor(0x808080)}) {
        dark.setColor(QPalette::Highlight, accent);
        button.setPalette(dark);
        for (const auto state : {QStyle::State_None, QStyle::State_MouseOver}) {
            const auto focused = paintedButton(button, state | QStyle::State_HasFocus);
            QVERIFY(style::contrast(focused.pixelColor(40, 0), focused.pixelColor(6, 14)) >= 3);
        }
    }
}

void TestHouseStyle::aProminentButtonIsFilledWithTheAccent()
{
    QPushButton button(QStringLiteral("Add Folder"));
    setProminent(button);
    for (const auto &palette : {lightPalette(), darkPalette()}) {
        button.setPalette(palette);
        const auto image = paintedButton(button);
        QCOMPARE(image.pixelColor(6, 14), style::accentFill(palette, 4.5));
        for (const auto state : {QStyle::State_None, QStyle::State_MouseOver, QStyle::State_Sunken})
            QVERIFY(style::contrast(paintedButton(button, state).pixelColor(6, 14), Qt::white) >= 4.5);
        QVERIFY(style::contrast(image.pixelColor(6, 14), style::ground(palette)) >= 3);
        QCOMPARE(image.pixelColor(40, 2), image.pixelColor(6, 14));
        QCOMPARE(paintedButton(button, QStyle::State_HasFocus).pixelColor(40, 2), QColor(Qt::white));
    }
}

void TestHouseStyle::boxesCanBeSeen()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    QCheckBox box;
    for (const auto state : {QStyle::State_Off, QStyle::State_On})
        QVERIFY(standsOutOf(paintedBox(box, state), style::hoveredGround(palette)) >= 3);
    const auto ticked = paintedBox(box, QStyle::State_On);
    const auto filling = ticked.pixelColor(6, box.sizeHint().height() / 2 - 4);
    QCOMPARE(filling, style::accentFill(palette, 3));
    QVERIFY(standsOutOf(ticked, filling) >= 3);
}

void TestHouseStyle::aBoxHasRoomForItsRing()
{
    QCheckBox box;
    QCOMPARE(box.sizeHint(), QSize(24, 24));
    const auto focused = paintedBox(box, QStyle::State_Off | QStyle::State_HasFocus);
    QCOMPARE(focused.pixelColor(12, 0), style::desktopAccent(box.palette()));
    QCOMPARE(focused.pixelColor(2, 12), style::ground(box.palette()));
}

void TestHouseStyle::aPickerShowsItsTextWhole()
{
    QComboBox picker;
    picker.addItem(QStringLiteral("By everyone, default branch"));
    QCOMPARE(picker.sizeHint().height(), 24);
    QStyleOptionComboBox option;
    option.initFrom(&picker);
    option.rect = QRect(QPoint(), picker.sizeHint());
    const auto field =
        picker.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &picker);
    QVERIFY(field.width() >= picker.fontMetrics().horizontalAdvance(picker.currentText()) + 2);
    option.direction = Qt::RightToLeft;
    const auto mirrored =
        picker.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &picker);
    QCOMPARE(option.rect.right() - mirrored.right(), field.left());
}

void TestHouseStyle::theChevronsOfAPickerPointAwayFromEachOther()
{
    QComboBox picker;
    picker.resize(80, 24);
    // Where the chevrons stand, without the picker's edge.
    const auto chevrons = pictureOf(picker, 4).copy(4 * 62, 12, 4 * 14, 72);
    const auto extentOf = [&](int row) {
        int first = chevrons.width();
        int last = -1;
        for (int column = 0; column < chevrons.width(); ++column) {
            if (chevrons.pixelColor(column, row).lightness() < 128) {
                first = std::min(first, column);
                last = column;
            }
        }
        return last - first;
    };
    QList<int> extents;
    for (int row = 0; row < chevrons.height() / 2; ++row)
        extents.append(extentOf(row));
    const auto isInk = [](int extent) { return extent >= 0; };
    const auto tip = std::ranges::find_if(extents, isInk);
    QVERIFY(tip != extents.end());
    QVERIFY(*tip < *std::ranges::max_element(extents));
    QVERIFY(!isInk(extents.last()));
}

void TestHouseStyle::buttonsAreReadWhateverThePaletteHasForThem()
{
    auto palette = lightPalette();
    palette.setColor(QPalette::Button, QColor(0x333333));
    palette.setColor(QPalette::ButtonText, Qt::white);
    QApplication::setPalette(palette);
    QComboBox picker;
    picker.addItem(QStringLiteral("By everyone"));
    picker.resize(picker.sizeHint());
    QVERIFY(standsOutOf(pictureOf(picker, 4).copy(40, 0, 240, 96), Qt::white) >= 4.5);
    QPushButton button;
    button.setIcon(style::symbolIcon(QStringLiteral("plus")));
    button.resize(60, 28);
    QVERIFY(standsOutOf(pictureOf(button, 4).copy(80, 30, 80, 52), Qt::white) >= 4.5);
    // Others stand on the ground that the palette has for them.
    QCOMPARE(QApplication::palette().color(QPalette::ButtonText), QColor(Qt::white));
}

void TestHouseStyle::aPillStandsWhereTheBarIs()
{
    QScrollBar bar(Qt::Horizontal);
    bar.resize(100, 12);
    bar.setRange(0, 100);
    bar.setPageStep(100);
    bar.setValue(100);
    QCOMPARE(bar.sizeHint().height(), 12);
    QCOMPARE(partOf(bar, QStyle::SC_ScrollBarSlider), QRect(50, 0, 50, 12));
    QCOMPARE(partOf(bar, QStyle::SC_ScrollBarSubPage), QRect(0, 0, 50, 12));
    QVERIFY(partOf(bar, QStyle::SC_ScrollBarAddLine).isEmpty());
    bar.setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(partOf(bar, QStyle::SC_ScrollBarSlider), QRect(0, 0, 50, 12));
    bar.setRange(0, 100000);
    QCOMPARE(partOf(bar, QStyle::SC_ScrollBarSlider).width(), 24);
}

void TestHouseStyle::aPillCanBeDragged_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("lying") << Qt::Horizontal << Qt::LeftToRight;
    QTest::newRow("lying, from the right") << Qt::Horizontal << Qt::RightToLeft;
    QTest::newRow("standing") << Qt::Vertical << Qt::LeftToRight;
}

void TestHouseStyle::aPillCanBeDragged()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(Qt::LayoutDirection, direction);
    QScrollBar bar(orientation);
    makePill(bar, false);
    bar.setLayoutDirection(direction);
    bar.setRange(0, 1000);
    bar.setPageStep(200);
    bar.setValue(400);
    bar.resize(orientation == Qt::Horizontal ? QSize(300, 12) : QSize(12, 300));
    bar.show();
    const auto from = partOf(bar, QStyle::SC_ScrollBarSlider).center();
    QTest::mousePress(&bar, Qt::LeftButton, {}, from);
    QVERIFY(bar.isSliderDown());
    QCOMPARE(bar.value(), 400);
    QTest::mouseMove(&bar, from + (orientation == Qt::Horizontal ? QPoint(30, 0) : QPoint(0, 30)));
    QVERIFY(direction == Qt::RightToLeft ? bar.value() < 400 : bar.value() > 400);
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, from);
    QVERIFY(!bar.isSliderDown());
}

void TestHouseStyle::aPillIsThickerUnderThePointer()
{
    QScrollBar bar(Qt::Vertical);
    bar.setRange(0, 100);
    bar.setPageStep(100);
    const auto widthIn = [&bar](QStyle::State state) {
        const auto image = painted<QStyleOptionSlider>(bar, state, [&](QStyleOptionSlider &option, QPainter &painter) {
            option.rect = QRect(0, 0, 12, 100);
            option.orientation = Qt::Vertical;
            option.maximum = 100;
            option.pageStep = 100;
            bar.style()->drawComplexControl(QStyle::CC_ScrollBar, &option, &painter, &bar);
        });
        int width = 0;
        for (int x = 0; x < 12; ++x)
            width += style::contrast(image.pixelColor(x, 25), style::ground(bar.palette())) >= 3 ? 1 : 0;
        return width;
    };
    QCOMPARE(widthIn({}), 4);
    QVERIFY(widthIn(QStyle::State_MouseOver) >= 6);
}

void TestHouseStyle::aBarWithoutRangeShowsNothing()
{
    QScrollBar bar(Qt::Horizontal);
    bar.resize(100, 12);
    bar.setRange(0, 0);
    QVERIFY(isPlain(pictureOf(bar, 1)));
    bar.setRange(0, 10);
    QVERIFY(!isPlain(pictureOf(bar, 1)));
}

void TestHouseStyle::aPillLaidOverTakesNoRoom()
{
    for (const bool isLaidOver : {false, true}) {
        QScrollArea area;
        area.setFrameShape(QFrame::NoFrame);
        makePill(*area.verticalScrollBar(), isLaidOver);
        auto *const content = new QWidget;
        content->setFixedSize(10, 1000);
        area.setWidget(content);
        area.resize(100, 100);
        area.show();
        QCoreApplication::processEvents();
        QCOMPARE(area.viewport()->width(), isLaidOver ? 100 : 88);
        QCOMPARE(area.verticalScrollBar()->width(), isLaidOver ? 8 : 12);
        QCOMPARE(area.verticalScrollBar()->mapTo(&area, QPoint(0, 0)).x(), isLaidOver ? 92 : 88);
    }
}

void TestHouseStyle::aPillLaidOverKeepsClearOfRoundCorners()
{
    for (const bool isLaidOver : {false, true}) {
        QScrollBar bar(Qt::Vertical);
        makePill(bar, isLaidOver);
        bar.setRange(0, 100);
        bar.setPageStep(100);
        bar.resize(bar.sizeHint().width(), 100);
        const auto isPainted = [&bar](int y) {
            const auto image = pictureOf(bar, 1);
            return style::contrast(image.pixelColor(image.width() / 2, y), style::ground(bar.palette())) > 1.5;
        };
        QCOMPARE(isPainted(2), !isLaidOver);
        QVERIFY(isPainted(3));
        bar.setValue(100);
        QVERIFY(isPainted(96));
        QCOMPARE(isPainted(97), !isLaidOver);
    }
}

void TestHouseStyle::aPillLeavesTheGroundAroundIt()
{
    QWidget window;
    auto palette = lightPalette();
    palette.setColor(QPalette::Window, QColor(0x4060a0));
    window.setPalette(palette);
    QScrollBar bar(Qt::Horizontal, &window);
    makePill(bar, true);
    bar.setRange(0, 100);
    bar.setGeometry(0, 0, 200, 12);
    window.resize(200, 40);
    window.show();
    QCOMPARE(window.grab().toImage().pixelColor(199, 0), QColor(0x4060a0));
}

void TestHouseStyle::aPillIsTheSameUnderEveryStyle()
{
    const auto pictureUnder = [](const QString &name) {
        QApplication::setStyle(QStyleFactory::create(name));
        QScrollBar bar(Qt::Horizontal);
        makePill(bar, false);
        bar.setRange(0, 10);
        bar.resize(bar.sizeHint().expandedTo({100, 0}));
        return pictureOf(bar, 1);
    };
    QCOMPARE(pictureUnder(QStringLiteral("Windows")), pictureUnder(QStringLiteral("Fusion")));
}

// Qt describes both by the same numbers.
void TestHouseStyle::aSliderIsNoPill()
{
    const QSlider slider(Qt::Horizontal);
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.rect = QRect(0, 0, 100, 20);
    option.maximum = 100;
    option.pageStep = 10;
    const auto handleIn = [&](const QStyle &style) {
        return style.subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider);
    };
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
    QCOMPARE(handleIn(*slider.style()), handleIn(*fusion));
}

void TestHouseStyle::aTooltipIsQuietAndDark()
{
    QWidget window;
    window.show();
    QToolTip::showText(window.mapToGlobal(QPoint(1, 1)), QStringLiteral("Remove"), &window);
    QTRY_VERIFY(shownTip() != nullptr);
    const auto *const tip = shownTip();
    QCOMPARE(tip->font().pixelSize(), 10);
    QCOMPARE(tip->palette().color(QPalette::ToolTipText), QColor(0xf5f6f7));
    QCOMPARE(shownTip()->grab().toImage().pixelColor(2, 2), QColor(0x2a2d31));
    QToolTip::hideText();
    QCOMPARE(window.style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay, nullptr, &window), 400);
}

void TestHouseStyle::reducedMotionEndsAllAnimations()
{
    QWidget window;
    QCOMPARE(style::animationTime(window, 90), 0);
    window.show();
    QCOMPARE(style::animationTime(window, 90), 90);
    GuestStyle::setReducedMotion(true);
    const auto reduced = style::animationTime(window, 90);
    GuestStyle::setReducedMotion(false);
    QCOMPARE(reduced, 0);
}

void TestHouseStyle::whatMovesAndBeginsAgainBeginsFromTheStart()
{
    QWidget window;
    window.show();
    Motion motion(window, QStringLiteral("motion"), 90, [] {});
    motion.begin();
    motion.setCurrentTime(45);
    motion.begin();
    QCOMPARE(motion.currentTime(), 0);
    QCOMPARE(motion.state(), QAbstractAnimation::Running);
}

VELQUARIN_WINDOW_TEST(TestHouseStyle)
#include "tst_housestyle.moc"
