// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/LaunchAtLogin.h"

#include "Platform/LoginItem.h"

#include <algorithm>
#include <chrono>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

// The first correction comes at once, for the user is looking. A desktop that refuses that as well is not asked
// again in a hurry.
constexpr Timers::Seconds firstPause = 1s;
constexpr Timers::Seconds longestPause = 60s;

}  // namespace

LaunchAtLogin::LaunchAtLogin(LoginItem &item, Timers &timers, QObject *parent)
    : QObject(parent)
    , m_item(item)
    , m_timers(timers)
    , m_isEnabled(item.status() == LoginItemStatus::Enabled)
{
}

void LaunchAtLogin::setIsEnabled(bool isEnabled)
{
    m_patience = 0s;
    assign(isEnabled);
}

void LaunchAtLogin::assign(bool isEnabled)
{
    Q_EMIT isEnabledWillChange(isEnabled);
    m_isEnabled = isEnabled;
    updateLaunchAtLogin();
}

void LaunchAtLogin::updateLaunchAtLogin()
{
    const auto outcome = m_isEnabled ? m_item.registerItem() : m_item.unregisterItem();
    m_correction = outcome == LoginItemOutcome::Failed ? m_timers.after(m_patience, [this] { correct(); }) : nullptr;
}

// Through a timer and not at once: however long the desktop fails, the stack does not grow and the loop turns.
void LaunchAtLogin::correct()
{
    m_patience = std::clamp(m_patience * 2, firstPause, longestPause);
    assign(m_item.status() == LoginItemStatus::Enabled);
}

}  // namespace velquarin
