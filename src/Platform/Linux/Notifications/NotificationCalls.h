// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Notifications/NotifyArguments.h"
#include "Platform/NotificationCenter.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>

#include <chrono>

namespace velquarin {

//! A call of the notification server that still lacks its arguments. The bus starts a server for it where none
//! is there.
[[nodiscard]] QDBusMessage notificationCall(const QString &member);

//! The same, of the one server whose connection is @p owner: an error where it is gone.
[[nodiscard]] QDBusMessage notificationCall(const QString &member, const QString &owner);

//! The reply to @p call, which has the D-Bus signature @p signature.
//! Errors: NotificationError, a plain sentence, for every other outcome.
[[nodiscard]] QCoro::Task<QDBusMessage> answerTo(QDBusMessage call, QDBusConnection connection,
                                                 std::chrono::milliseconds timeout, QString signature);

//! What the server says of itself, asked anew each time: it may be another one by now. Errors: NotificationError.
[[nodiscard]] QCoro::Task<NotificationServer> askNotificationServer(QDBusConnection connection,
                                                                    std::chrono::milliseconds timeout);

//! Whether a server answers; the bus starts one where none is there. Never fails.
[[nodiscard]] QCoro::Task<AuthorizationStatus> askNotificationStatus(QDBusConnection connection,
                                                                     std::chrono::milliseconds timeout);

//! True when a server answers, false when it refuses; the bus starts one where none is there. Errors: NotificationError.
[[nodiscard]] QCoro::Task<bool> askLeaveToNotify(QDBusConnection connection, std::chrono::milliseconds timeout);

}  // namespace velquarin
