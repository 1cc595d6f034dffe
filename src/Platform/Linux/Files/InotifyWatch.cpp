// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/InotifyWatch.h"

#include "Platform/Linux/Process/StandardStreams.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace velquarin {

namespace {

std::uint32_t eventsOf(WatchPlace::Sign sign)
{
    switch (sign) {
    case WatchPlace::Sign::Written:
        return IN_MODIFY;
    case WatchPlace::Sign::Any:
        return IN_MOVED_TO | IN_CREATE;
    case WatchPlace::Sign::Replaced:
        break;
    }
    return IN_MOVED_TO;
}

}  // namespace

InotifyWatch::InotifyWatch()
    : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (m_descriptor < 0)
        return;
    m_notifier.emplace(m_descriptor, QSocketNotifier::Read);
    connect(&*m_notifier, &QSocketNotifier::activated, this, &InotifyWatch::hear);
}

InotifyWatch::~InotifyWatch()
{
    m_notifier.reset();
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool InotifyWatch::watch(const QList<WatchPlace> &places)
{
    auto watched = added(places);
    const std::lock_guard lock(m_mutex);
    const bool isAnyNew = std::ranges::any_of(watched, [&](const auto &item) {
        const auto before = m_watched.find(item.first);
        return before == m_watched.end() || !before->second.contains(item.second);
    });
    for (const auto &[number, names] : m_watched) {
        if (!watched.contains(number))
            inotify_rm_watch(m_descriptor, number);
    }
    m_watched = std::move(watched);
    return isAnyNew;
}

// Each anew: a folder may be another one under its old name by now. The kernel gives what it watches already the same
// number.
std::map<int, InotifyWatch::Names> InotifyWatch::added(const QList<WatchPlace> &places)
{
    std::map<int, Names> watched;
    for (const auto &place : places) {
        const auto number = inotify_add_watch(m_descriptor, QFile::encodeName(place.folder).constData(),
                                              eventsOf(place.sign) | IN_ONLYDIR | IN_DONT_FOLLOW | IN_MASK_ADD);
        if (number >= 0)
            watched[number].insert(place.name);
        else if (errno == ENOSPC || errno == EBADF)
            sayThatItIsFull(place.folder);
    }
    return watched;
}

void InotifyWatch::sayThatItIsFull(const QString &folder)
{
    if (!std::exchange(m_hasSaidSo, true))
        printErrorLine(QStringLiteral("The system has no watch left for ") + folder +
                       QStringLiteral("; commits there are noticed at the next refresh"));
}

void InotifyWatch::hear()
{
    alignas(inotify_event) std::array<char, 16'384> events{};
    bool hasChanged = false;
    ssize_t length = 0;
    std::unique_lock lock(m_mutex);
    while ((length = read(m_descriptor, events.data(), events.size())) > 0) {
        for (const auto *event = events.data(); event < events.data() + length;) {
            hasChanged |= hearOne(event);
            event += sizeof(inotify_event) + reinterpret_cast<const inotify_event *>(event)->len;
        }
    }
    lock.unlock();
    if (hasChanged)
        Q_EMIT changed();
}

bool InotifyWatch::hearOne(const char *event)
{
    const auto &told = *reinterpret_cast<const inotify_event *>(event);
    if ((told.mask & IN_Q_OVERFLOW) != 0)
        return true;
    const auto found = m_watched.find(told.wd);
    if (found == m_watched.end())
        return false;
    if ((told.mask & IN_IGNORED) != 0) {
        m_watched.erase(found);
        return false;
    }
    // A file is made under another name, and moved into its place once it is whole.
    if ((told.mask & IN_CREATE) != 0 && (told.mask & IN_ISDIR) == 0)
        return false;
    const auto &names = found->second;
    return names.contains(QString()) || names.contains(told.len > 0 ? QFile::decodeName(&told.name[0]) : QString());
}

}  // namespace velquarin
