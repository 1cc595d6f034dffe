// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/NotificationCenter.h"

#include <QStringList>
#include <QVariantList>

namespace velquarin {

//! A notification server and what it says of itself.
struct NotificationServer
{
    QString owner;  //!< unique name of its connection to the bus
    QString name;
    QStringList capabilities;
    friend bool operator==(const NotificationServer &, const NotificationServer &) = default;
};

//! The arguments of org.freedesktop.Notifications.Notify, as this server understands them best.
//! Shape: the eight arguments in order. @p replacesId is 0 for a new notification. A category without actions
//! leaves the click on the notification itself. Source: Desktop Notifications Specification 1.2;
//! docs/decisions/0003-reminders.md
[[nodiscard]] QVariantList notifyArguments(const NotificationServer &server, const NotificationRequest &request,
                                           const NotificationCategory &category, quint32 replacesId);

}  // namespace velquarin
