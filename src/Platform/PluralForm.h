// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace velquarin {

//! A number with the plural form of @p count, which translations choose their words by, small enough for Qt:
//! forms depend on the last digits, and beyond a million on nothing else.
//! Source: Unicode CLDR, plural rules
[[nodiscard]] constexpr int pluralForm(qint64 count)
{
    constexpr qint64 million = 1'000'000;
    return int(count < million ? count : million + count % million);
}

}  // namespace velquarin
