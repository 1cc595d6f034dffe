// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

namespace velquarin {

//! What the item shows, said in words for a tooltip.
struct StatusWords
{
    QString headline;  //!< never empty
    QString detail;    //!< may be empty
    friend bool operator==(const StatusWords &, const StatusWords &) = default;
};

//! The words for an appearance, in the user's language.
[[nodiscard]] StatusWords statusWords(const StatusItemAppearance &appearance);

//! Whether the appearance says that the figures are being read.
[[nodiscard]] bool isSyncing(const StatusItemAppearance &appearance);

}  // namespace velquarin
