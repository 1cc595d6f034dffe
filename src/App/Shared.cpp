// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/Shared.h"

#include "Services/LaunchAtLogin.h"

namespace velquarin {

namespace {

template <typename Service, typename... Arguments>
Service &madeOnce(std::unique_ptr<Service> &service, Arguments &...arguments)
{
    if (!service)
        service = std::make_unique<Service>(arguments...);
    return *service;
}

}  // namespace

Shared::Shared(const Platform &platform)
    : m_platform(platform)
{
}

Shared::~Shared() = default;

GitService &Shared::gitService()
{
    return madeOnce(m_gitService, m_platform.processes, m_platform.files, m_platform.clock);
}

AppSettings &Shared::appSettings()
{
    return madeOnce(m_appSettings, m_platform.preferences);
}

NotificationService &Shared::notificationService()
{
    return madeOnce(m_notificationService, m_platform.notificationCenter, m_platform.preferences, m_platform.clock,
                    m_platform.timers, m_platform.output);
}

LaunchAtLogin &Shared::launchAtLogin()
{
    return madeOnce(m_launchAtLogin, m_platform.loginItem);
}

}  // namespace velquarin
