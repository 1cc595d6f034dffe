// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Services/Git/GitQueries.h"
#include "Services/Git/RepositoryScan.h"
#include "Services/Git/SerialWorker.h"

#include <QFuture>
#include <QObject>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <map>
#include <optional>
#include <type_traits>
#include <utility>

namespace velquarin {

class FileTree;

//! The one place where the program talks to git and walks folders, on a thread of its own. Operations run whole, one
//! after another, in the order in which they were called: at most one git runs at any time.
//!
//! Call it from the main thread; each answer comes there through the event loop. A future ends with LaunchError where
//! git cannot be started in the folder, and with WorkerStopped after stop(). There is no time limit: a git that never
//! ends holds the later answers back until stop() kills it.
class GitService : public QObject
{
    Q_OBJECT
public:
    GitService(ProcessRunner &runner, const FileTree &files, const Clock &clock,
               const QProcessEnvironment &inherited = QProcessEnvironment::systemEnvironment());
    ~GitService() override;

    //! Calls @p question on git's thread with the GitQueries there, and answers what it returns. All that it asks and
    //! counts is one operation, about the repository at @p path.
    template <typename Question>
    [[nodiscard]] auto ask(const QString &path, Question question)
    {
        return m_worker.run([this, path, question = std::move(question)] { return answer(path, question); }, path);
    }

    //! Calls @p question in the same way for one repository of @p paths after another, with its number, and answers what
    //! it returned; @p counted says which commits count from then on. All are one operation, which ends with the first about
    //! which git had to be started, or which is read when a tenth of a second is over: whoever else asks waits hardly longer
    //! than for one. @p paths are some.
    template <typename Question>
    [[nodiscard]] auto askUntilGitStarts(const QStringList &paths, CountedCommits counted, Question question)
    {
        using Answer = std::invoke_result_t<Question, GitQueries &, qsizetype>;
        const auto work = [this, paths, counted, question = std::move(question)] {
            m_queries.count(counted);
            const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
            QList<Answer> answers;
            do {
                const auto number = answers.size();
                m_worker.setSubject(paths[number]);
                answers += answer(paths[number], [&](GitQueries &git) { return question(git, number); });
            } while (!m_queries.hasAsked() && answers.size() < paths.size() && std::chrono::steady_clock::now() < end);
            return answers;
        };
        return m_worker.run(work, paths.constFirst());
    }

    //! Whether git can be started in that folder; a folder without a repository passes, a missing one does not.
    [[nodiscard]] QFuture<bool> isGitRepository(const QString &path);

    //! The working trees in a folder and at most @p maxDepth - 1 levels below it; never an error.
    [[nodiscard]] QFuture<QStringList> scanForRepositories(const QString &in, qint64 maxDepth);

    //! The same for a folder that is searched again and again: what did not change since the last time is not read again, for
    //! a day.
    [[nodiscard]] QFuture<QStringList> scanWatchedFolder(const QString &in, qint64 maxDepth);

    //! Has @p watch watch these places and no others, between two operations: it waits for the disk. Whether any is new.
    [[nodiscard]] QFuture<bool> watch(RepositoryWatch &watch, const QList<WatchPlace> &places);

    //! Kills a running git and ends the thread. Returns whether it ended within @p patience; a file system that hangs can
    //! hold it longer.
    bool stop(std::chrono::milliseconds patience);

    //! The repository that is being read now, or nothing.
    [[nodiscard]] std::optional<QString> repositoryBeingRead() { return m_worker.subject(); }

Q_SIGNALS:
    //! A repository of the operation that runs now, or nothing. One that waits for its turn is not told.
    void repositoryBeingReadChanged(const std::optional<QString> &path);

private:
    template <typename Question>
    [[nodiscard]] auto answer(const QString &path, const Question &question)
    {
        m_queries.beginLook(path);
        auto answer = question(m_queries);
        m_queries.endLook();
        // What git did not come to is not what the repository holds.
        if (m_isStopped)
            throw WorkerStopped();
        return answer;
    }

    //! What the searches of one folder know, and since when.
    struct Watched
    {
        Instant since;
        KnownFolder folder;
    };

    [[nodiscard]] KnownFolder &knownFolder(const QString &path);

    ProcessRunner &m_runner;
    const FileTree &m_files;
    const Clock &m_clock;
    GitQueries m_queries;
    std::map<QString, Watched> m_watched;  // of git's thread
    std::atomic<bool> m_isStopped = false;
    SerialWorker m_worker;
};

}  // namespace velquarin
