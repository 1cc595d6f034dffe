// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace velquarin {

//! The name that people call a file or folder by: the last component of @p path, which is only read, never
//! looked up. Trailing slashes do not count; "/" is its own name; an empty path has an empty one.
[[nodiscard]] QString lastPathComponent(const QString &path);

//! The path of @p name inside of @p folder, with one slash between the two, whether or not they bring their
//! own. Where one of them is empty the other one is the result.
[[nodiscard]] QString joinPath(const QString &folder, const QString &name);

}  // namespace velquarin
