// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Notifications/FreedesktopNotifications.h"

#include "Platform/Linux/Notifications/NotificationCalls.h"
#include "Platform/Linux/Session/AsyncBus.h"
#include "Platform/Linux/Session/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QPointer>

#include <algorithm>
#include <array>
#include <utility>

namespace velquarin {

namespace {

struct BusSignal
{
    const char *service;
    const char *path;
    const char *interface;
    const char *member;
    const char *argument;  // what the first argument must be, or nothing
    const char *slot;
};

constexpr auto server = "org.freedesktop.Notifications";
constexpr auto serverPath = "/org/freedesktop/Notifications";
constexpr auto bus = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";

// No service is named for the server's signals: the toolkit would look its owner up and block meanwhile. Each
// slot compares the sender instead.
std::array<BusSignal, 4> busSignals()
{
    return {{
        {"", serverPath, server, "ActivationToken", nullptr, SLOT(keepToken(uint, QString, QDBusMessage))},
        {"", serverPath, server, "ActionInvoked", nullptr, SLOT(act(uint, QString, QDBusMessage))},
        {"", serverPath, server, "NotificationClosed", nullptr, SLOT(forgetClosed(uint, uint, QDBusMessage))},
        {bus, busPath, bus, "NameOwnerChanged", server, SLOT(forgetAll())},
    }};
}

QStringList argumentsOf(const BusSignal &signal)
{
    return signal.argument == nullptr ? QStringList() : QStringList(QLatin1String(signal.argument));
}

}  // namespace

class FreedesktopNotifications::UnderWay
{
public:
    UnderWay(FreedesktopNotifications *center, QString requestIdentifier)
        : m_center(center)
        , m_requestIdentifier(std::move(requestIdentifier))
    {
        center->m_underWay.insert(m_requestIdentifier);
    }
    UnderWay(const UnderWay &) = delete;
    UnderWay &operator=(const UnderWay &) = delete;
    ~UnderWay()
    {
        if (!m_center)
            return;
        m_center->m_underWay.remove(m_requestIdentifier);
        m_center->stopListeningIfIdle();
    }

private:
    QPointer<FreedesktopNotifications> m_center;
    QString m_requestIdentifier;
};

FreedesktopNotifications::FreedesktopNotifications(SessionBus &bus, QObject *parent, NotificationPatience patience)
    : NotificationCenter(parent)
    , m_bus(bus)
    , m_patience(patience)
{
    connect(&m_bus, &SessionBus::disconnected, this, [this] {
        m_isListening = false;
        forgetAll();
    });
}

QFuture<AuthorizationStatus> FreedesktopNotifications::authorizationStatus()
{
    return futureOf(askNotificationStatus(m_bus.connection(), m_patience.forQuestions));
}

QFuture<bool> FreedesktopNotifications::requestAuthorization()
{
    return futureOf(askLeaveToNotify(m_bus.connection(), m_patience.forQuestions));
}

void FreedesktopNotifications::setCategories(const QList<NotificationCategory> &categories)
{
    m_categories = categories;
}

QFuture<bool> FreedesktopNotifications::add(const NotificationRequest &request)
{
    return futureOf(show(request));
}

QCoro::Task<bool> FreedesktopNotifications::show(NotificationRequest request)
{
    const QPointer<FreedesktopNotifications> self(this);
    const UnderWay underWay(this, request.identifier);
    const auto knownServer = co_await askNotificationServer(m_bus.connection(), m_patience.forQuestions);
    if (!self)
        throw NotificationError("The program is ending");
    const auto reply = co_await notify(knownServer, request);
    if (!self)
        throw NotificationError("The program is ending");
    keep(request, knownServer.owner, reply.arguments().constFirst().toUInt());
    co_return true;
}

// Said to the connection that answered: the signals of what it shows come from there.
QCoro::Task<QDBusMessage> FreedesktopNotifications::notify(const NotificationServer &knownServer,
                                                           const NotificationRequest &request)
{
    listen();
    const auto replaced = sameKind(request);
    const auto replacesId = replaced == m_shown.end() ? 0U : replaced->id;
    auto call = notificationCall(QStringLiteral("Notify"), knownServer.owner);
    call.setArguments(notifyArguments(knownServer, request, categoryOf(request), replacesId));
    return answerTo(call, m_bus.connection(), m_patience.forShowing, QStringLiteral("u"));
}

void FreedesktopNotifications::keep(const NotificationRequest &request, const QString &server, uint id)
{
    const auto replaced = sameKind(request);
    if (replaced != m_shown.end())
        m_shown.erase(replaced);
    m_shown.push_back({request.identifier, categoryOf(request), server, id, QString()});
    const bool wasWithdrawnMeanwhile = !m_underWay.contains(request.identifier);
    if (wasWithdrawnMeanwhile)
        close(std::prev(m_shown.end()));
}

void FreedesktopNotifications::withdraw(const QString &requestIdentifier)
{
    m_underWay.remove(requestIdentifier);
    const auto shown = std::find_if(m_shown.begin(), m_shown.end(), [&](const Shown &candidate) {
        return candidate.requestIdentifier == requestIdentifier;
    });
    if (shown != m_shown.end())
        close(shown);
}

void FreedesktopNotifications::withdrawAll(std::chrono::milliseconds patience)
{
    for (const auto &shown : m_shown)
        m_bus.connection().call(closingOf(shown), QDBus::Block, int(patience.count()));
    forgetAll();
}

NotificationCategory FreedesktopNotifications::categoryOf(const NotificationRequest &request) const
{
    const auto found =
        std::find_if(m_categories.begin(), m_categories.end(), [&](const NotificationCategory &category) {
            return category.identifier == request.categoryIdentifier;
        });
    return found == m_categories.end() ? NotificationCategory{request.categoryIdentifier, {}} : *found;
}

FreedesktopNotifications::Position FreedesktopNotifications::sameKind(const NotificationRequest &request)
{
    return std::find_if(m_shown.begin(), m_shown.end(), [&](const Shown &shown) {
        const auto &category = request.categoryIdentifier;
        return shown.requestIdentifier == request.identifier ||
               (!category.isEmpty() && shown.category.identifier == category);
    });
}

FreedesktopNotifications::Position FreedesktopNotifications::find(uint id, const QString &server)
{
    return std::find_if(m_shown.begin(), m_shown.end(),
                        [&](const Shown &shown) { return shown.id == id && shown.server == server; });
}

// Said to the connection that showed it: a server that came later numbers its notifications anew.
QDBusMessage FreedesktopNotifications::closingOf(const Shown &shown)
{
    auto call = QDBusMessage::createMethodCall(shown.server, QLatin1String(serverPath), QLatin1String(server),
                                               QStringLiteral("CloseNotification"));
    call.setArguments({shown.id});
    call.setAutoStartService(false);
    return call;
}

void FreedesktopNotifications::close(Position shown)
{
    m_bus.connection().send(closingOf(*shown));
    m_shown.erase(shown);
    stopListeningIfIdle();
}

// Only while it matters: some servers tell everybody about everybody's notifications, which would wake us.
void FreedesktopNotifications::listen()
{
    if (m_isListening)
        return;
    auto connection = m_bus.connection();
    m_isListening = connection.isConnected();
    for (const auto &signal : busSignals()) {
        connection.connect(QLatin1String(signal.service), QLatin1String(signal.path), QLatin1String(signal.interface),
                           QLatin1String(signal.member), argumentsOf(signal), QString(), this, signal.slot);
    }
}

void FreedesktopNotifications::stopListeningIfIdle()
{
    if (!m_isListening || !m_shown.empty() || !m_underWay.isEmpty())
        return;
    m_isListening = false;
    auto connection = m_bus.connection();
    for (const auto &signal : busSignals()) {
        connection.disconnect(QLatin1String(signal.service), QLatin1String(signal.path),
                              QLatin1String(signal.interface), QLatin1String(signal.member), argumentsOf(signal),
                              QString(), this, signal.slot);
    }
}

void FreedesktopNotifications::forgetAll()
{
    m_shown.clear();
    stopListeningIfIdle();
}

void FreedesktopNotifications::keepToken(uint id, const QString &token, const QDBusMessage &signal)
{
    const auto shown = find(id, signal.service());
    if (shown != m_shown.end())
        shown->activationToken = token;
}

// Some servers say everything twice; the second time there is nothing left to act on.
void FreedesktopNotifications::act(uint id, const QString &actionKey, const QDBusMessage &signal)
{
    const auto shown = find(id, signal.service());
    if (shown == m_shown.end())
        return;
    const auto &actions = shown->category.actions;
    const bool opens = actionKey == QLatin1String("default") ||
                       std::any_of(actions.begin(), actions.end(), [&](const NotificationAction &action) {
                           return action.identifier == actionKey && action.bringsToForeground;
                       });
    const auto token = shown->activationToken;
    close(shown);
    if (opens)
        Q_EMIT openRequested(token);
}

void FreedesktopNotifications::forgetClosed(uint id, uint /*reason*/, const QDBusMessage &signal)
{
    const auto shown = find(id, signal.service());
    if (shown != m_shown.end())
        m_shown.erase(shown);
    stopListeningIfIdle();
}

}  // namespace velquarin
