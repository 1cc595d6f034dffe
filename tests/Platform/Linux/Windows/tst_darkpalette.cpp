// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DesktopColors.h"

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
};

void TestDarkPalette::whoWritesLightOnDarkIsDark()
{
    QVERIFY(isDark(darkPalette()));
    QVERIFY(!isDark(lightPalette()));
}

void TestDarkPalette::aLightPaletteStaysUnlessItShallBeDark()
{
    QCOMPARE(darkenedWhere(false, lightPalette()), lightPalette());
    QVERIFY(isDark(darkenedWhere(true, lightPalette())));
}

void TestDarkPalette::aDarkPaletteStaysInAnyCase()
{
    QCOMPARE(darkenedWhere(false, darkPalette()), darkPalette());
    QCOMPARE(darkenedWhere(true, darkPalette()), darkPalette());
}

void TestDarkPalette::darkenedItIsDarkInEveryPlace()
{
    const auto palette = darkenedWhere(true, lightPalette());
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
    const auto palette = darkenedWhere(true, lightPalette());
    for (const auto role : {QPalette::Highlight, QPalette::HighlightedText})
        QCOMPARE(palette.color(role), lightPalette().color(role));
}

void TestDarkPalette::whatIsOutOfReachIsFainter()
{
    const auto palette = darkenedWhere(true, lightPalette());
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        QVERIFY(palette.color(QPalette::Disabled, role).lightness() < palette.color(role).lightness());
}

VELQUARIN_WINDOW_TEST(TestDarkPalette)
#include "tst_darkpalette.moc"
