// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/NotificationCenter.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantList>

#include <chrono>

namespace velquarin {

inline const QString notificationPath = QStringLiteral("/org/freedesktop/Notifications");
inline const QString notificationInterface = QStringLiteral("org.freedesktop.Notifications");

//! A notification server and what it says of itself.
struct NotificationServer
{
    QString owner;  //!< unique name of its connection to the bus
    QString name;
    QStringList capabilities;
};

//! A call of the notification server of that name: of whichever there is, which the bus starts where none is there, or of
//! the one whose connection has that unique name, an error where it is gone.
[[nodiscard]] QDBusMessage notificationCall(const QString &member, const QVariantList &arguments = {},
                                            const QString &server = notificationInterface);

//! The call that shows a new notification, as this server understands it best. A category without actions leaves the
//! click on the notification itself. Source: Desktop Notifications Specification 1.2; docs/decisions/0003-reminders.md
[[nodiscard]] QDBusMessage showing(const NotificationServer &server, const NotificationRequest &request,
                                   const NotificationCategory &category);

//! The reply to @p call, which has the D-Bus signature @p signature.
//! Errors: NotificationError, a plain sentence, for every other outcome.
[[nodiscard]] QCoro::Task<QDBusMessage> answerTo(QDBusMessage call, QDBusConnection connection,
                                                 std::chrono::milliseconds timeout, QString signature);

//! What the server says of itself, asked anew each time: it may be another one by now. Errors: NotificationError.
[[nodiscard]] QCoro::Task<NotificationServer> askNotificationServer(QDBusConnection connection,
                                                                    std::chrono::milliseconds timeout);

//! True when a server answers, false when it refuses; the bus starts one where none is there. Errors: NotificationError.
[[nodiscard]] QCoro::Task<bool> askLeaveToNotify(QDBusConnection connection, std::chrono::milliseconds timeout);

}  // namespace velquarin
