// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"

#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace velquarin {

class Clock;
class StreakManager;

//! Hands the figures on as they stand at the end of each refresh, from the first on, and whether another one runs.
class FiguresPublisher : public QObject
{
    Q_OBJECT
public:
    using Publish = std::function<void(const QVariantMap &properties)>;

    //! @p publish takes all properties each time, by the names of io.velquarin.Velquarin1.
    FiguresPublisher(const StreakManager &manager, const Clock &clock, Publish publish);

private:
    void beginRefresh(bool isRefreshing);
    void endRefresh(std::optional<Instant> moment);

    const StreakManager &m_manager;
    const Clock &m_clock;
    Publish m_publish;
    QVariantMap m_properties;
};

}  // namespace velquarin
