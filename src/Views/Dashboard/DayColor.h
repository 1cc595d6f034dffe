// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Style.h"

#include <optional>

namespace velquarin {

//! How the square of a day is filled.
struct DayColor
{
    std::optional<style::Accent> accent;  //!< nothing where nothing is drawn
    double opacity = 0;                   //!< 0 to 1
    friend bool operator==(const DayColor &, const DayColor &) = default;

    [[nodiscard]] QColor in(const QPalette &palette) const;
};

//! In the strip of the last days: grey without any commits, and the fuller a green the more there are.
[[nodiscard]] DayColor colorForCount(qint64 count);

//! What the count is written in on such a square: white, but dark where the palette is light and the green is pale.
[[nodiscard]] QColor figureColor(qint64 count, const QPalette &palette);

//! In the year, where the colours are fainter. Out of range it is clear.
//! Errors: none; a negative count is clear.
[[nodiscard]] DayColor colorForCount(qint64 count, bool isInRange);

}  // namespace velquarin
