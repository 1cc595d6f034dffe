// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Notifications/NotifyArguments.h"

#include <QCoreApplication>

namespace velquarin {

namespace {

const QString applicationId = QStringLiteral("io.velquarin.Velquarin");
constexpr uchar normalUrgency = 1;
constexpr uchar criticalUrgency = 2;
constexpr int serverDecidesExpiry = -1;

QString bodyFor(const NotificationServer &server, const QString &plainText)
{
    return server.capabilities.contains(QLatin1String("body-markup")) ? plainText.toHtmlEscaped() : plainText;
}

// Elsewhere "default" is the click on the notification itself; this server draws it as one more button.
bool drawsDefaultAsButton(const NotificationServer &server)
{
    return server.name == QLatin1String("Xfce Notify Daemon");
}

QStringList actionsFor(const NotificationServer &server, const NotificationCategory &category)
{
    QStringList actions;
    if (!server.capabilities.contains(QLatin1String("actions")))
        return actions;
    if (!drawsDefaultAsButton(server))
        actions << QStringLiteral("default") << QCoreApplication::translate("Reminder", "Open");
    for (const auto &action : category.actions)
        actions << action.identifier << action.title;
    return actions;
}

QVariantMap hintsFor(const NotificationRequest &request)
{
    QVariantMap hints{
        {QStringLiteral("urgency"), QVariant::fromValue(request.isTimeSensitive ? criticalUrgency : normalUrgency)},
        {QStringLiteral("desktop-entry"), applicationId},
        {QStringLiteral("x-velquarin-request"), request.identifier},
        {QStringLiteral("x-velquarin-category"), request.categoryIdentifier},
    };
    if (request.hasDefaultSound)
        hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
    return hints;
}

}  // namespace

QVariantList notifyArguments(const NotificationServer &server, const NotificationRequest &request,
                             const NotificationCategory &category, quint32 replacesId)
{
    return {
        QStringLiteral("Velquarin"),
        replacesId,
        applicationId,
        request.title,
        bodyFor(server, request.body),
        actionsFor(server, category),
        hintsFor(request),
        serverDecidesExpiry,
    };
}

}  // namespace velquarin
