// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Services/Git/GitRunner.h"
#include "Services/Git/RepositoryState.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace velquarin {

class FileTree;

//! What git reads the history of, as its arguments: that branch, or nothing for all local branches and HEAD. Where HEAD
//! stands for a branch that has no commit yet, there is none of it.
//! Source: git-rev-list(1)
[[nodiscard]] QStringList revisionsOf(const std::optional<QString> &branch);

//! Git, with a memory: what it would answer as it did before is not asked again. For a repository that did not change no
//! process is started. Everything here belongs on the git thread.
//!
//! Nothing is remembered for longer than a day, nor on disk, nor of a command that failed or could not be started.
//! Source: docs/decisions/0016-nothing-asked-twice.md
class GitMemory
{
public:
    //! @p inherited is the program's own environment, in which git finds the user's configuration.
    GitMemory(GitRunner &git, const FileTree &files, const Clock &clock, const QProcessEnvironment &inherited);

    //! From now on all questions about the repository at @p path are one look at it: what it answers is remembered
    //! at the end if it stayed the same meanwhile. None is asked twice in one look.
    void beginLook(const QString &path);
    void endLook();

    //! All that is known.
    void forget() { m_memories.clear(); }

    //! The questions of this look that follow are about that branch, or about all. To be called before the first whose answer
    //! depends on the settings or the branch: what those are is read here.
    void readFrom(const std::optional<QString> &branch, const QString &path);

    //! Whether git was started during the last look.
    [[nodiscard]] bool hasAsked() const { return m_hasAsked; }

    //! What git prints, now or when it was last asked. Errors: LaunchError.
    [[nodiscard]] QByteArray answer(const QStringList &arguments, const QString &path);

    //! What on disk tells of a commit on that branch, or on any, now or when the repository was last asked.
    [[nodiscard]] QList<WatchPlace> watchPlaces(const QString &path, const std::optional<QString> &branch) const;

private:
    //! Seconds since 1970 between which a log was asked for, as git took its dates.
    struct Window
    {
        std::int64_t since = 0;
        std::int64_t until = 0;
    };

    struct Log
    {
        QByteArray question;  //!< without its dates
        QString since;
        QString until;
        std::optional<Window> window;       //!< before git was asked
        std::optional<Window> windowAtEnd;  //!< of the look: git took the dates for something between the two
        QByteArray text;
    };

    //! What is known of a repository.
    struct Memory
    {
        std::optional<QString> branch;  //!< nothing: all of them
        GitConfig config;
        RepositoryState state;
        std::map<QByteArray, QByteArray> answers;  //!< those on which no clock bears
        std::vector<Log> logs;
        QList<WatchPlace> places;  //!< that tell of a commit
        //! When those of the branch were committed, from @ref oldest on, in order. Nothing until it is needed.
        std::optional<std::vector<std::uint32_t>> commits;
        std::int64_t oldest = 0;
        Instant askedAt;
    };

    //! The questions about one repository, from beginLook() to endLook().
    struct Look
    {
        QString path;
        std::optional<Memory> known;          //!< what is remembered and still so
        Memory fresh;                         //!< what was asked now
        std::optional<QByteArray> selection;  //!< what the branch is chosen by, at the beginning
        bool isPrepared = false;              //!< whether what decides the answers was read
        bool isRememberable = true;
    };

    [[nodiscard]] std::optional<Memory> takeCurrent(const QString &path);
    [[nodiscard]] std::optional<RepositoryState> stateOf(const Memory &memory, const QString &path) const;
    [[nodiscard]] Log questionFor(const QStringList &arguments) const;
    [[nodiscard]] std::optional<Window> windowOf(const Log &log) const;
    void forgetMoments() const;
    [[nodiscard]] std::optional<std::int64_t> momentOf(const QString &date) const;
    [[nodiscard]] std::optional<QByteArray> remembered(const Log &question);
    [[nodiscard]] bool takeCommits(Memory &known, const QString &path);
    [[nodiscard]] static bool isSame(const Memory &memory, const Log &log, const Window &window);
    [[nodiscard]] QByteArray ask(const QStringList &arguments, Log question);
    void prepare(const std::optional<QString> &branch);
    [[nodiscard]] std::optional<QByteArray> selectionOf(const QString &path) const;
    [[nodiscard]] bool takeConfig();
    [[nodiscard]] bool addTo(Memory &known, Memory &fresh, const QString &path) const;
    [[nodiscard]] bool complete(Memory &fresh, const QString &path) const;

    GitRunner &m_git;
    const FileTree &m_files;
    const Clock &m_clock;
    ConfigPlaces m_places;
    std::unordered_map<std::string, Memory> m_memories;
    std::optional<Look> m_look;
    bool m_hasAsked = false;
    mutable QHash<QString, std::optional<std::int64_t>> m_moments;  // what git takes a date for at ...
    mutable std::int64_t m_momentsAt = 0;                           // ... that second
};

}  // namespace velquarin
