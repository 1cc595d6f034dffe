// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <system_error>

namespace velquarin {

enum class FileKind { Missing, Regular, Other, OutOfReach };

//! Where a path leads once all symbolic links in its last component are followed, and what is there.
struct LinkTarget
{
    QString path;           //!< of a file that is no link, or of none
    FileKind kind;          //!< Other: a folder, a fifo, a socket, a device, a circle of links
    std::error_code error;  //!< why nobody may look; only where it is OutOfReach
};

//! Looks, and opens nothing. Source: path_resolution(7)
[[nodiscard]] LinkTarget followLinks(const QString &path);

}  // namespace velquarin
