// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace velquarin {

//! The folder below which programs keep what their user has set: @p xdgConfigHome, or ".config" in @p home
//! where that is empty or relative. Source: XDG Base Directory Specification, "Environment variables"
[[nodiscard]] QString configHome(const QString &xdgConfigHome, const QString &home);

//! The same for this process, from its environment.
[[nodiscard]] QString configHome();

}  // namespace velquarin
