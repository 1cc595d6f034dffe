// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileTree.h"

#include <QStringList>

#include <atomic>

namespace velquarin {

//! The git working trees in a folder and below it: every folder that holds an entry ".git", whatever that is.
//! Shape:  depth first, in the order of the file system; @p folder itself comes as it was given. At most
//!         @p maxDepth - 1 levels down: 1 looks at @p folder alone, 0 or less at nothing. Nothing inside a working tree,
//!         hidden folders, and folders of generated files such as "node_modules" is looked at. Links are followed, but
//!         never to a folder that is on the way to them: links in circles end.
//! Errors: none; what cannot be read is passed over, and so are names that are not UTF-8. Once @p isCancelled is set,
//!         the walk ends with what it has.
[[nodiscard]] QStringList scanForRepositories(const FileTree &files, const QString &folder, qint64 maxDepth,
                                              const std::atomic<bool> &isCancelled);

}  // namespace velquarin
