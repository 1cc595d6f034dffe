// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Standstill.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

namespace velquarin::test {

//! What came of reading a repository the way that comes to mind first.
struct NaiveReading
{
    QList<QByteArray> outputs;  //!< of each command, in order, up to the one that had to be killed
    bool hung = false;
    bool crashed = false;
    bool ateMemory = false;
};

//! Asks git the same questions in the same words as the program does, with the environment as it is and with no
//! precaution but the test's own: what waits at a pipe for nobody, or takes a quarter of a gigabyte, is killed.
class NaiveReader
{
public:
    //! The days of @p folder that are asked for end with 2024-03-07. Another @p environment than the one that is there
    //! shows what can be kept out by that environment alone.
    static NaiveReading read(const QString &folder,
                             const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        NaiveReader reader(folder, environment);
        reader.run("rev-parse --git-dir");
        const auto branch = reader.branch();
        reader.log(branch, "--format=%ad --date=short --since=2024-03-01 --until=2024-03-08");
        reader.log(branch, "--format=%ad --date=short --since=2022-03-08 --until=2024-03-08");
        reader.log(branch, "-1 --format=%aI");
        return reader.m_reading;
    }

private:
    NaiveReader(QString folder, const QProcessEnvironment &environment)
        : m_folder(std::move(folder))
        , m_environment(environment)
    {
    }

    QString branch()
    {
        auto remote = QString::fromUtf8(run("symbolic-ref refs/remotes/origin/HEAD --short")).trimmed();
        if (!remote.isEmpty())
            return remote.remove(QLatin1String("origin/"));
        for (const char *name : {"main", "master"}) {
            if (!run(QByteArray("branch --list ") + name).trimmed().isEmpty())
                return QLatin1String(name);
        }
        return QStringLiteral("HEAD");
    }

    void log(const QString &branch, const char *options)
    {
        run(QStringList{QStringLiteral("log"), branch} + QString::fromLatin1(options).split(u' '));
    }

    QByteArray run(const QByteArray &command) { return run(QString::fromLatin1(command).split(u' ')); }

    QByteArray run(const QStringList &arguments)
    {
        if (m_reading.hung || m_reading.ateMemory)
            return {};
        QProcess git;
        git.setWorkingDirectory(m_folder);
        git.setProcessEnvironment(m_environment);
        git.setStandardErrorFile(QProcess::nullDevice());
        git.setChildProcessModifier(prepareToBeKilled);
        git.start(QStringLiteral("/usr/bin/git"), arguments);
        git.waitForStarted(-1);
        watch(git);
        auto output = git.readAllStandardOutput();
        m_reading.outputs << output;
        return output;
    }

    void watch(QProcess &git)
    {
        constexpr qint64 appetite = 256LL * 1024;
        Patience patience(pid_t(git.processId()));
        while (!git.waitForFinished(20) && git.state() != QProcess::NotRunning) {
            m_reading.hung = patience.isPointless();
            m_reading.ateMemory = kilobytesOf(git.processId()) > appetite;
            if (m_reading.hung || m_reading.ateMemory) {
                kill(-pid_t(git.processId()), SIGKILL);
                git.waitForFinished(-1);
                return;
            }
        }
        m_reading.crashed = m_reading.crashed || git.exitStatus() == QProcess::CrashExit;
    }

    // Tells a git that hangs from one that is slow because the machine is busy. It hangs where it stays asleep at a pipe
    // with nobody else in its group who might write there.
    class Patience
    {
    public:
        explicit Patience(pid_t process)
            : m_process(process)
        {
            m_elapsed.start();
        }

        bool isPointless()
        {
            constexpr int enough = 5;
            // Not every system lets one process see what another sleeps at.
            const bool isSeen = !processFile(m_process, "syscall").isEmpty();
            constexpr int noEnd = 60000;
            constexpr int unseen = 3000;
            if (!isSeen && m_elapsed.hasExpired(unseen))
                return true;
            m_looks = sleepsAtAPipe(m_process) && isAloneInItsGroup(m_process) ? m_looks + 1 : 0;
            if (m_elapsed.hasExpired(noEnd))
                qFatal("git neither ends nor waits for nobody: %s", sightOf(m_process).constData());
            return m_looks >= enough;
        }

    private:
        pid_t m_process;
        int m_looks = 0;
        QElapsedTimer m_elapsed;
    };

    //! Source: proc(5), VmRSS
    static qint64 kilobytesOf(qint64 process)
    {
        QFile status(QStringLiteral("/proc/%1/status").arg(process));
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        const auto text = status.readAll();
        const auto start = text.indexOf("VmRSS:");
        return start < 0 ? 0 : text.mid(start + 6, text.indexOf("kB", start) - start - 6).trimmed().toLongLong();
    }

    static void prepareToBeKilled()
    {
        setpgid(0, 0);
        const rlimit none{0, 0};
        setrlimit(RLIMIT_CORE, &none);
    }

    QString m_folder;
    QProcessEnvironment m_environment;
    NaiveReading m_reading;
};

}  // namespace velquarin::test
