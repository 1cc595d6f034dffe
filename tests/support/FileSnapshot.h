// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QString>

#include <sys/stat.h>

namespace velquarin::test {

//! Everything below a folder: path to kind, size, time of the last change to the nanosecond, and a digest of the bytes
//! or the target of a link. Equal snapshots mean that nobody wrote. Only regular files are opened.
using FileSnapshot = QMap<QString, QByteArray>;

inline QByteArray contentOf(const QString &path, mode_t mode)
{
    if (S_ISLNK(mode))
        return QFile::symLinkTarget(path).toUtf8();
    QFile file(path);
    if (!S_ISREG(mode) || !file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
}

inline QByteArray entryOf(const QString &path)
{
    struct stat status
    {
    };
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
        return "gone";
    return QByteArray::number(status.st_mode, 8) + ' ' + QByteArray::number(qint64(status.st_size)) + ' ' +
           QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.' +
           QByteArray::number(qint64(status.st_mtim.tv_nsec)) + ' ' + contentOf(path, status.st_mode);
}

inline FileSnapshot snapshotOf(const QString &folder)
{
    FileSnapshot snapshot{{folder, entryOf(folder)}};
    QDirIterator walk(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const auto path = walk.next();
        snapshot.insert(path, entryOf(path));
    }
    return snapshot;
}

//! The first path in which the two differ, and how; empty where they are equal.
inline QByteArray firstDifference(const FileSnapshot &before, const FileSnapshot &after)
{
    auto paths = before.keys() + after.keys();
    for (const auto &path : std::as_const(paths)) {
        if (before.value(path) != after.value(path))
            return path.toUtf8() + ": \"" + before.value(path) + "\" became \"" + after.value(path) + '"';
    }
    return {};
}

}  // namespace velquarin::test
