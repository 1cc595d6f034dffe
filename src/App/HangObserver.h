// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timers.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace velquarin {

class GitService;

//! Delivers the path of a repository once git has been asked about it for 30 seconds, and nothing when that is over. While
//! git does not run no timer does.
class HangObserver : public QObject
{
    Q_OBJECT
public:
    using Deliver = std::function<void(const std::optional<QString> &path)>;

    HangObserver(const GitService &gitService, Timers &timers, Deliver deliver);

private:
    void watch(const std::optional<QString> &path);

    Timers &m_timers;
    Deliver m_deliver;
    std::unique_ptr<Timer> m_patience;
    bool m_isDelivered = false;
};

}  // namespace velquarin
