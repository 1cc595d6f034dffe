// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Strict.h"
#include "support/TestProgram.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"

#include <QApplication>
#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;
using style::Accent;
using style::Ink;

namespace {

QPalette palette(QColor window, QColor text)
{
    QPalette result;
    result.setColor(QPalette::All, QPalette::Window, window);
    result.setColor(QPalette::All, QPalette::WindowText, text);
    return result;
}

QImage canvas(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

// How many pixels that symbol has in that room, and how many of them are only partly covered.
std::pair<int, int> pixelsOf(const QString &symbol, QSize room)
{
    auto image = canvas(room);
    QPainter painter(&image);
    style::paintSymbol(painter, symbol, QRectF(QPointF(), QSizeF(room)), Qt::black);
    painter.end();
    std::pair<int, int> count;
    for (int pixel = 0; pixel < room.width() * room.height(); ++pixel) {
        const auto alpha = image.pixelColor(pixel % room.width(), pixel / room.width()).alpha();
        count.first += alpha > 0 ? 1 : 0;
        count.second += alpha > 0 && alpha < 255 ? 1 : 0;
    }
    return count;
}

}  // namespace

class TestStyle : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarning();
        auto font = QApplication::font();
        font.setPixelSize(13);
        QApplication::setFont(font);
    }

    void theProgramHasAnIconOfEverySize()
    {
        const auto sizes = style::programIcon().availableSizes();
        QCOMPARE(sizes, (QList<QSize>{{16, 16}, {24, 24}, {32, 32}, {48, 48}, {64, 64}, {128, 128}}));
    }

    void everyTextColorCanBeReadOnEveryWindow_data()
    {
        QTest::addColumn<QPalette>("colors");
        QTest::newRow("black on white") << palette(Qt::white, Qt::black);
        QTest::newRow("a light desktop") << palette(0xeff0f1, 0x232629);
        QTest::newRow("a light desktop with grey text") << palette(0xf6f5f4, 0x505050);
        QTest::newRow("a grey desktop") << palette(0xd4d0c8, Qt::black);
        QTest::newRow("a middle grey that nothing reads well on") << palette(0x777777, 0x888888);
        QTest::newRow("a dark desktop") << palette(0x2a2e32, 0xfcfcfc);
        QTest::newRow("a dark desktop with grey text") << palette(0x353535, 0xb0b0b0);
        QTest::newRow("white on black") << palette(Qt::black, Qt::white);
        QTest::newRow("yellow on blue") << palette(0x000080, 0xffff00);
        QTest::newRow("text that cannot be seen") << palette(0xeeeeee, 0xeeeeee);
    }

    void everyTextColorCanBeReadOnEveryWindow()
    {
        QFETCH(QPalette, colors);
        const auto window = colors.color(QPalette::Window);
        for (const auto ink : {Ink::Primary, Ink::Secondary, Ink::Tertiary})
            QCOMPARE_GE(style::contrast(style::ink(colors, ink), window), 4.5);
        for (const auto accent : {Accent::Orange, Accent::Green, Accent::Blue, Accent::Red, Accent::Grey})
            QCOMPARE_GE(style::contrast(style::accentText(colors, accent), window), 4.5);
    }

    void theInksStepBackOneAfterTheOther_data() { everyTextColorCanBeReadOnEveryWindow_data(); }

    void theInksStepBackOneAfterTheOther()
    {
        QFETCH(QPalette, colors);
        const auto reads = [&colors](Ink ink) {
            return style::contrast(style::ink(colors, ink), colors.color(QPalette::Window));
        };
        QCOMPARE_GE(reads(Ink::Primary), reads(Ink::Secondary));
        QCOMPARE_GE(reads(Ink::Secondary), reads(Ink::Tertiary));
    }

    void thePalettesOwnTextIsPrimaryWhereItCanBeRead()
    {
        QCOMPARE(style::ink(palette(0xeff0f1, 0x232629), Ink::Primary), QColor(0x232629));
        QCOMPARE(style::ink(palette(0x2a2e32, 0xfcfcfc), Ink::Primary), QColor(0xfcfcfc));
    }

    void accentsThatReadWellStayAsTheyAre()
    {
        const auto light = palette(0xf6f6f6, 0x202020);
        const auto dark = palette(0x2b2b2b, 0xf0f0f0);
        for (const auto accent : {Accent::Orange, Accent::Green, Accent::Blue, Accent::Red}) {
            QCOMPARE(style::accentText(light, accent), style::accentText(palette(Qt::white, Qt::black), accent));
            QCOMPARE(style::accentText(dark, accent), style::accentText(palette(Qt::black, Qt::white), accent));
        }
    }

    void aWindowWithoutFocusKeepsItsColors()
    {
        auto colors = palette(Qt::white, Qt::black);
        const auto before = style::ink(colors, Ink::Secondary);
        colors.setColor(QPalette::Inactive, QPalette::WindowText, Qt::red);
        colors.setCurrentColorGroup(QPalette::Inactive);
        QCOMPARE(style::ink(colors, Ink::Secondary), before);
        QVERIFY(!style::isDark(colors));
    }

    void contrastIsThatOfTheGuidelines()
    {
        QCOMPARE(style::contrast(Qt::black, Qt::white), 21.0);
        QCOMPARE(style::contrast(Qt::white, Qt::white), 1.0);
        QVERIFY(qAbs(style::contrast(QColor(0x767676), Qt::white) - 4.54) < 0.01);
    }

    void sizesFollowTheDesktopsFont()
    {
        QCOMPARE(style::points(300), 300);
        auto font = QApplication::font();
        font.setPixelSize(26);
        QApplication::setFont(font);
        QCOMPARE(style::points(300), 600);
        QCOMPARE(style::font(style::TypeStyle::Caption).pixelSize(), 20);
    }

    void noSizeVanishesWithASmallFont()
    {
        auto font = QApplication::font();
        font.setPixelSize(4);
        QApplication::setFont(font);
        QCOMPARE(style::points(1), 1);
        QCOMPARE(style::points(0), 0);
    }

    void typeStylesHaveTheirSizes_data()
    {
        QTest::addColumn<style::TypeStyle>("type");
        QTest::addColumn<int>("pixels");
        QTest::addColumn<int>("weight");
        QTest::newRow("headline") << style::TypeStyle::Headline << 13 << int(QFont::Bold);
        QTest::newRow("subheadline") << style::TypeStyle::Subheadline << 11 << int(QFont::Normal);
        QTest::newRow("body") << style::TypeStyle::Body << 13 << int(QFont::Normal);
        QTest::newRow("caption") << style::TypeStyle::Caption << 10 << int(QFont::Normal);
        QTest::newRow("caption 2") << style::TypeStyle::Caption2 << 10 << int(QFont::Normal);
    }

    void typeStylesHaveTheirSizes()
    {
        QFETCH(style::TypeStyle, type);
        const auto font = style::font(type);
        QTEST(font.pixelSize(), "pixels");
        QTEST(int(font.weight()), "weight");
        QCOMPARE(font.family(), QApplication::font().family());
    }

    void rectanglesLieOnWholePixels()
    {
        auto image = canvas({100, 100});
        image.setDevicePixelRatio(1.5);
        QPainter painter(&image);
        painter.translate(3, 5);
        const auto snapped = painter.deviceTransform().mapRect(style::onWholePixels(painter, {0.2, 0.4, 9, 9}));
        QCOMPARE(snapped, QRectF(snapped.toRect()));
        QCOMPARE(snapped.size(), QSizeF(14, 14));
    }

    void aFocusRingIsDrawnByNumbers()
    {
        auto colors = palette(Qt::white, Qt::black);
        colors.setColor(QPalette::All, QPalette::Highlight, QColor(0x3060c0));
        auto drawn = canvas({60, 30});
        auto expected = drawn;
        QPainter painter(&drawn);
        painter.setBrush(Qt::red);
        style::paintFocusRing(painter, QRectF(2, 3, 50, 20), colors);
        painter.end();
        painter.begin(&expected);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(0x3060c0), 1.5));
        painter.drawRoundedRect(QRectF(2.75, 3.75, 48.5, 18.5), 4, 4);
        painter.end();
        QCOMPARE(drawn, expected);
    }

    void aFocusRingCanBeSeenWhateverTheHighlight()
    {
        auto colors = palette(Qt::white, Qt::black);
        colors.setColor(QPalette::All, QPalette::Highlight, QColor(0xf0f0f0));
        auto drawn = canvas({60, 30});
        QPainter painter(&drawn);
        style::paintFocusRing(painter, QRectF(0, 0, 60, 30), colors);
        painter.end();
        const auto contrast = style::contrast(drawn.pixelColor(30, 0), style::hoveredGround(colors));
        QVERIFY2(contrast >= 3 && contrast < 3.3, qPrintable(QString::number(contrast)));
    }

    void onlyQuitePlainTextIsHighContrast()
    {
        QVERIFY(style::isHighContrast(palette(Qt::white, Qt::black)));
        QVERIFY(style::isHighContrast(palette(Qt::black, Qt::white)));
        QVERIFY(style::isHighContrast(palette(Qt::black, QColor(0xfcfcfc))));
        QVERIFY(!style::isHighContrast(palette(QColor(0xfaf9f8), Qt::black)));
        QVERIFY(!style::isHighContrast(palette(QColor(0xefefef), Qt::black)));
        QVERIFY(!style::isHighContrast(palette(QColor(0x2a2e32), QColor(0xfcfcfc))));
    }

    void inHighContrastBlocksAndDividersArePlain()
    {
        const auto edgeOf = [](const QPalette &colors) {
            auto drawn = canvas({40, 20});
            drawn.fill(style::ground(colors));
            QPainter painter(&drawn);
            style::paintBlock(painter, QRectF(0, 0, 40, 20), 2, style::groupGround(colors), colors);
            return drawn.pixelColor(20, 0);
        };
        const auto plain = palette(QColor(0xefefef), Qt::black);
        const auto high = palette(Qt::white, Qt::black);
        QCOMPARE(edgeOf(plain), style::groupGround(plain));
        QCOMPARE(edgeOf(high), style::divider(high));
        QCOMPARE(style::divider(high), style::mix(Qt::white, Qt::black, 0.5));
        QVERIFY(style::contrast(style::divider(plain), style::ground(plain)) < 1.5);
    }

    void whatIsOutsideOfTheYearHasNoOutline()
    {
        const auto high = palette(Qt::white, Qt::black);
        auto drawn = canvas({40, 20});
        const auto before = drawn;
        QPainter painter(&drawn);
        style::paintBlock(painter, QRectF(0, 0, 40, 20), 2, QColor(Qt::transparent), high);
        painter.end();
        QCOMPARE(drawn, before);
    }

    void anIconIsInTheColorOfItsMode_data()
    {
        QTest::addColumn<QIcon::Mode>("mode");
        QTest::addColumn<QPalette::ColorGroup>("group");
        QTest::newRow("normal") << QIcon::Normal << QPalette::Active;
        QTest::newRow("disabled") << QIcon::Disabled << QPalette::Disabled;
    }

    void anIconIsInTheColorOfItsMode()
    {
        QFETCH(QIcon::Mode, mode);
        QFETCH(QPalette::ColorGroup, group);
        const auto color = QApplication::palette().color(group, QPalette::ButtonText);
        auto expected = canvas({48, 48});
        QPainter painter(&expected);
        style::paintSymbol(painter, QStringLiteral("plus"), QRectF(0, 0, 48, 48), color);
        painter.end();
        auto painted = canvas({48, 48});
        painter.begin(&painted);
        const auto icon = style::symbolIcon(QStringLiteral("plus"));
        icon.paint(&painter, QRect(0, 0, 48, 48), Qt::AlignCenter, mode);
        painter.end();
        QCOMPARE(painted, expected);
        QCOMPARE(icon.pixmap({48, 48}, mode).toImage().convertToFormat(expected.format()), expected);
    }

    void strokesOfSmallSymbolsLieOnWholePixels_data()
    {
        QTest::addColumn<QSize>("room");
        QTest::newRow("plus") << QSize(14, 14);
        QTest::newRow("folder.badge.gearshape") << QSize(14, 14);
        QTest::newRow("folder.fill") << QSize(12, 14);
        QTest::newRow("trash") << QSize(13, 17);
    }

    void strokesOfSmallSymbolsLieOnWholePixels()
    {
        QFETCH(QSize, room);
        const auto symbol = QString::fromLatin1(QTest::currentDataTag());
        const auto [inRoom, blurred] = pixelsOf(symbol, room);
        QVERIFY2(3 * blurred < inRoom, qPrintable(QStringLiteral("%1 of %2").arg(blurred).arg(inRoom)));
        // Not scaled, and not cut off.
        QCOMPARE(inRoom, pixelsOf(symbol, {16, 16}).first);
    }

    void aSymbolIsPaintedInTheColorAskedFor()
    {
        auto image = canvas({48, 48});
        QPainter painter(&image);
        style::paintSymbol(painter, QStringLiteral("flame.fill"), QRectF(0, 0, 48, 48), QColor(0x123456));
        painter.end();
        QCOMPARE(image.pixelColor(14, 36), QColor(0x123456));
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    }
};

VELQUARIN_WINDOW_TEST(TestStyle)
#include "tst_style.moc"
