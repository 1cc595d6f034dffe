// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/RegularFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace velquarin {

namespace fs = std::filesystem;

namespace {

// As many as the kernel itself follows.
constexpr int mostLinks = 40;

FileKind kindOf(fs::file_type type)
{
    switch (type) {
    case fs::file_type::not_found:
        return FileKind::Missing;
    case fs::file_type::regular:
        return FileKind::Regular;
    case fs::file_type::none:
        return FileKind::OutOfReach;
    default:
        return FileKind::Other;
    }
}

LinkTarget targetOf(const fs::path &path, FileKind kind, std::error_code error = {})
{
    return {QFile::decodeName(path.c_str()), kind, kind == FileKind::OutOfReach ? error : std::error_code()};
}

bool isRegular(int descriptor)
{
    struct stat status
    {
    };
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

// A device may do something when it is opened, so that is looked at before; and after, for it may have changed.
int openRegular(const QByteArray &name)
{
    struct stat status
    {
    };
    if (::stat(name.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return -1;
    const int descriptor = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0 || isRegular(descriptor))
        return descriptor;
    ::close(descriptor);
    return -1;
}

constexpr mode_t ownerOnlyFile = 0600;
constexpr mode_t ownerOnlyFolder = 0700;

// The flush is looked at by itself: on a full disk Qt would take its failure for success and put an empty
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

constexpr int mostNames = 1000;

QString asidePath(const QString &path, const QString &why, const QString &time, int number)
{
    const QString name = path + u'.' + why + u'-' + time;
    return number == 1 ? name : name + u'-' + QString::number(number);
}

// Tries one name after the other while they are taken. An attempt tells the errno of its failure, or 0.
AsideFile putAside(const QString &path, const QString &why, const std::function<int(const QString &)> &attempt)
{
    const auto time = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    int error = EEXIST;
    for (int number = 1; number <= mostNames && error == EEXIST; ++number) {
        const auto aside = asidePath(path, why, time, number);
        error = attempt(aside);
        if (error == 0)
            return {aside, {}};
    }
    return {{}, qt_error_string(error)};
}

int errorOf(int result)
{
    return result == 0 ? 0 : errno;
}

// Some network and user-space file systems cannot promise by themselves to leave an existing file alone.
int renameToFreeName(const QString &from, const QString &to)
{
    const auto source = QFile::encodeName(from);
    const auto target = QFile::encodeName(to);
    const int error =
        errorOf(::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE));
    if (error != EINVAL && error != ENOSYS)
        return error;
    if (QFileInfo::exists(to) || QFileInfo(to).isSymLink())
        return EEXIST;
    return errorOf(std::rename(source.constData(), target.constData()));
}

}  // namespace

LinkTarget followLinks(const QString &path)
{
    fs::path current(QFile::encodeName(path).toStdString());
    for (int link = 0; link < mostLinks; ++link) {
        std::error_code error;
        const auto type = fs::symlink_status(current, error).type();
        if (type != fs::file_type::symlink)
            return targetOf(current, kindOf(type), error);
        const auto target = fs::read_symlink(current, error);
        if (error)
            return targetOf(current, FileKind::OutOfReach, error);
        current = current.parent_path() / target;
    }
    return targetOf(current, FileKind::Other);
}

std::optional<QByteArray> readRegularFile(const QString &path, qint64 mostBytes)
{
    const int descriptor = openRegular(QFile::encodeName(path));
    QFile file;
    if (descriptor < 0 || !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return std::nullopt;
    auto content = file.read(mostBytes + 1);
    const bool isWhole = file.error() == QFileDevice::NoError && content.size() <= mostBytes;
    return isWhole ? std::optional(std::move(content)) : std::nullopt;
}

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

AsideFile moveAside(const QString &path)
{
    auto aside =
        putAside(path, QStringLiteral("damaged"), [&](const QString &name) { return renameToFreeName(path, name); });
    syncFolderOf(path);
    return aside;
}

AsideFile copyAside(const QString &path, const QByteArray &content, const QString &why)
{
    return putAside(path, why, [&](const QString &name) { return createFile(name, content); });
}

}  // namespace velquarin
