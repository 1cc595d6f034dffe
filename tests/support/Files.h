// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace velquarin::test {

//! Makes the file hold exactly these bytes, and the folders above it where they are missing.
inline void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("%s cannot be written", qPrintable(path));
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    return file.readAll();
}

//! The permission bits, links followed; -1 where there is nothing.
inline int modeOf(const QString &path)
{
    struct stat status
    {
    };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? static_cast<int>(status.st_mode & 07777U) : -1;
}

//! The names of everything in a folder, sorted, hidden and dangling ones too.
inline QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

}  // namespace velquarin::test
