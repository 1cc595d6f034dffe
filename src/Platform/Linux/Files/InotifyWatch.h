// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/RepositoryWatch.h"

#include <QSet>
#include <QSocketNotifier>

#include <map>
#include <mutex>
#include <optional>

namespace velquarin {

//! One instance of the kernel's watch, with one watch a folder. Where the kernel has no more of them, says so once on
//! standard error and goes on with those it has.
//! Source: inotify(7)
class InotifyWatch : public RepositoryWatch
{
    Q_OBJECT
public:
    InotifyWatch();
    ~InotifyWatch() override;

    bool watch(const QList<WatchPlace> &places) override;

private:
    using Names = QSet<QString>;

    [[nodiscard]] std::map<int, Names> added(const QList<WatchPlace> &places);
    void sayThatItIsFull(const QString &folder);
    void hear();
    [[nodiscard]] bool hearOne(const char *event);

    int m_descriptor;
    std::optional<QSocketNotifier> m_notifier;
    std::mutex m_mutex;
    std::map<int, Names> m_watched;  // guarded by m_mutex: by the kernel's number of the watch
    bool m_hasSaidSo = false;        // of whoever calls watch()
};

}  // namespace velquarin
