// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/LaunchAtLogin.h"

#include "Platform/LoginItem.h"

namespace velquarin {

LaunchAtLogin::LaunchAtLogin(LoginItem &item, QObject *parent)
    : QObject(parent)
    , m_item(item)
    , m_isEnabled(item.status() == LoginItemStatus::Enabled)
{
}

void LaunchAtLogin::setIsEnabled(bool isEnabled)
{
    Q_EMIT isEnabledWillChange(isEnabled);
    m_isEnabled = isEnabled;
    updateLaunchAtLogin();
}

void LaunchAtLogin::updateLaunchAtLogin()
{
    const auto outcome = m_isEnabled ? m_item.registerItem() : m_item.unregisterItem();
    if (outcome == LoginItemOutcome::Failed)
        setIsEnabled(m_item.status() == LoginItemStatus::Enabled);
}

}  // namespace velquarin
