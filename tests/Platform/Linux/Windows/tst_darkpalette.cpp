// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DesktopAppearance.h"

#include "support/TestProgram.h"

#include <QApplication>

using namespace velquarin;

namespace {

QPalette lightPalette()
{
    QPalette palette(QColor("#efefef"), QColor("#f6f5f4"));
    palette.setColor(QPalette::Highlight, QColor("#3584e4"));
    palette.setColor(QPalette::HighlightedText, QColor("#ffffff"));
    return palette;
}

// What the toolkit has where no desktop says anything.
QPalette plainPalette()
{
    auto palette = lightPalette();
    palette.setColor(QPalette::Highlight, QColor("#308cc6"));
    return palette;
}

QPalette appearing(bool isDark, const QPalette &ofDesktop)
{
    return paletteFor({.isDark = isDark}, ofDesktop, plainPalette());
}

QPalette darkPalette()
{
    return {QColor("#3b4045"), QColor("#2a2e32")};
}

}  // namespace

class TestDarkPalette : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void whoWritesLightOnDarkIsDark();
    void aLightPaletteStaysUnlessItShallBeDark();
    void aDarkPaletteStaysInAnyCase();
    void darkenedItIsDarkInEveryPlace();
    void theAccentStays();
    void whatIsOutOfReachIsFainter();
    void anAccentIsTakenWhereTheDesktopsPaletteHasNone();
    void highContrastIsBlackAndWhite();
};

void TestDarkPalette::whoWritesLightOnDarkIsDark()
{
    QVERIFY(isDark(darkPalette()));
    QVERIFY(!isDark(lightPalette()));
}

void TestDarkPalette::aLightPaletteStaysUnlessItShallBeDark()
{
    QCOMPARE(appearing(false, lightPalette()), lightPalette());
    QVERIFY(isDark(appearing(true, lightPalette())));
}

void TestDarkPalette::aDarkPaletteStaysInAnyCase()
{
    QCOMPARE(appearing(false, darkPalette()), darkPalette());
    QCOMPARE(appearing(true, darkPalette()), darkPalette());
}

void TestDarkPalette::darkenedItIsDarkInEveryPlace()
{
    const auto palette = appearing(true, lightPalette());
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const auto role : {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button,
                                QPalette::ToolTipBase, QPalette::Mid, QPalette::Dark, QPalette::Midlight})
            QVERIFY2(palette.color(group, role).lightness() < 90, qPrintable(QString::number(role)));
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                                QPalette::PlaceholderText, QPalette::Link, QPalette::LinkVisited})
            QVERIFY2(palette.color(group, role).lightness() > 130, qPrintable(QString::number(role)));
    }
}

void TestDarkPalette::theAccentStays()
{
    const auto palette = appearing(true, lightPalette());
    for (const auto role : {QPalette::Highlight, QPalette::HighlightedText})
        QCOMPARE(palette.color(role), lightPalette().color(role));
}

void TestDarkPalette::whatIsOutOfReachIsFainter()
{
    const auto palette = appearing(true, lightPalette());
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        QVERIFY(palette.color(QPalette::Disabled, role).lightness() < palette.color(role).lightness());
}

void TestDarkPalette::anAccentIsTakenWhereTheDesktopsPaletteHasNone()
{
    const Appearance purple{.accent = QColor(0x9141ac)};
    const auto accented = paletteFor(purple, plainPalette(), plainPalette());
    QCOMPARE(accented.color(QPalette::Highlight), QColor(0x9141ac));
    QCOMPARE(accented.color(QPalette::HighlightedText), QColor(Qt::white));
    QCOMPARE(accented.color(QPalette::Window), plainPalette().color(QPalette::Window));
    QCOMPARE(paletteFor(purple, lightPalette(), plainPalette()), lightPalette());
    for (const auto &pale : {QColor(0xffff00), QColor(0x00ffff), QColor(0xed5b00), QColor(0x3a944a)}) {
        const auto read = paletteFor({.accent = pale}, plainPalette(), plainPalette()).color(QPalette::HighlightedText);
        QCOMPARE(read, QColor(Qt::black));
    }
    const Appearance yellow{.isDark = true, .accent = QColor(0xf6d32d)};
    const auto dark = paletteFor(yellow, plainPalette(), plainPalette());
    QVERIFY(isDark(dark));
    QCOMPARE(dark.color(QPalette::Highlight), QColor(0xf6d32d));
}

void TestDarkPalette::highContrastIsBlackAndWhite()
{
    const auto colorsOf = [](const QPalette &palette) {
        return std::pair(palette.color(QPalette::WindowText), palette.color(QPalette::Window));
    };
    const std::pair blackOnWhite{QColor(Qt::black), QColor(Qt::white)};
    const std::pair whiteOnBlack{QColor(Qt::white), QColor(Qt::black)};
    const Appearance light{.isHighContrast = true};
    const Appearance dark{.isDark = true, .isHighContrast = true};
    QCOMPARE(colorsOf(paletteFor(light, lightPalette(), plainPalette())), blackOnWhite);
    QCOMPARE(colorsOf(paletteFor(dark, lightPalette(), plainPalette())), whiteOnBlack);
    QCOMPARE(colorsOf(paletteFor(light, darkPalette(), plainPalette())), whiteOnBlack);
    const auto accent = paletteFor(light, lightPalette(), plainPalette()).color(QPalette::Highlight);
    QCOMPARE(accent, lightPalette().color(QPalette::Highlight));
}

VELQUARIN_WINDOW_TEST(TestDarkPalette)
#include "tst_darkpalette.moc"
