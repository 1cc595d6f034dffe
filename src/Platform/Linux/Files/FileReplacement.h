// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velquarin {

//! Makes a folder and those above it, each its owner's alone (0700), where they are missing. Returns whether there is
//! one now; errno tells why there is none.
bool makeFolder(const QString &path);

//! Puts a whole new file in the place of @p path, or leaves the old one as it is: after a crash, a full disk or
//! a kill there is one or the other. The file is its owner's alone (0600), and so is a folder that has to be made
//! for it (0700). Blocks until the disk has it. Shape: @p path is no link; an existing file that may not be
//! written is not replaced either. Errors: why not, in words; nothing when it is done.
[[nodiscard]] std::optional<QString> replaceFile(const QString &path, const QByteArray &content);

//! Writes a new file, which no other may be in the place of, as safely. Errors: the errno of what failed, 0 when it
//! is done; then there is no new file.
[[nodiscard]] int createFile(const QString &path, const QByteArray &content);

//! Where replaceFile() writes what is to come in the place of @p path: a hidden name that only this program uses.
[[nodiscard]] QString temporaryOf(const QString &path);

//! Removes what a kill left there.
void removeLeftOver(const QString &path);

//! Makes changes to the names in the folder of @p path last beyond a power cut. Source: fsync(2)
void syncFolderOf(const QString &path);

}  // namespace velquarin
