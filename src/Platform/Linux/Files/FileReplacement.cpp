// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/FileReplacement.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velquarin {

namespace {

constexpr mode_t ownerOnlyFile = 0600;
constexpr mode_t ownerOnlyFolder = 0700;

// The flush is looked at by itself: on a full disk the toolkit would take its failure for success and put an empty
// file in place. So is the fsync, the only call in which some file systems tell that the disk is full.
bool fill(QFileDevice &file, const QByteArray &content)
{
    return ::fchmod(file.handle(), ownerOnlyFile) == 0 && file.write(content) == content.size() && file.flush() &&
           file.error() == QFileDevice::NoError && ::fsync(file.handle()) == 0;
}

// The errno of what failed, and there is no file; or 0.
int writeNewFile(const QByteArray &name, const QByteArray &content)
{
    const int descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnlyFile);
    if (descriptor < 0)
        return errno;
    QFile file;
    if (file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle) && fill(file, content))
        return 0;
    const int error = errno;
    ::unlink(name.constData());
    return error != 0 ? error : EIO;
}

// A file that may not be written is not replaced either, though its folder would allow it.
bool mayReplace(const QByteArray &name)
{
    return ::access(name.constData(), W_OK) == 0 || errno == ENOENT;
}

int putInPlace(const QByteArray &temporary, const QByteArray &name)
{
    if (::rename(temporary.constData(), name.constData()) == 0)
        return 0;
    const int error = errno;
    ::unlink(temporary.constData());
    return error;
}

// Another instance of the program may have made it just now.
bool makeLastFolder(const QString &path)
{
    return ::mkdir(QFile::encodeName(path).constData(), ownerOnlyFolder) == 0 ||
           (errno == EEXIST && QFileInfo(path).isDir());
}

}  // namespace

bool makeFolder(const QString &path)
{
    if (QFileInfo(path).isDir() || makeLastFolder(path))
        return true;
    const auto parent = QFileInfo(path).path();
    return errno == ENOENT && parent != path && makeFolder(parent) && makeLastFolder(path);
}

std::optional<QString> replaceFile(const QString &path, const QByteArray &content)
{
    const auto name = QFile::encodeName(path);
    if (!makeFolder(QFileInfo(path).path()) || !mayReplace(name))
        return qt_error_string(errno);
    removeLeftOver(path);
    const auto temporary = QFile::encodeName(temporaryOf(path));
    if (const int error = writeNewFile(temporary, content))
        return qt_error_string(error);
    if (const int error = putInPlace(temporary, name))
        return qt_error_string(error);
    syncFolderOf(path);
    return std::nullopt;
}

int createFile(const QString &path, const QByteArray &content)
{
    const int error = writeNewFile(QFile::encodeName(path), content);
    if (error == 0)
        syncFolderOf(path);
    return error;
}

QString temporaryOf(const QString &path)
{
    const QFileInfo file(path);
    return file.path() + QStringLiteral("/.") + file.fileName() + QStringLiteral(".velquarin");
}

void removeLeftOver(const QString &path)
{
    ::unlink(QFile::encodeName(temporaryOf(path)).constData());
}

void syncFolderOf(const QString &path)
{
    const auto folder = QFile::encodeName(QFileInfo(path).path());
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

}  // namespace velquarin
