// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QString>

namespace velquarin {

//! Digits, and the letter "k", as we draw them ourselves: all as heavy and as round as our symbols, and there without any
//! font being loaded, which would cost a program that never opens a window two megabytes.
//! Shape: 100 units high, the left edge at 0, the baseline at 0, upwards negative. Filled with the winding rule.
//! Errors: none; a character that is no digit and no "k" leaves nothing.
[[nodiscard]] QPainterPath numberDrawing(const QString &number);

}  // namespace velquarin
