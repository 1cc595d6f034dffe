// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/HangObserver.h"

#include "Services/Git/GitService.h"

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

HangObserver::HangObserver(const GitService &gitService, Timers &timers, Deliver deliver)
    : m_timers(timers)
    , m_deliver(std::move(deliver))
{
    connect(&gitService, &GitService::repositoryBeingReadChanged, this, &HangObserver::watch);
}

void HangObserver::watch(const std::optional<QString> &path)
{
    m_patience.reset();
    if (std::exchange(m_isDelivered, false))
        m_deliver(std::nullopt);
    if (!path)
        return;
    m_patience = m_timers.after(30s, [this, path] {
        m_isDelivered = true;
        m_deliver(path);
    });
}

}  // namespace velquarin
