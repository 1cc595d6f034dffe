// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/DayColor.h"

#include "Services/Streak/HeatmapGrid.h"

#include <array>

namespace velquarin {

namespace {

DayColor shade(qint64 count, const std::array<double, 5> &opacities)
{
    const auto accent = count == 0 ? style::Accent::Grey : style::Accent::Green;
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
    return shade(count, {0.2, 0.4, 0.6, 0.8, 1.0});
}

DayColor colorForCount(qint64 count, bool isInRange)
{
    return isInRange && count >= 0 ? shade(count, {0.15, 0.3, 0.5, 0.7, 0.9}) : DayColor();
}

}  // namespace velquarin
