// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Instant.h"
#include "Services/Git/GitQueries.h"
#include "Services/Git/SerialWorker.h"

#include <QFuture>
#include <QList>
#include <QObject>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <optional>
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

    //! The branch or revision whose history counts; never empty, never an error.
    [[nodiscard]] QFuture<QString> getDefaultBranch(const QString &in);

    //! The starts of the commits' author days, newest commit first, one for each commit.
    [[nodiscard]] QFuture<QList<Instant>> getCommits(const QString &in, Instant since, Instant until);

    //! Commits a day in the @p days calendar days that end today; at least one day.
    [[nodiscard]] QFuture<DayCounts> getCommitHistory(const QString &in, qint64 days);

    //! When the newest commit was made; nothing where there is none.
    [[nodiscard]] QFuture<std::optional<Instant>> getLastCommitDate(const QString &in);

    //! Whether git can be started in that folder; a folder without a repository passes, a missing one does not.
    [[nodiscard]] QFuture<bool> isGitRepository(const QString &at);

    //! The working trees in a folder and at most @p maxDepth - 1 levels below it; never an error.
    [[nodiscard]] QFuture<QStringList> scanForRepositories(const QString &in, qint64 maxDepth);

    //! Does @p work on a second thread, one after another. To count what git told can take longer than a window may stand
    //! still: the days of a stranger's history are as many and as odd as the stranger likes. No search holds it up.
    template <typename Work>
    [[nodiscard]] auto count(Work work)
    {
        return m_counting.run(std::move(work));
    }

    //! The same, where nobody waits for the end.
    template <typename Work>
    void countMeanwhile(Work work)
    {
        static_cast<void>(m_counting.run([work = std::move(work)] {
            work();
            return true;
        }));
    }

    //! Kills a running git and ends both threads. Returns whether both ended within @p patience; a file system that
    //! hangs can hold the first longer.
    bool stop(std::chrono::milliseconds patience);

Q_SIGNALS:
    //! The repository about which git runs now, or nothing. A question that waits for its turn is not told.
    void repositoryBeingReadChanged(const std::optional<QString> &path);

private:
    template <typename Question>
    [[nodiscard]] auto ask(const QString &repository, Question question)
    {
        return m_worker.run(std::move(question), repository);
    }

    ProcessRunner &m_runner;
    const FileTree &m_files;
    GitQueries m_queries;
    std::atomic<bool> m_isStopped = false;
    SerialWorker m_worker;
    SerialWorker m_counting;
};

}  // namespace velquarin
