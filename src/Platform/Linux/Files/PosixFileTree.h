// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileTree.h"

namespace velquarin {

//! Source: readdir(3), stat(2), open(2), proc(5)
class PosixFileTree : public FileTree
{
public:
    [[nodiscard]] bool exists(const std::string &path) const override;
    [[nodiscard]] std::optional<FolderIdentity> folderAt(const std::string &path) const override;
    [[nodiscard]] std::optional<FileStatus> status(const std::string &path, Links links) const override;
    [[nodiscard]] FileContent read(const std::string &path, Links links, std::int64_t limit) const override;
    [[nodiscard]] std::optional<std::string> realPath(const std::string &folder) const override;
    bool visit(const std::string &path, const Visitor &visitor) const override;
};

}  // namespace velquarin
