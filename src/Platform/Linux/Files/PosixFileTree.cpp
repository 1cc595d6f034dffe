// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/PosixFileTree.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace velquarin {

namespace {

struct CloseFolder
{
    void operator()(DIR *folder) const { closedir(folder); }
};

class Descriptor
{
public:
    Descriptor(const std::string &path, int flags)
        : m_number(open(path.c_str(), flags | O_CLOEXEC))
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    [[nodiscard]] int number() const { return m_number; }

private:
    int m_number;
};

std::int64_t nanoseconds(const timespec &time)
{
    return std::int64_t(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

FileStatus statusFrom(const struct stat &status)
{
    return {status.st_dev,
            status.st_ino,
            status.st_mode,
            status.st_uid,
            status.st_gid,
            status.st_size,
            nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

// As many as there were when it was opened; nothing where they cannot be had. An empty file that says something all the
// same, as those of the kernel do, is none.
std::optional<std::string> bytesOf(int descriptor, std::int64_t size)
{
    std::string bytes(std::size_t(std::max<std::int64_t>(size, 1)), '\0');
    std::int64_t length = 0;
    ssize_t count = 0;
    do {
        count = ::read(descriptor, bytes.data() + length, bytes.size() - std::size_t(length));
        length += std::max<ssize_t>(count, 0);
    } while ((count > 0 && length < size) || (count < 0 && errno == EINTR));
    bytes.resize(std::size_t(length));
    return length == size ? std::optional(bytes) : std::nullopt;
}

// The system would take a path for the part of it before a NUL, which is some other place.
bool isPath(const std::string &path)
{
    return path.find('\0') == std::string::npos;
}

EntryKind kindOf(unsigned char type)
{
    switch (type) {
    case DT_DIR:
        return EntryKind::Directory;
    case DT_LNK:
    case DT_UNKNOWN:
        return EntryKind::Unknown;
    default:
        return EntryKind::File;
    }
}

bool isOwnOrParent(std::string_view name)
{
    return name == "." || name == "..";
}

}  // namespace

bool PosixFileTree::exists(const std::string &path) const
{
    struct stat status = {};
    return isPath(path) && stat(path.c_str(), &status) == 0;
}

std::optional<FolderIdentity> PosixFileTree::folderAt(const std::string &path) const
{
    struct stat status = {};
    if (!isPath(path) || stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return FolderIdentity{status.st_dev, status.st_ino};
}

std::optional<FileStatus> PosixFileTree::status(const std::string &path, Links links) const
{
    struct stat status = {};
    const auto flags = links == Links::Stay ? AT_SYMLINK_NOFOLLOW : 0;
    if (!isPath(path) || fstatat(AT_FDCWD, path.c_str(), &status, flags) != 0)
        return std::nullopt;
    return statusFrom(status);
}

// Looked at before it is opened: opening a device can do something.
FileContent PosixFileTree::read(const std::string &path, Links links, std::int64_t limit) const
{
    using Outcome = FileContent::Outcome;
    errno = 0;
    const auto found = status(path, links);
    if (!found)
        return {errno == ENOENT || errno == ENOTDIR ? Outcome::Absent : Outcome::Refused, {}, {}};
    if (S_ISDIR(found->mode))
        return {Outcome::Folder, {}, *found};
    if (!S_ISREG(found->mode) || found->size > limit)
        return {Outcome::Refused, {}, *found};
    const Descriptor file(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | (links == Links::Stay ? O_NOFOLLOW : 0));
    struct stat opened = {};
    if (fstat(file.number(), &opened) != 0 || !S_ISREG(opened.st_mode) || opened.st_size > limit)
        return {Outcome::Refused, {}, *found};
    auto bytes = bytesOf(file.number(), opened.st_size);
    return {bytes ? Outcome::Read : Outcome::Refused, bytes.value_or(std::string()), statusFrom(opened)};
}

std::optional<std::string> PosixFileTree::realPath(const std::string &folder) const
{
    const Descriptor place(isPath(folder) ? folder : std::string(), O_PATH | O_DIRECTORY);
    std::array<char, PATH_MAX> target{};
    const auto link = "/proc/self/fd/" + std::to_string(place.number());
    const auto length = place.number() < 0 ? -1 : readlink(link.c_str(), target.data(), target.size());
    if (length <= 0 || std::size_t(length) == target.size())
        return std::nullopt;
    return std::string(target.data(), std::size_t(length));
}

bool PosixFileTree::visit(const std::string &path, const Visitor &visitor) const
{
    const std::unique_ptr<DIR, CloseFolder> folder(isPath(path) ? opendir(path.c_str()) : nullptr);
    if (!folder)
        return false;
    // Only by this a broken disk is told from the end.
    errno = 0;
    // One thread reads this folder; readdir is only unsafe where two share it.
    while (const auto *entry = readdir(folder.get())) {  // NOLINT(concurrency-mt-unsafe)
        const std::string name = &entry->d_name[0];
        if (!isOwnOrParent(name) && !visitor({name, kindOf(entry->d_type)}))
            return true;
        errno = 0;
    }
    return errno == 0;
}

}  // namespace velquarin
