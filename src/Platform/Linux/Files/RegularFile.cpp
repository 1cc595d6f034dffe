// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/RegularFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velquarin {

namespace {

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

}  // namespace

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

}  // namespace velquarin
