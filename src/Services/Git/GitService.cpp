// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitService.h"

#include "Services/Git/RepositoryScan.h"

#include <QDeadlineTimer>

namespace velquarin {

GitService::GitService(ProcessRunner &runner, const FileTree &files, const Clock &clock,
                       const QProcessEnvironment &inherited)
    : m_runner(runner)
    , m_files(files)
    , m_queries(runner, clock, inherited)
{
    connect(&m_worker, &SerialWorker::subjectChanged, this, &GitService::repositoryBeingReadChanged);
}

GitService::~GitService()
{
    stop(std::chrono::milliseconds(0));
}

QFuture<QString> GitService::getDefaultBranch(const QString &in)
{
    return ask(in, [this, in] { return m_queries.defaultBranch(in); });
}

QFuture<QList<Instant>> GitService::getCommits(const QString &in, Instant since, Instant until)
{
    return ask(in, [this, in, since, until] { return m_queries.commits(in, since, until); });
}

QFuture<DayCounts> GitService::getCommitHistory(const QString &in, qint64 days)
{
    return ask(in, [this, in, days] { return m_queries.commitHistory(in, days); });
}

QFuture<std::optional<Instant>> GitService::getLastCommitDate(const QString &in)
{
    return ask(in, [this, in] { return m_queries.lastCommitDate(in); });
}

QFuture<bool> GitService::isGitRepository(const QString &at)
{
    return ask(at, [this, at] { return m_queries.isGitRepository(at); });
}

QFuture<QStringList> GitService::scanForRepositories(const QString &in, qint64 maxDepth)
{
    return m_worker.run(
        [this, in, maxDepth] { return velquarin::scanForRepositories(m_files, in, maxDepth, m_isStopped); });
}

bool GitService::stop(std::chrono::milliseconds patience)
{
    m_isStopped = true;
    // First, or the thread could begin the next operation, whose git does not start any more, and give that for an answer.
    m_worker.close();
    m_runner.stop();
    const QDeadlineTimer deadline(patience);
    const bool hasCountingEnded = m_counting.stop(patience);
    return m_worker.stop(std::chrono::milliseconds(deadline.remainingTime())) && hasCountingEnded;
}

}  // namespace velquarin
