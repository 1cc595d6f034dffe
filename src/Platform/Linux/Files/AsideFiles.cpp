// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/AsideFiles.h"

#include "Platform/Linux/Files/FileReplacement.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <functional>

#include <fcntl.h>

namespace velquarin {

namespace {

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
