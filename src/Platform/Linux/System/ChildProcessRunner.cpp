// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/ChildProcessRunner.h"

#include "Platform/Linux/System/Landlock.h"

#include <QFile>
#include <QProcess>

#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace velquarin {

namespace {

constexpr rlim_t dataLimit = rlim_t(2) << 30U;

void setLimit(__rlimit_resource resource, rlim_t value)
{
    const rlimit limit{value, value};
    setrlimit(resource, &limit);
}

// Runs in the child between fork and exec: nothing here may allocate memory.
void prepareChild()
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setLimit(RLIMIT_CORE, 0);
    setLimit(RLIMIT_DATA, dataLimit);
    // Inherited ignored or blocked signals would make the child deaf to SIGTERM and to a closed pipe.
    std::signal(SIGPIPE, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void configure(QProcess &process, const ProcessRequest &request)
{
    process.setProgram(request.program);
    process.setArguments(request.arguments);
    process.setWorkingDirectory(request.directory);
    process.setProcessEnvironment(request.environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier(prepareChild);
}

LaunchError launchError(const QString &reason)
{
    return LaunchError(reason.toStdString());
}

// An empty folder would mean the program's own, and one with a NUL in it the part before the NUL: both are some other
// folder than the one asked for.
void checkDirectory(const QString &directory)
{
    if (directory.isEmpty() || directory.contains(QChar(u'\0')))
        throw launchError(QStringLiteral("No such file or directory"));
}

}  // namespace

bool ChildProcessRunner::confineThisThread(const QString &program)
{
    return confineThreadToProgram(QFile::encodeName(program).toStdString());
}

QByteArray ChildProcessRunner::run(const ProcessRequest &request)
{
    checkDirectory(request.directory);
    QProcess process;
    configure(process, request);
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
    return process.readAllStandardOutput();
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
