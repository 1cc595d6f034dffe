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

class StreakManager;

//! Delivers the path of a repository once git has kept a refresh waiting there for 30 seconds, and nothing when that is
//! over. While no repository is read no timer runs.
class HangObserver : public QObject
{
    Q_OBJECT
public:
    using Deliver = std::function<void(const std::optional<QString> &path)>;

    HangObserver(const StreakManager &manager, Timers &timers, Deliver deliver);

private:
    void watch(const std::optional<QString> &path);

    Timers &m_timers;
    Deliver m_deliver;
    std::unique_ptr<Timer> m_patience;
    bool m_isDelivered = false;
};

}  // namespace velquarin
