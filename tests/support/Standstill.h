// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QList>
#include <QString>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace velquarin::test {

//! A file of a process below /proc, empty where there is none. Source: proc(5)
inline QByteArray processFile(pid_t process, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

//! 'S' for one that sleeps until something comes, 'R' for one that runs or would like to, 'D' for one at the disk.
inline char stateOf(pid_t process)
{
    const auto status = processFile(process, "stat");
    const auto name = status.lastIndexOf(')');
    return name < 0 || name + 2 >= status.size() ? '?' : status.at(name + 2);
}

inline QList<pid_t> processesIf(bool (*isMeant)(pid_t process, pid_t related), pid_t related)
{
    QList<pid_t> processes;
    for (const auto &name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        if (const auto process = name.toInt(); process > 0 && isMeant(process, related))
            processes << process;
    }
    return processes;
}

inline bool isAloneInItsGroup(pid_t process)
{
    return processesIf([](pid_t other, pid_t group) { return other != group && getpgid(other) == group; }, process)
        .isEmpty();
}

//! The number of the system call in which it sleeps, and the first argument; nothing while it runs.
inline QList<qint64> callOf(pid_t process)
{
    const auto words = processFile(process, "syscall").split(' ');
    bool isNumber = false;
    const auto number = words.first().toLongLong(&isNumber);
    return isNumber && words.size() > 1 ? QList<qint64>{number, words.at(1).toLongLong(nullptr, 16)} : QList<qint64>();
}

inline bool isPipe(pid_t process, qint64 descriptor)
{
    struct stat status
    {
    };
    const auto path = "/proc/" + QByteArray::number(process) + "/fd/" + QByteArray::number(descriptor);
    return ::stat(path.constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

//! Whether it sleeps until somebody opens the other end of a pipe or writes there. One that only waits for the disk or
//! for its turn on a busy machine does not.
inline bool sleepsAtAPipe(pid_t process)
{
    const auto call = callOf(process);
    if (stateOf(process) != 'S' || call.isEmpty())
        return false;
#ifdef SYS_open
    if (call.first() == SYS_open)
        return true;
#endif
    return call.first() == SYS_openat || (call.first() == SYS_read && isPipe(process, call.last()));
}

//! What it is and what it is at, for whoever has waited in vain.
inline QByteArray sightOf(pid_t process)
{
    const auto command = processFile(process, "cmdline").replace('\0', ' ').trimmed();
    return '"' + command + "\" in state " + stateOf(process) + ", system call " +
           processFile(process, "syscall").trimmed();
}

inline QList<pid_t> childrenOfThisProgram()
{
    const auto isChild = [](pid_t process, pid_t parent) {
        const auto status = processFile(process, "stat");
        return status.mid(status.lastIndexOf(')') + 4).startsWith(QByteArray::number(parent) + ' ');
    };
    return processesIf(isChild, getpid());
}

inline QByteArray sightOfChildren()
{
    QByteArray text;
    for (const auto child : childrenOfThisProgram())
        text += sightOf(child) + "; ";
    return text.isEmpty() ? QByteArray("no child runs") : text.chopped(2);
}

}  // namespace velquarin::test
