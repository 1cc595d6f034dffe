// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileTree.h"

namespace velquarin {

//! Source: readdir(3), stat(2)
class PosixFileTree : public FileTree
{
public:
    [[nodiscard]] bool exists(const std::string &path) const override;
    [[nodiscard]] std::optional<FolderIdentity> folderAt(const std::string &path) const override;
    bool visit(const std::string &path, const Visitor &visitor) const override;
};

}  // namespace velquarin
