// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/PosixFileTree.h"

#include <dirent.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>

namespace velquarin {

namespace {

struct CloseFolder
{
    void operator()(DIR *folder) const { closedir(folder); }
};

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

bool PosixFileTree::visit(const std::string &path, const Visitor &visitor) const
{
    const std::unique_ptr<DIR, CloseFolder> folder(isPath(path) ? opendir(path.c_str()) : nullptr);
    if (!folder)
        return false;
    // One thread reads this folder; readdir is only unsafe where two share it.
    while (const auto *entry = readdir(folder.get())) {  // NOLINT(concurrency-mt-unsafe)
        const std::string name = &entry->d_name[0];
        if (!isOwnOrParent(name) && !visitor({name, kindOf(entry->d_type)}))
            break;
    }
    return true;
}

}  // namespace velquarin
