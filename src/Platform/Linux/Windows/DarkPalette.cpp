// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DarkPalette.h"

#include <array>

namespace velquarin {

namespace {

struct Shade
{
    QPalette::ColorRole role;
    QRgb color;
};

constexpr QRgb text = 0xfff2f2f2;
constexpr QRgb textOutOfReach = 0xff8c8c8c;

constexpr std::array shades{
    Shade{QPalette::Window, 0xff2d2d2d},
    Shade{QPalette::WindowText, text},
    Shade{QPalette::Base, 0xff202020},
    Shade{QPalette::AlternateBase, 0xff272727},
    Shade{QPalette::Text, text},
    Shade{QPalette::PlaceholderText, 0xffa6a6a6},
    Shade{QPalette::Button, 0xff3a3a3a},
    Shade{QPalette::ButtonText, text},
    Shade{QPalette::BrightText, 0xffffffff},
    Shade{QPalette::ToolTipBase, 0xff3a3a3a},
    Shade{QPalette::ToolTipText, text},
    Shade{QPalette::Light, 0xff545454},
    Shade{QPalette::Midlight, 0xff474747},
    Shade{QPalette::Mid, 0xff272727},
    Shade{QPalette::Dark, 0xff1b1b1b},
    Shade{QPalette::Shadow, 0xff000000},
    Shade{QPalette::Link, 0xff7db8ff},
    Shade{QPalette::LinkVisited, 0xffc7a6ff},
};

QPalette darkened(const QPalette &ofDesktop)
{
    auto palette = ofDesktop;
    for (const auto &shade : shades)
        palette.setColor(QPalette::All, shade.role, QColor(shade.color));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(textOutOfReach));
    return palette;
}

}  // namespace

bool isDark(const QPalette &palette)
{
    const auto written = palette.color(QPalette::Active, QPalette::WindowText);
    return written.lightness() > palette.color(QPalette::Active, QPalette::Window).lightness();
}

QPalette darkenedWhere(bool shallBeDark, const QPalette &ofDesktop)
{
    return shallBeDark && !isDark(ofDesktop) ? darkened(ofDesktop) : ofDesktop;
}

}  // namespace velquarin
