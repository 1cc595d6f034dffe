// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileTree.h"

#include <QStringList>

#include <atomic>
#include <optional>
#include <vector>

namespace velquarin {

//! A folder as a search found it. While it is the same folder with the same times nothing was added to it, taken out of it
//! or renamed in it, and the next search need not read it again.
struct KnownFolder
{
    struct Stamp
    {
        FolderIdentity folder;
        std::int64_t modifiedAt = 0;
        std::int64_t changedAt = 0;
        friend bool operator==(const Stamp &, const Stamp &) = default;
    };

    DirectoryEntry entry;             //!< in the folder above
    std::optional<Stamp> stamp;       //!< nothing where it has to be read again
    std::vector<KnownFolder> inside;  //!< those that may hold repositories, and links to some
};

//! The git working trees in a folder and below it: every folder that holds an entry ".git", whatever that is.
//! Shape:  depth first, in the order of the file system; @p folder itself comes as it was given. At most
//!         @p maxDepth - 1 levels down: 1 looks at @p folder alone, 0 or less at nothing. Nothing inside a working tree,
//!         hidden folders, and folders of generated files such as "node_modules" is looked at. Links are followed, but
//!         never to a folder that is on the way to them: links in circles end.
//! Errors: none; what cannot be read is passed over, and so are names that are not UTF-8. Once @p isCancelled is set,
//!         the walk ends with what it has.
[[nodiscard]] QStringList scanForRepositories(const FileTree &files, const QString &folder, qint64 maxDepth,
                                              const std::atomic<bool> &isCancelled);

//! The same, reading only what is not known to be as it was at the last search of that folder, of which @p known is left.
[[nodiscard]] QStringList scanForRepositories(const FileTree &files, const QString &folder, qint64 maxDepth,
                                              const std::atomic<bool> &isCancelled, KnownFolder &known);

}  // namespace velquarin
