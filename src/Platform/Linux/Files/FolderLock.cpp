// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/FolderLock.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

bool isTakenByOther(int folder)
{
    return ::flock(folder, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace

// Asked for again and again, since a call that waits could wait for ever: for an instance that was stopped in the middle.
FolderLock::FolderLock(const QString &folder, std::chrono::milliseconds patience)
    : m_folder(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while ((m_isHeldByOther = isTakenByOther(m_folder)) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(1ms);
}

FolderLock::~FolderLock()
{
    if (m_folder >= 0)
        ::close(m_folder);
}

}  // namespace velquarin
