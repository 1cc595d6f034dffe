// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/SettingsRecords.h"
#include "Models/StreakData.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Services/Git/GitMemory.h"

#include <QList>
#include <QProcessEnvironment>
#include <QString>

#include <optional>

namespace velquarin {

//! The questions that are asked of one repository, each answered by git's output alone. Everything here blocks and
//! belongs on the git thread.
//!
//! No answer depends on git's exit status or its error output: a command that fails prints nothing, and that is an empty
//! answer. Only a git that cannot be started is an error, thrown as LaunchError.
class GitQueries
{
public:
    //! @p inherited is the program's own environment, from which git's is made.
    GitQueries(ProcessRunner &runner, const FileTree &files, const Clock &clock, const QProcessEnvironment &inherited);

    //! From now on these commits count. At first it is those of everyone on the default branch.
    void count(CountedCommits counted);

    //! What is asked about the repository at @p path until endLook() is one look at it: what git is known to answer as
    //! before is not asked.
    void beginLook(const QString &path);
    void endLook();

    //! Whether git was started during the last look.
    [[nodiscard]] bool hasAsked() const { return m_memory.hasAsked(); }

    //! The remote's default branch, else a local "main", else a local "master", else "HEAD". Never throws.
    [[nodiscard]] QString getDefaultBranch(const QString &path);

    //! Whether everyone's commits count there although only the user's should, since git knows no address: none under
    //! user.email, author.email and velquarin.email, whichever file they stand in.
    [[nodiscard]] bool countsEveryoneForWantOfAddresses(const QString &path);

    //! The author days of the commits that count, newest first, one for each commit.
    //! git selects by committer date from the Greenwich date of @p since to the day after that of @p until.
    [[nodiscard]] QList<Instant> getCommits(const QString &path, Instant since, Instant until);

    //! Commits a day of the @p days calendar days that end today.
    [[nodiscard]] DayCounts getCommitHistory(const QString &path, qint64 days);

    //! The author date of the newest commit that counts.
    [[nodiscard]] std::optional<Instant> getLastCommitDate(const QString &path);

    //! What on disk tells of a commit on the branches that count. Never throws.
    [[nodiscard]] QList<WatchPlace> watchPlaces(const QString &path);

    //! Whether git can be started in the folder. What it says there is not looked at.
    [[nodiscard]] bool isGitRepository(const QString &path);

private:
    [[nodiscard]] QByteArray runGit(const QStringList &arguments, const QString &path);
    [[nodiscard]] QString trimmedOutput(const QStringList &arguments, const QString &path);
    [[nodiscard]] QString chosenBranch(const QString &path);
    [[nodiscard]] std::optional<QString> countedBranch(const QString &path);
    [[nodiscard]] QByteArray log(const QStringList &options, const QString &path);
    [[nodiscard]] QStringList addressPatterns(const QString &path);
    [[nodiscard]] QStringList authorOptions(const QString &path);
    [[nodiscard]] bool hasLocalBranch(const QString &name, const QString &path);
    void takeCalendar();
    [[nodiscard]] DayStarts &dayStarts();

    const Clock &m_clock;
    GitRunner m_runner;
    GitMemory m_memory;
    DayStarts m_dayStarts;
    CountedCommits m_counted;
    QString m_lookedAt;                            // the repository of the look, or nothing
    QString m_branch;                              // of it, once it was chosen
    std::optional<QStringList> m_addressPatterns;  // known there, once they were asked for
};

}  // namespace velquarin
