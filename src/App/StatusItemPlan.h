// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

namespace velquarin {

//! The syncing symbol alone, which the status item shows while a refresh runs.
[[nodiscard]] StatusItemAppearance syncingAppearance();

//! The same, once git has kept it waiting at the repository at @p path.
[[nodiscard]] StatusItemAppearance waitingAppearance(const QString &path);

//! What the status item shows for the state of the streak: the syncing symbol alone while a refresh runs; else a flame,
//! filled and orange on a day with a commit, and the streak beside it where there is one.
//! Shape: the title is a space and the decimal number, or empty.
[[nodiscard]] StatusItemAppearance statusItemAppearance(qint64 streak, bool isRefreshing, bool hasCommittedToday);

}  // namespace velquarin
