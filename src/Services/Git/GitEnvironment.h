// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QProcessEnvironment>

namespace velquarin {

//! The environment that git runs in, made from the program's own: whatever a repository carries, git finds no program
//! to start, nobody to talk to and nothing that changes what its output looks like.
//! @p isConfined says that the system already keeps git from starting and writing anything; then the shorter block of
//! settings is enough, and git is faster for it.
//! Source: git(1), git-config(1); docs/decisions/0005-reading-strangers-repositories.md
[[nodiscard]] QProcessEnvironment gitEnvironment(const QProcessEnvironment &inherited, bool isConfined);

}  // namespace velquarin
