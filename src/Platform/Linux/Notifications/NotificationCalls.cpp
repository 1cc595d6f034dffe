// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Notifications/NotificationCalls.h"

#include "Platform/Linux/Session/AsyncBus.h"

#include <QDBusError>

namespace velquarin {

namespace {

const QString serverName = QStringLiteral("org.freedesktop.Notifications");
const QString serverPath = QStringLiteral("/org/freedesktop/Notifications");
const QString capabilitiesQuestion = QStringLiteral("GetCapabilities");
const QString nameSignature = QStringLiteral("ssss");
const QString ownerSignature = QStringLiteral("s");
const QString capabilitiesSignature = QStringLiteral("as");

// The reason ends up in one line of output.
constexpr qsizetype longestReason = 200;

bool saysThatNobodyIsThere(const QDBusMessage &error)
{
    const auto type = QDBusError(error).type();
    return type == QDBusError::ServiceUnknown || type == QDBusError::Disconnected ||
           error.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
}

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

QDBusMessage ownerQuestion()
{
    const auto bus = QStringLiteral("org.freedesktop.DBus");
    auto call = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                               QStringLiteral("GetNameOwner"));
    call.setArguments({serverName});
    return call;
}

[[noreturn]] void fail(const QString &reason)
{
    throw NotificationError(reason.toStdString());
}

bool isRefusal(const QDBusMessage &reply)
{
    return QDBusError(reply).type() == QDBusError::AccessDenied;
}

void throwUnlessItIs(const QDBusMessage &reply, const QString &signature)
{
    if (reply.type() != QDBusMessage::ReplyMessage)
        fail(plainReason(reply));
    if (reply.signature() != signature)
        fail(QStringLiteral("The notification service gave an answer that makes no sense"));
}

}  // namespace

QDBusMessage notificationCall(const QString &member)
{
    return notificationCall(member, serverName);
}

QDBusMessage notificationCall(const QString &member, const QString &owner)
{
    return QDBusMessage::createMethodCall(owner, serverPath, serverName, member);
}

QCoro::Task<QDBusMessage> answerTo(QDBusMessage call, QDBusConnection connection, std::chrono::milliseconds timeout,
                                   QString signature)
{
    auto reply = co_await replyTo(call, connection, timeout);
    throwUnlessItIs(reply, signature);
    co_return reply;
}

// The owner is asked for: newer versions of the toolkit leave the sender of a reply empty. The first question makes the bus
// start a server where none is.
QCoro::Task<NotificationServer> askNotificationServer(QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const auto nameQuestion = notificationCall(QStringLiteral("GetServerInformation"));
    const auto name = co_await answerTo(nameQuestion, connection, timeout, nameSignature);
    const auto owner = co_await answerTo(ownerQuestion(), connection, timeout, ownerSignature);
    NotificationServer server;
    server.name = name.arguments().constFirst().toString();
    server.owner = owner.arguments().constFirst().toString();
    const auto question = notificationCall(capabilitiesQuestion, server.owner);
    const auto capabilities = co_await answerTo(question, connection, timeout, capabilitiesSignature);
    server.capabilities = capabilities.arguments().constFirst().toStringList();
    co_return server;
}

QCoro::Task<AuthorizationStatus> askNotificationStatus(QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const auto question = notificationCall(capabilitiesQuestion);
    const auto reply = co_await replyTo(question, connection, timeout);
    if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == capabilitiesSignature)
        co_return AuthorizationStatus::Authorized;
    co_return saysThatNobodyIsThere(reply) ? AuthorizationStatus::NotDetermined : AuthorizationStatus::Denied;
}

QCoro::Task<bool> askLeaveToNotify(QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const auto question = notificationCall(capabilitiesQuestion);
    const auto reply = co_await replyTo(question, connection, timeout);
    if (isRefusal(reply))
        co_return false;
    throwUnlessItIs(reply, capabilitiesSignature);
    co_return true;
}

}  // namespace velquarin
