// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Notifications/NotificationCalls.h"

#include "Platform/Linux/Session/AsyncBus.h"

#include <QCoreApplication>
#include <QDBusError>

namespace velquarin {

namespace {

const QString applicationId = QStringLiteral("io.velquarin.Velquarin");
const QString bus = QStringLiteral("org.freedesktop.DBus");
const QString capabilitiesSignature = QStringLiteral("as");

// What passes "do not disturb".
constexpr uchar criticalUrgency = 2;
constexpr int serverDecidesExpiry = -1;

// The reason ends up in one line of output.
constexpr qsizetype longestReason = 200;

QString plainReason(const QDBusMessage &error)
{
    switch (QDBusError(error).type()) {
    case QDBusError::Disconnected:
        return QStringLiteral("There is no session bus");
    case QDBusError::ServiceUnknown:
        return QStringLiteral("No notification service is running");
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return QStringLiteral("The notification service does not answer");
    default:
        const auto message = error.errorMessage().simplified().left(longestReason);
        return message.isEmpty() ? error.errorName() : message;
    }
}

void throwUnlessItIs(const QDBusMessage &reply, const QString &signature)
{
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw NotificationError(plainReason(reply).toStdString());
    if (reply.signature() != signature)
        throw NotificationError("The notification service gave an answer that makes no sense");
}

QStringList actionsFor(const NotificationServer &server, const NotificationCategory &category)
{
    QStringList actions;
    if (!server.capabilities.contains(QLatin1String("actions")))
        return actions;
    // Elsewhere "default" is the click on the notification itself; this server draws it as one more button.
    if (server.name != QLatin1String("Xfce Notify Daemon"))
        actions << QStringLiteral("default") << QCoreApplication::translate("Reminder", "Open");
    for (const auto &action : category.actions)
        actions << action.identifier << action.title;
    return actions;
}

QVariantMap hintsFor(const NotificationRequest &request)
{
    return {
        {QStringLiteral("urgency"), QVariant::fromValue(criticalUrgency)},
        {QStringLiteral("desktop-entry"), applicationId},
        {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")},
        {QStringLiteral("x-velquarin-request"), request.identifier},
        {QStringLiteral("x-velquarin-category"), request.categoryIdentifier},
    };
}

}  // namespace

QDBusMessage notificationCall(const QString &member, const QVariantList &arguments, const QString &server)
{
    auto call = QDBusMessage::createMethodCall(server, notificationPath, notificationInterface, member);
    call.setArguments(arguments);
    return call;
}

QDBusMessage showing(const NotificationServer &server, const NotificationRequest &request,
                     const NotificationCategory &category)
{
    constexpr uint replacesNone = 0;
    const bool readsMarkup = server.capabilities.contains(QLatin1String("body-markup"));
    const auto body = readsMarkup ? request.body.toHtmlEscaped() : request.body;
    return notificationCall(QStringLiteral("Notify"),
                            {QStringLiteral("Velquarin"), replacesNone, applicationId, request.title, body,
                             actionsFor(server, category), hintsFor(request), serverDecidesExpiry},
                            server.owner);
}

QCoro::Task<QDBusMessage> answerTo(QDBusMessage call, QDBusConnection connection, std::chrono::milliseconds timeout,
                                   QString signature)
{
    auto reply = co_await replyTo(call, connection, timeout);
    throwUnlessItIs(reply, signature);
    co_return reply;
}

// The owner is asked for: newer versions of Qt leave the sender of a reply empty. The first question makes the bus start a
// server where none is.
QCoro::Task<NotificationServer> askNotificationServer(QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const auto nameQuestion = notificationCall(QStringLiteral("GetServerInformation"));
    const auto name = co_await answerTo(nameQuestion, connection, timeout, QStringLiteral("ssss"));
    auto ownerQuestion = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                                        QStringLiteral("GetNameOwner"));
    ownerQuestion.setArguments({notificationInterface});
    const auto owner = co_await answerTo(ownerQuestion, connection, timeout, QStringLiteral("s"));
    NotificationServer server{owner.arguments().constFirst().toString(), name.arguments().constFirst().toString(), {}};
    const auto question = notificationCall(QStringLiteral("GetCapabilities"), {}, server.owner);
    const auto capabilities = co_await answerTo(question, connection, timeout, capabilitiesSignature);
    server.capabilities = capabilities.arguments().constFirst().toStringList();
    co_return server;
}

QCoro::Task<bool> askLeaveToNotify(QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const auto question = notificationCall(QStringLiteral("GetCapabilities"));
    const auto reply = co_await replyTo(question, connection, timeout);
    if (QDBusError(reply).type() == QDBusError::AccessDenied)
        co_return false;
    throwUnlessItIs(reply, capabilitiesSignature);
    co_return true;
}

}  // namespace velquarin
