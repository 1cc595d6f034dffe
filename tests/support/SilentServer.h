// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/SocketFile.h"

#include <QString>

#include <unistd.h>

namespace velquarin::test {

//! A socket that accepts, as a stopped bus does, and on which nobody ever speaks.
class SilentServer
{
public:
    explicit SilentServer(const QString &path)
        : m_socket(socketAt(path))
    {
        if (listen(m_socket, 5) != 0)
            qFatal("no server");
    }
    ~SilentServer() { close(m_socket); }
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

private:
    int m_socket;
};

}  // namespace velquarin::test
