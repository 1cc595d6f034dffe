// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Desktop/StatusNotifierWatch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace velquarin {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");

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
    askForOwner();
}

QDBusMessage StatusNotifierWatch::askBus(const QString &method, const QString &name) const
{
    const auto bus = QStringLiteral("org.freedesktop.DBus");
    auto call = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
    call.setArguments({name});
    return call;
}

void StatusNotifierWatch::askForOwner()
{
    auto *reply =
        new QDBusPendingCallWatcher(m_connection.asyncCall(askBus(QStringLiteral("GetNameOwner"), watcherName)), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, asked = m_generation] {
        reply->deleteLater();
        if (asked == m_generation)
            ownerChanged(resultOf<QString>(*reply));
    });
}

void StatusNotifierWatch::ownerChanged(const QString &owner)
{
    ++m_generation;
    if (owner.isEmpty())
        Q_EMIT absent();
    else
        askForProcess(owner);
}

void StatusNotifierWatch::askForProcess(const QString &owner)
{
    auto *reply = new QDBusPendingCallWatcher(
        m_connection.asyncCall(askBus(QStringLiteral("GetConnectionUnixProcessID"), owner)), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, asked = m_generation] {
        reply->deleteLater();
        if (asked == m_generation)
            Q_EMIT appeared(statusHostOfProcess(resultOf<uint>(*reply)));
    });
}

}  // namespace velquarin
