// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
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
//! precaution but the test's own: what does nothing for three seconds, or takes a quarter of a gigabyte, is killed.
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
    NaiveReader(QString folder, QProcessEnvironment environment)
        : m_folder(std::move(folder))
        , m_environment(std::move(environment))
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
        const auto output = git.readAllStandardOutput();
        m_reading.outputs << output;
        return output;
    }

    void watch(QProcess &git)
    {
        constexpr int patience = 150;
        constexpr int interval = 20;  // ms
        constexpr qint64 appetite = 256 * 1024;
        int stillLooks = 0;
        qint64 workedBefore = -1;
        while (!git.waitForFinished(interval) && git.state() != QProcess::NotRunning) {
            const auto doing = doingOf(git.processId());
            const bool isStill = doing.isAsleep && doing.work == workedBefore;
            stillLooks = isStill ? stillLooks + 1 : 0;
            workedBefore = doing.work;
            m_reading.hung = stillLooks >= patience;
            m_reading.ateMemory = kilobytesOf(git.processId()) > appetite;
            if (m_reading.hung || m_reading.ateMemory) {
                kill(-pid_t(git.processId()), SIGKILL);
                git.waitForFinished(-1);
                return;
            }
        }
        m_reading.crashed = m_reading.crashed || git.exitStatus() == QProcess::CrashExit;
    }

    //! What a process and those that it started are at: who waits for a busy machine is awake.
    struct Doing
    {
        bool isAsleep = true;
        qint64 work = 0;  //!< in ticks of the processor
    };

    //! Source: proc(5), /proc/pid/stat and /proc/pid/task/tid/children
    static Doing doingOf(qint64 process)
    {
        constexpr int state = 0;
        constexpr int timeOfUser = 11;
        constexpr int timeOfSystem = 12;
        const auto stat = contentOf(QStringLiteral("/proc/%1/stat").arg(process));
        const auto fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        if (fields.size() <= timeOfSystem)
            return {};
        Doing doing{fields.at(state) == "S" || fields.at(state) == "Z",
                    fields.at(timeOfUser).toLongLong() + fields.at(timeOfSystem).toLongLong()};
        const auto children = contentOf(QStringLiteral("/proc/%1/task/%1/children").arg(process)).trimmed();
        for (const auto &child : children.split(' ')) {
            const auto other = child.isEmpty() ? Doing() : doingOf(child.toLongLong());
            doing.isAsleep = doing.isAsleep && other.isAsleep;
            doing.work += other.work;
        }
        return doing;
    }

    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    //! Source: proc(5), VmRSS
    static qint64 kilobytesOf(qint64 process)
    {
        const auto text = contentOf(QStringLiteral("/proc/%1/status").arg(process));
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
