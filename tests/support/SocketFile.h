// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>

#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>

namespace velquarin::test {

//! A socket that is bound to a new file there; whoever asks closes it.
inline int socketAt(const QString &path)
{
    const auto name = QFile::encodeName(path);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (std::size_t(name.size()) >= sizeof address.sun_path)
        qFatal("%s is too long for a socket", name.constData());
    std::memcpy(&address.sun_path, name.constData(), std::size_t(name.size()));
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        qFatal("no socket at %s", name.constData());
    return descriptor;
}

}  // namespace velquarin::test
