// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/SessionBus.h"

#include "Platform/Linux/Session/BusProbe.h"

#include <QFile>
#include <QFileInfo>

namespace velquarin {

namespace {

// A bus on the same machine answers within a millisecond or two. At the start of the program nothing runs yet that could
// wait for a slow one; later the user does.
constexpr std::chrono::milliseconds patienceAtFirst(1000);
constexpr std::chrono::milliseconds patienceLater(50);

// Without an address the library would start a bus of its own beside the session, on which nobody listens.
QByteArray busAddress()
{
    auto given = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const auto runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    const auto socket = runtimeFolder + "/bus";
    if (!given.isEmpty() || runtimeFolder.isEmpty() || !QFileInfo::exists(QFile::decodeName(socket)))
        return given;
    return "unix:path=" + socket;
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
    if (m_name.isEmpty() && isBusThere())
        connectToBus();
    return QDBusConnection(m_name);
}

bool SessionBus::isBusThere()
{
    const auto patience = m_looks++ == 0 ? patienceAtFirst : patienceLater;
    const auto address = busAddress();
    return !address.isEmpty() && busAnswers(address, patience);
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
