// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitService.h"

namespace velquarin {

GitService::GitService(ProcessRunner &runner, const FileTree &files, const Clock &clock,
                       const QProcessEnvironment &inherited)
    : m_runner(runner)
    , m_files(files)
    , m_clock(clock)
    , m_queries(runner, files, clock, inherited)
{
    connect(&m_worker, &SerialWorker::subjectChanged, this, &GitService::repositoryBeingReadChanged);
}

GitService::~GitService()
{
    stop(std::chrono::milliseconds(0));
}

QFuture<bool> GitService::isGitRepository(const QString &path)
{
    return ask(path, [path](GitQueries &git) { return git.isGitRepository(path); });
}

QFuture<QStringList> GitService::scanForRepositories(const QString &in, qint64 maxDepth)
{
    return m_worker.run(
        [this, in, maxDepth] { return velquarin::scanForRepositories(m_files, in, maxDepth, m_isStopped); });
}

QFuture<QStringList> GitService::scanWatchedFolder(const QString &in, qint64 maxDepth)
{
    return m_worker.run([this, in, maxDepth] {
        return velquarin::scanForRepositories(m_files, in, maxDepth, m_isStopped, knownFolder(in));
    });
}

// Not every file system tells of every change: some are made of others, or of something far away.
KnownFolder &GitService::knownFolder(const QString &path)
{
    const auto now = m_clock.now();
    std::erase_if(m_watched, [now](const auto &item) {
        const auto age = now - item.second.since;
        return age < std::chrono::hours(0) || age >= std::chrono::hours(24);
    });
    return m_watched.try_emplace(path, Watched{now, {}}).first->second.folder;
}

QFuture<bool> GitService::watch(RepositoryWatch &watch, const QList<WatchPlace> &places)
{
    return m_worker.run([&watch, places] { return watch.watch(places); });
}

bool GitService::stop(std::chrono::milliseconds patience)
{
    m_isStopped = true;
    // First, or the thread could begin the next operation, whose git does not start any more, and give that for an answer.
    m_worker.close();
    m_runner.stop();
    return m_worker.stop(patience);
}

}  // namespace velquarin
