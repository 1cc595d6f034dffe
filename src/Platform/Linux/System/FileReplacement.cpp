// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/FileReplacement.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velquarin {

namespace {

constexpr mode_t ownerOnlyFile = 0600;
constexpr mode_t ownerOnlyFolder = 0700;
constexpr qsizetype temporarySuffixLength = 7;

bool makeFolder(const QString &path)
{
    if (QFileInfo(path).isDir() || ::mkdir(QFile::encodeName(path).constData(), ownerOnlyFolder) == 0)
        return true;
    const auto parent = QFileInfo(path).path();
    return errno == ENOENT && parent != path && makeFolder(parent) &&
           ::mkdir(QFile::encodeName(path).constData(), ownerOnlyFolder) == 0;
}

// The flush is looked at by itself: on a full disk the toolkit would take its failure for success and put an empty
// file in place. So is the fsync, the only call in which some file systems tell that the disk is full.
bool fill(QFileDevice &file, const QByteArray &content)
{
    return ::fchmod(file.handle(), ownerOnlyFile) == 0 && file.write(content) == content.size() && file.flush() &&
           file.error() == QFileDevice::NoError && ::fsync(file.handle()) == 0;
}

QString reasonOf(const QFileDevice &file)
{
    return file.error() == QFileDevice::NoError ? qt_error_string(errno) : file.errorString();
}

bool isAsciiLetter(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

bool isInSmallLetters(const QString &name)
{
    const auto suffix = name.right(temporarySuffixLength);
    return suffix == suffix.toLower();
}

bool holdsWholeFile(const QString &path, const std::function<bool(const QByteArray &)> &isWhole)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && isWhole(file.readAll());
}

}  // namespace

std::optional<QString> replaceFile(const QString &path, const QByteArray &content)
{
    if (!makeFolder(QFileInfo(path).path()))
        return qt_error_string(errno);
    QSaveFile file(path);
    file.setDirectWriteFallback(false);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    if (!fill(file, content)) {
        const auto reason = reasonOf(file);
        file.cancelWriting();
        return reason;
    }
    if (!file.commit())
        return file.errorString();
    syncFolderOf(path);
    return std::nullopt;
}

int createFile(const QString &path, const QByteArray &content)
{
    const auto name = QFile::encodeName(path);
    const int descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnlyFile);
    if (descriptor < 0)
        return errno;
    QFile file;
    const bool isOpen = file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
    if (isOpen && fill(file, content)) {
        syncFolderOf(path);
        return 0;
    }
    const int error = errno;
    ::unlink(name.constData());
    return error != 0 ? error : EIO;
}

bool isTemporaryOf(const QString &fileName, const QString &name)
{
    const QString stem = fileName + u'.';
    return name.size() == fileName.size() + temporarySuffixLength && name.startsWith(stem) &&
           std::all_of(name.begin() + stem.size(), name.end(), isAsciiLetter);
}

void removeLeftOverTemporaries(const QString &path, const std::function<bool(const QByteArray &)> &isWhole)
{
    const QFileInfo file(path);
    QDirIterator entries(file.path(), QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        const auto entry = entries.next();
        if (!isTemporaryOf(file.fileName(), entries.fileName()))
            continue;
        if (!isInSmallLetters(entry) || !holdsWholeFile(entry, isWhole))
            QFile::remove(entry);
    }
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
