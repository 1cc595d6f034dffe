// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Interface.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velquarin {

enum class EntryKind {
    Directory,
    File,     //!< a regular file, or anything else that is neither directory nor link
    Unknown,  //!< a symbolic link, or the file system does not say: ask folderAt() or exists()
};

struct DirectoryEntry
{
    std::string name;  //!< the bytes as they stand on disk
    EntryKind kind = EntryKind::Unknown;
};

//! Tells a folder from all others, whatever path leads to it.
struct FolderIdentity
{
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    friend bool operator==(const FolderIdentity &, const FolderIdentity &) = default;
};

//! Looks at folders on disk. Paths are bytes, as the system has them.
class FileTree : public Interface
{
public:
    //! Shown each entry as it is read; answers whether to read on.
    using Visitor = std::function<bool(const DirectoryEntry &)>;

    //! Whether something is there; follows links, so a dangling link is nothing.
    [[nodiscard]] virtual bool exists(const std::string &path) const = 0;

    //! The folder that is there; follows links. Nothing where there is none.
    [[nodiscard]] virtual std::optional<FolderIdentity> folderAt(const std::string &path) const = 0;

    //! Shows the entries of a folder in the order of the file system, without "." and "..".
    //! False where the folder cannot be read.
    virtual bool visit(const std::string &path, const Visitor &visitor) const = 0;
};

}  // namespace velquarin
