// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/FiguresPublisher.h"

#include "Console/StreakReport.h"
#include "Platform/Clock.h"
#include "Services/Streak/StreakManager.h"

#include <utility>

namespace velquarin {

namespace {

const QString refreshing = QStringLiteral("Refreshing");
const QString lastRefresh = QStringLiteral("LastRefresh");

}  // namespace

FiguresPublisher::FiguresPublisher(const StreakManager &manager, const Clock &clock, Publish publish)
    : m_manager(manager)
    , m_clock(clock)
    , m_publish(std::move(publish))
{
    connect(&manager, &StreakManager::isRefreshingWillChange, this, &FiguresPublisher::beginRefresh);
    connect(&manager, &StreakManager::lastRefreshWillChange, this, &FiguresPublisher::endRefresh);
}

// Before the first refresh has ended there is nothing to show: a streak of nought would be a lie.
void FiguresPublisher::beginRefresh(bool isRefreshing)
{
    if (!isRefreshing || m_properties.isEmpty())
        return;
    m_properties.insert(refreshing, true);
    m_publish(m_properties);
}

// With this the refresh is over, and all figures stand.
void FiguresPublisher::endRefresh(std::optional<Instant> moment)
{
    m_properties = propertiesOf(reportOf(m_manager, m_clock.calendar()));
    m_properties.insert(refreshing, false);
    if (moment)
        m_properties.insert(lastRefresh, isoMoment(*moment));
    m_publish(m_properties);
}

}  // namespace velquarin
