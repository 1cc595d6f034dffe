// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Notifications/FreedesktopNotifications.h"

#include "Platform/Linux/Notifications/NotificationCalls.h"
#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/WhileAlive.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>

namespace velquarin {

namespace {

// Said to the connection that showed it: a server that came later numbers its notifications anew.
QDBusMessage closing(const QString &server, uint id)
{
    auto call = notificationCall(QStringLiteral("CloseNotification"), {id}, server);
    call.setAutoStartService(false);
    return call;
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
    const auto server =
        co_await whileAlive(this, askNotificationServer(m_bus.connection(), m_patience.forQuestions));
    listen();
    try {
        const auto call = showing(server, request, m_category);
        const auto answer = co_await whileAlive(
            this, answerTo(call, m_bus.connection(), m_patience.forShowing, QStringLiteral("u")));
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
