// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QString>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace velquarin::test {

//! A socket that accepts, as a stopped bus does, and on which nobody ever speaks.
class SilentServer
{
public:
    explicit SilentServer(const QString &path)
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
        if (bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
            listen(m_socket, 5) != 0)
            qFatal("no server");
    }
    ~SilentServer() { close(m_socket); }
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

private:
    int m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

}  // namespace velquarin::test
