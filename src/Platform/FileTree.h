// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Interface.h"

#include <algorithm>
#include <chrono>
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

//! Whether a symbolic link stands for what it leads to, or for itself.
enum class Links { Follow, Stay };

//! What the system notes about a file. All of it the same means the same content only where the times are older than
//! the steps in which the file system counts.
struct FileStatus
{
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::uint32_t mode = 0;  //!< kind and permissions
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
    std::int64_t size = 0;        //!< bytes
    std::int64_t modifiedAt = 0;  //!< nanoseconds since 1970: when the content was last written, as programs say
    std::int64_t changedAt = 0;   //!< nanoseconds since 1970: when anything about it last changed, as the system says
    friend bool operator==(const FileStatus &, const FileStatus &) = default;
};

//! Whether its times will tell of the next change. File systems count time in steps, of two seconds at most: what was
//! written so recently may be written again under the same time.
[[nodiscard]] inline bool tellsOfChanges(const FileStatus &status)
{
    const auto ago = std::chrono::system_clock::now() - std::chrono::seconds(2);
    return std::max(status.modifiedAt, status.changedAt) <= std::chrono::nanoseconds(ago.time_since_epoch()).count();
}

//! What a look into a file gave.
struct FileContent
{
    enum class Outcome {
        Read,     //!< a regular file, whole
        Absent,   //!< nothing is there
        Folder,   //!< a folder is there
        Refused,  //!< something else, or too large, or not ours to read
    };
    Outcome outcome = Outcome::Absent;
    std::string bytes;
    FileStatus status;
};

//! Looks at folders and files on disk. Paths are bytes, as the system has them.
class FileTree : public Interface
{
public:
    //! Shown each entry as it is read; answers whether to read on.
    using Visitor = std::function<bool(const DirectoryEntry &)>;

    //! Whether something is there; follows links, so a dangling link is nothing.
    [[nodiscard]] virtual bool exists(const std::string &path) const = 0;

    //! The folder that is there; follows links. Nothing where there is none.
    [[nodiscard]] virtual std::optional<FolderIdentity> folderAt(const std::string &path) const = 0;

    //! Nothing where nothing is there.
    [[nodiscard]] virtual std::optional<FileStatus> status(const std::string &path, Links links) const = 0;

    //! Reads a regular file of at most @p limit bytes. Opens nothing else, and never waits for another program.
    [[nodiscard]] virtual FileContent read(const std::string &path, Links links, std::int64_t limit) const = 0;

    //! The path of an existing folder without links; nothing where there is none.
    [[nodiscard]] virtual std::optional<std::string> realPath(const std::string &folder) const = 0;

    //! Shows the entries of a folder in the order of the file system, without "." and "..".
    //! False where the folder cannot be read, or not to its end.
    virtual bool visit(const std::string &path, const Visitor &visitor) const = 0;
};

}  // namespace velquarin
