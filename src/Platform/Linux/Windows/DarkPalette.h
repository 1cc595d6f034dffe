// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>

namespace velquarin {

//! Whether it writes light on dark.
[[nodiscard]] bool isDark(const QPalette &palette);

//! The palette for what shall be dark or may be as it is. Shape: @p ofDesktop itself where it serves; else one of our own,
//! in which what is selected keeps the desktop's accent.
[[nodiscard]] QPalette darkenedWhere(bool shallBeDark, const QPalette &ofDesktop);

}  // namespace velquarin
