// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QStringList>

#include <array>
#include <cstddef>
#include <cstring>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace velquarin::test {

//! Tells which names were given to files in a folder, by making or by renaming them, since it exists. Source:
//! inotify(7)
class FolderWatch
{
public:
    explicit FolderWatch(const QString &folder)
        : m_descriptor(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
    {
        if (::inotify_add_watch(m_descriptor, QFile::encodeName(folder).constData(), IN_CREATE | IN_MOVED_TO) < 0)
            qFatal("%s cannot be watched", qPrintable(folder));
    }
    FolderWatch(const FolderWatch &) = delete;
    FolderWatch &operator=(const FolderWatch &) = delete;
    ~FolderWatch() { ::close(m_descriptor); }

    //! Every name so far, once for each time that it was given.
    [[nodiscard]] QStringList names()
    {
        readEvents();
        return m_names;
    }

    //! Waits for the next time that a file gets this name; false where that takes too long.
    [[nodiscard]] bool waitFor(const QString &name, int timeoutMs)
    {
        const auto before = names().count(name);
        pollfd events{m_descriptor, POLLIN, 0};
        while (names().count(name) == before) {
            if (::poll(&events, 1, timeoutMs) <= 0)
                return false;
        }
        return true;
    }

private:
    void readEvents()
    {
        alignas(inotify_event) std::array<char, 4096> buffer{};
        ssize_t length = 0;
        while ((length = ::read(m_descriptor, buffer.data(), buffer.size())) > 0) {
            for (ssize_t offset = 0; offset < length;) {
                inotify_event event{};
                std::memcpy(&event, buffer.data() + offset, sizeof event);
                m_names.append(QFile::decodeName(buffer.data() + offset + sizeof event));
                offset += static_cast<ssize_t>(sizeof event + event.len);
            }
        }
    }

    int m_descriptor;
    QStringList m_names;
};

}  // namespace velquarin::test
