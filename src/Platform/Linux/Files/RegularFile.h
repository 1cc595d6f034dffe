// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
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

//! All of a file of @p mostBytes or fewer. Nothing where it is longer, cannot be read or is no regular file; a fifo or a
//! device in its place is not waited for. Links are followed.
//! Source: open(2), O_NONBLOCK
[[nodiscard]] std::optional<QByteArray> readRegularFile(const QString &path, qint64 mostBytes);

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

//! What became of a file that was to be put aside.
struct AsideFile
{
    QString path;     //!< where it lies now; empty where that failed
    QString failure;  //!< why, in words
};

//! Renames @p path to itself with ".damaged-" and the time in UTC added, "20261120T181000Z", and a number where
//! that name is taken: nothing is ever written over.
[[nodiscard]] AsideFile moveAside(const QString &path);

//! Writes @p content, what @p path held, to a new file of such a name, with @p why in place of "damaged", and waits until
//! the disk has it.
[[nodiscard]] AsideFile copyAside(const QString &path, const QByteArray &content, const QString &why);

}  // namespace velquarin
