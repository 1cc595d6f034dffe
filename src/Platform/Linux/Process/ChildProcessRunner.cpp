// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/ChildProcessRunner.h"

#include <QFile>
#include <QProcess>

#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace velquarin {

namespace {

constexpr rlim_t dataLimit = rlim_t(2) << 30U;

// Two years of a commit every ten seconds: no history is as long, and a git that never stops must not eat the memory.
constexpr qint64 outputLimit = qint64(64) << 20U;

void setLimit(__rlimit_resource resource, rlim_t value)
{
    const rlimit limit{value, value};
    setrlimit(resource, &limit);
}

// Inherited ignored or blocked signals would make the child deaf to SIGTERM and to a closed pipe.
void hearSignals()
{
    std::signal(SIGPIPE, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

void configure(QProcess &process, const ProcessRequest &request)
{
    process.setProgram(request.program);
    process.setArguments(request.arguments);
    process.setWorkingDirectory(request.directory);
    process.setProcessEnvironment(request.environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
}

LaunchError launchError(const QString &reason)
{
    return LaunchError{reason.toStdString()};
}

// An empty folder would mean the program's own, and one with a NUL in it the part before the NUL: both are some other
// folder than the one asked for.
void checkDirectory(const QString &directory)
{
    if (directory.isEmpty() || directory.contains(QChar(u'\0')))
        throw launchError(QStringLiteral("No such file or directory"));
}

}  // namespace

bool ChildProcessRunner::confine(const QString &program)
{
    return m_confinement.prepare(QFile::encodeName(program).toStdString());
}

// Runs in the child between fork and exec: nothing here may allocate memory. A child that should be confined and cannot
// be does not run, and neither does one whose parent died before it could be told to die with it.
void ChildProcessRunner::prepareChild(pid_t parent) const
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setLimit(RLIMIT_CORE, 0);
    setLimit(RLIMIT_DATA, dataLimit);
    hearSignals();
    if (getppid() != parent || (m_confinement.isPrepared() && !m_confinement.enforce()))
        _exit(EXIT_FAILURE);
}

ProcessOutput ChildProcessRunner::run(const ProcessRequest &request)
{
    checkDirectory(request.directory);
    QProcess process;
    configure(process, request);
    process.setChildProcessModifier([this, parent = getpid()] { prepareChild(parent); });
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, [this, &process] {
        if (process.bytesAvailable() > outputLimit)
            killGroup();
    });
    if (m_isStopped)
        throw launchError(QStringLiteral("The program is ending"));
    process.start(QIODevice::ReadOnly);
    if (!process.waitForStarted(-1))
        throw launchError(process.errorString());
    m_group = pid_t(process.processId());
    // stop() may have come between the two: then it saw no group to kill.
    if (m_isStopped)
        killGroup();
    process.waitForFinished(-1);
    m_group = 0;
    return {process.readAllStandardOutput(), process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1};
}

void ChildProcessRunner::stop()
{
    m_isStopped = true;
    killGroup();
}

void ChildProcessRunner::killGroup() const
{
    if (const auto group = m_group.load(); group > 0)
        kill(-group, SIGKILL);
}

}  // namespace velquarin
