// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace velquarin {

//! The last component of a path; slashes at its end do not count. "/" gives "/", nothing gives nothing.
[[nodiscard]] QString lastPathComponent(const QString &path);

}  // namespace velquarin
