// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/SessionBus.h"

#include <QFileInfo>

namespace velquarin {

namespace {

// Without an address the library would start a bus of its own beside the session, on which nobody listens.
bool isBusToBeFound()
{
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const auto runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtimeFolder.isEmpty() && QFileInfo::exists(runtimeFolder + QStringLiteral("/bus"));
}

const QString localPath = QStringLiteral("/org/freedesktop/DBus/Local");
const QString localInterface = QStringLiteral("org.freedesktop.DBus.Local");

}  // namespace

SessionBus::SessionBus(QObject *parent)
    : QObject(parent)
{
}

SessionBus::~SessionBus()
{
    if (!m_name.isEmpty())
        QDBusConnection::disconnectFromBus(m_name);
}

QDBusConnection SessionBus::connection()
{
    if (m_name.isEmpty() && isBusToBeFound())
        connectToBus();
    return QDBusConnection(m_name);
}

// The toolkit remembers a failed connection under its name for good, so each attempt has a name of its own.
void SessionBus::connectToBus()
{
    const auto name = QStringLiteral("velquarin-%1").arg(++m_attempts);
    auto connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return;
    }
    m_name = name;
    connection.connect(QString(), localPath, localInterface, QStringLiteral("Disconnected"), this,
                       SLOT(forgetConnection()));
    Q_EMIT connected();
}

void SessionBus::forgetConnection()
{
    QDBusConnection::disconnectFromBus(m_name);
    m_name.clear();
    Q_EMIT disconnected();
}

}  // namespace velquarin
