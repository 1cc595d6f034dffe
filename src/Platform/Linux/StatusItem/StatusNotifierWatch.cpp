// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusNotifierWatch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

// Longer than any bar takes to start.
constexpr auto patienceForViewer = 2s;

// An error's text would otherwise pass for the result.
template <typename Value>
Value resultOf(const QDBusPendingCall &call)
{
    const QDBusPendingReply<Value> reply(call);
    return reply.isError() ? Value() : reply.value();
}

}  // namespace

StatusNotifierWatch::StatusNotifierWatch(QDBusConnection connection, QObject *parent)
    : QObject(parent)
    , m_connection(std::move(connection))
    , m_names(watcherName, m_connection, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_names, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) { ownerChanged(owner); });
    // A signal that named its sender would make the connection ask the bus for it, and wait.
    m_connection.connect({}, watcherPath, watcherName, QStringLiteral("StatusNotifierHostRegistered"), this,
                         SLOT(viewerCame(QDBusMessage)));
    m_connection.connect({}, watcherPath, watcherName, QStringLiteral("StatusNotifierHostUnregistered"), this,
                         SLOT(viewerWent(QDBusMessage)));
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceForViewer);
    connect(&m_patience, &QTimer::timeout, this, [this] { tell(false); });
    askForOwner();
}

// An answer that comes after the watcher has changed is dropped.
void StatusNotifierWatch::ask(const QDBusMessage &question, const std::function<void(const QDBusPendingCall &)> &take)
{
    auto *reply = new QDBusPendingCallWatcher(m_connection.asyncCall(question), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, take, asked = m_generation] {
        reply->deleteLater();
        if (asked == m_generation)
            take(*reply);
    });
}

void StatusNotifierWatch::askBus(const QString &method, const QString &name,
                                 const std::function<void(const QDBusPendingCall &)> &take)
{
    const auto bus = QStringLiteral("org.freedesktop.DBus");
    auto call = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
    call.setArguments({name});
    ask(call, take);
}

void StatusNotifierWatch::askForOwner()
{
    askBus(QStringLiteral("GetNameOwner"), watcherName,
           [this](const auto &answer) { ownerChanged(resultOf<QString>(answer)); });
}

void StatusNotifierWatch::ownerChanged(const QString &owner)
{
    ++m_generation;
    m_owner = owner;
    m_host.reset();
    m_hasViewer = false;
    m_isShown.reset();
    m_patience.stop();
    if (owner.isEmpty())
        Q_EMIT absent();
    else
        askForProcess(owner);
}

void StatusNotifierWatch::askForProcess(const QString &owner)
{
    askBus(QStringLiteral("GetConnectionUnixProcessID"), owner,
           [this](const auto &answer) { takeProcess(resultOf<uint>(answer)); });
}

void StatusNotifierWatch::takeProcess(uint processId)
{
    m_host = statusHostOfProcess(processId);
    if (m_hasViewer) {
        tell(true);
        return;
    }
    m_patience.start();
    askForViewer();
}

// Whoever cannot answer is taken for one that shows items.
void StatusNotifierWatch::askForViewer()
{
    auto call = QDBusMessage::createMethodCall(m_owner, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                               QStringLiteral("Get"));
    call.setArguments({watcherName, QStringLiteral("IsStatusNotifierHostRegistered")});
    ask(call, [this](const auto &answer) {
        m_answers = !answer.isError();
        const bool isShown = !m_answers || resultOf<QDBusVariant>(answer).variant().toBool();
        if (isShown || !m_patience.isActive())
            tell(isShown);
    });
}

// GNOME's says so in the moment in which it takes its name, before we know that it is GNOME's.
// Budgie's has its name before it answers to it: what it was told until then is lost.
void StatusNotifierWatch::viewerCame(const QDBusMessage &signal)
{
    if (signal.service() != m_owner)
        return;
    m_hasViewer = true;
    if (!std::exchange(m_answers, true))
        m_isShown.reset();
    if (m_host)
        tell(true);
}

// There may be others.
void StatusNotifierWatch::viewerWent(const QDBusMessage &signal)
{
    if (signal.service() == m_owner && m_isShown)
        askForViewer();
}

void StatusNotifierWatch::tell(bool isShown)
{
    m_patience.stop();
    const auto told = std::exchange(m_isShown, isShown);
    if (!told)
        Q_EMIT appeared(*m_host, isShown);
    else if (told != isShown)
        Q_EMIT shownChanged(isShown);
}

}  // namespace velquarin
