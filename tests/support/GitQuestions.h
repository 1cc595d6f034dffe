// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Services/Git/GitService.h"

namespace velquarin::test {

//! One question at a time, asked of the service as a refresh asks all of them together.
inline auto getDefaultBranch(GitService &git, const QString &in)
{
    return git.ask(in, [in](GitQueries &queries) { return queries.getDefaultBranch(in); });
}

inline auto getCommits(GitService &git, const QString &in, Instant since, Instant until)
{
    return git.ask(in, [=](GitQueries &queries) { return queries.getCommits(in, since, until); });
}

inline auto getCommitHistory(GitService &git, const QString &in, qint64 days)
{
    return git.ask(in, [=](GitQueries &queries) { return queries.getCommitHistory(in, days); });
}

inline auto getLastCommitDate(GitService &git, const QString &in)
{
    return git.ask(in, [in](GitQueries &queries) { return queries.getLastCommitDate(in); });
}

}  // namespace velquarin::test
