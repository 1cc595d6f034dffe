// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Notifications/FreedesktopNotifications.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/WhileAlive.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>

#include <algorithm>
#include <utility>

namespace velquarin {

namespace {

const QString notificationPath = QStringLiteral("/org/freedesktop/Notifications");
const QString notificationInterface = QStringLiteral("org.freedesktop.Notifications");

const QString applicationId = QStringLiteral("io.velquarin.Velquarin");
const QString busName = QStringLiteral("org.freedesktop.DBus");
const QString capabilitiesSignature = QStringLiteral("as");

// What passes "do not disturb".
constexpr uchar criticalUrgency = 2;
constexpr int serverDecidesExpiry = -1;

// The reason ends up in one line of output.
constexpr qsizetype longestReason = 200;

// A server and what it says of itself.
struct NotificationServer
{
    QString owner;  // unique name of its connection to the bus
    QString name;
    QStringList capabilities;
};

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

// A call of the server of that name: of whichever there is, which the bus starts where none is there, or of the one whose
// connection has that unique name, an error where it is gone.
QDBusMessage notificationCall(const QString &member, const QVariantList &arguments = {},
                              const QString &server = notificationInterface)
{
    auto call = QDBusMessage::createMethodCall(server, notificationPath, notificationInterface, member);
    call.setArguments(arguments);
    return call;
}

// Said to the connection that showed it: a server that came later numbers its notifications anew.
QDBusMessage closing(const QString &server, uint id)
{
    auto call = notificationCall(QStringLiteral("CloseNotification"), {id}, server);
    call.setAutoStartService(false);
    return call;
}

// As this server understands it best. A category without actions leaves the click on the notification itself.
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

// Throws a plain sentence for every outcome but a reply with that D-Bus signature.
QCoro::Task<QDBusMessage> answerTo(QDBusMessage call, QDBusConnection connection, std::chrono::milliseconds timeout,
                                   QString signature)
{
    auto reply = co_await replyTo(call, connection, timeout);
    throwUnlessItIs(reply, signature);
    co_return reply;
}

// Asked anew each time: it may be another server by now. Its owner is asked for, since newer versions of Qt leave the sender
// of a reply empty. The first question makes the bus start a server where none is.
QCoro::Task<NotificationServer> askNotificationServer(QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const auto nameQuestion = notificationCall(QStringLiteral("GetServerInformation"));
    const auto name = co_await answerTo(nameQuestion, connection, timeout, QStringLiteral("ssss"));
    auto ownerQuestion = QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"), busName,
                                                        QStringLiteral("GetNameOwner"));
    ownerQuestion.setArguments({notificationInterface});
    const auto owner = co_await answerTo(ownerQuestion, connection, timeout, QStringLiteral("s"));
    NotificationServer server{owner.arguments().constFirst().toString(), name.arguments().constFirst().toString(), {}};
    const auto question = notificationCall(QStringLiteral("GetCapabilities"), {}, server.owner);
    const auto capabilities = co_await answerTo(question, connection, timeout, capabilitiesSignature);
    server.capabilities = capabilities.arguments().constFirst().toStringList();
    co_return server;
}

// False where a server refuses.
QCoro::Task<bool> askLeaveToNotify(QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const auto question = notificationCall(QStringLiteral("GetCapabilities"));
    const auto reply = co_await replyTo(question, connection, timeout);
    if (QDBusError(reply).type() == QDBusError::AccessDenied)
        co_return false;
    throwUnlessItIs(reply, capabilitiesSignature);
    co_return true;
}

}  // namespace

FreedesktopNotifications::FreedesktopNotifications(SessionBus &bus, NotificationPatience patience)
    : m_bus(bus)
    , m_patience(patience)
{
    connect(&m_bus, &SessionBus::disconnected, this, [this] { m_shown.reset(); });
}

QCoro::Task<bool> FreedesktopNotifications::isAuthorized()
{
    try {
        co_return co_await requestAuthorization();
    } catch (const NotificationError &) {
        co_return false;
    }
}

QCoro::Task<bool> FreedesktopNotifications::requestAuthorization()
{
    return askLeaveToNotify(m_bus.connection(), m_patience.forQuestions);
}

// Said to the connection that answered the questions: the signals of what it shows come from there.
QCoro::Task<> FreedesktopNotifications::add(NotificationRequest request)
{
    withdraw();
    auto question = askNotificationServer(m_bus.connection(), m_patience.forQuestions);
    const auto server = co_await whileAlive(this, std::move(question));
    listen();
    try {
        const auto call = showing(server, request, m_category);
        auto shown = answerTo(call, m_bus.connection(), m_patience.forShowing, QStringLiteral("u"));
        const auto answer = co_await whileAlive(this, std::move(shown));
        m_shown = Shown{server.owner, answer.arguments().constFirst().toUInt(), {}};
    } catch (const NotificationError &) {
        stopListening();
        throw;
    }
}

void FreedesktopNotifications::withdraw()
{
    if (!m_shown)
        return;
    m_bus.connection().send(closing(m_shown->server, m_shown->id));
    m_shown.reset();
    stopListening();
}

void FreedesktopNotifications::withdrawAndWait(std::chrono::milliseconds patience)
{
    if (m_shown)
        m_bus.connection().call(closing(m_shown->server, m_shown->id), QDBus::Block, int(patience.count()));
    m_shown.reset();
}

// Only while it matters: some servers tell everybody about everybody's notifications, which would wake us. No service is
// named: Qt would look its owner up and block meanwhile.
void FreedesktopNotifications::listen()
{
    m_bus.connection().connect(QString(), notificationPath, notificationInterface, QString(), this,
                               SLOT(hear(QDBusMessage)));
}

void FreedesktopNotifications::stopListening()
{
    m_bus.connection().disconnect(QString(), notificationPath, notificationInterface, QString(), this,
                                  SLOT(hear(QDBusMessage)));
}

void FreedesktopNotifications::hear(const QDBusMessage &signal)
{
    const auto arguments = signal.arguments();
    if (!m_shown || m_shown->server != signal.service() || m_shown->id != arguments.value(0).toUInt())
        return;
    const auto text = arguments.value(1).toString();
    if (signal.member() == QLatin1String("ActivationToken")) {
        m_shown->activationToken = text;
    } else if (signal.member() == QLatin1String("ActionInvoked")) {
        act(text);
    } else if (signal.member() == QLatin1String("NotificationClosed")) {
        m_shown.reset();
        stopListening();
    }
}

// Some servers say everything twice; the second time there is nothing left to act on.
void FreedesktopNotifications::act(const QString &actionKey)
{
    const auto &actions = m_category.actions;
    const bool opens = actionKey == QLatin1String("default") ||
                       std::any_of(actions.begin(), actions.end(), [&](const NotificationAction &action) {
                           return action.identifier == actionKey && action.bringsToForeground;
                       });
    const auto token = m_shown->activationToken;
    withdraw();
    if (opens)
        Q_EMIT openRequested(token);
}

}  // namespace velquarin
