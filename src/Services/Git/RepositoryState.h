// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/RepositoryWatch.h"
#include "Services/Git/GitConfig.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
#include <string>

namespace velquarin {

class FileTree;

//! A digest of all that decides which branch is the default one: while it is the same, so is what git says of it.
//! Errors: nothing where the repository at @p folder is of a kind that is not understood.
[[nodiscard]] std::optional<QByteArray> branchSelection(const FileTree &files, const std::string &folder,
                                                        const ConfigPlaces &places);

//! Everything that decides what git answers about a branch of a repository, or about all, but for the clock: while all of it
//! is the same, so are the answers.
struct RepositoryState
{
    QByteArray content;   //!< a digest of what decides
    QByteArray identity;  //!< a digest of which files that was read from, and of when they were written
    friend bool operator==(const RepositoryState &, const RepositoryState &) = default;
};

//! Looks at the files of the repository at @p folder; starts no process. @p branch is nothing for all local branches and
//! HEAD.
//! Errors: nothing where a repository is of a kind, or the branch has a name, that this does not understand; every doubt is
//! one.
//! Source: docs/decisions/0016-nothing-asked-twice.md; gitrepository-layout(5), gitrevisions(7)
[[nodiscard]] std::optional<RepositoryState> repositoryState(const FileTree &files, const std::string &folder,
                                                             const std::optional<QString> &branch,
                                                             const GitConfig &config, const ConfigPlaces &places);

//! What on disk tells of a commit on that branch of the repository at @p folder, or on any; nothing where it is not
//! understood.
//! Source: docs/decisions/0016-nothing-asked-twice.md
[[nodiscard]] QList<WatchPlace> watchPlaces(const FileTree &files, const std::string &folder,
                                            const std::optional<QString> &branch);

}  // namespace velquarin
