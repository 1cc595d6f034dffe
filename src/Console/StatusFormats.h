// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace velquarin {

struct StreakReport;

//! One line for people: "12 days, longest 30, committed today".
[[nodiscard]] QString statusText(const StreakReport &report);

//! All of the report as one JSON object in one line. Its member "version" goes up when a member changes its meaning or
//! goes; new ones may come at any time. Source: docs/status-lines.md
[[nodiscard]] QByteArray statusJson(const StreakReport &report);

//! What the bar waybar takes from a command, in one line: the number, or nothing while there is no streak; for "alt" and
//! "class" whether it has a commit today ("committed"), waits for one ("pending") or does not exist ("none").
//! Source: waybar-custom(5), "return-type"
[[nodiscard]] QByteArray statusWaybar(const StreakReport &report);

}  // namespace velquarin
