// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/DayColor.h"

#include "Services/Streak/HeatmapGrid.h"

#include <array>

namespace velquarin {

namespace {

DayColor shade(qint64 count, style::Accent green, const std::array<double, 5> &opacities)
{
    const auto accent = count == 0 ? style::Accent::Grey : green;
    return {accent, opacities.at(std::size_t(countBand(count)))};
}

}  // namespace

QColor DayColor::in(const QPalette &palette) const
{
    auto color = accent ? style::accent(palette, *accent) : QColor(Qt::transparent);
    color.setAlphaF(float(opacity));
    return color;
}

DayColor colorForCount(qint64 count)
{
    return shade(count, style::Accent::Green, {0.2, 0.4, 0.6, 0.8, 1.0});
}

QColor figureColor(qint64 count, const QPalette &palette)
{
    constexpr int lastPaleBand = 2;
    if (style::isDark(palette) || countBand(count) > lastPaleBand)
        return Qt::white;
    const auto color = colorForCount(count).in(palette);
    const auto square = style::mix(style::ground(palette), color, color.alphaF());
    return style::accentTextOn(square, palette, style::Accent::Green);
}

DayColor colorForCount(qint64 count, bool isInRange)
{
    return isInRange && count >= 0 ? shade(count, style::Accent::HeatGreen, {0.15, 0.3, 0.5, 0.7, 0.9}) : DayColor();
}

}  // namespace velquarin
