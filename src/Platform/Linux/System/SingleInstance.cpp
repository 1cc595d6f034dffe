// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/SingleInstance.h"

#include "Platform/Linux/System/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace velquarin {

namespace {

const QString name = QStringLiteral("io.velquarin.Velquarin");
const QString path = QStringLiteral("/io/velquarin/Velquarin");
const QString interface = QStringLiteral("org.freedesktop.Application");

constexpr int patienceMilliseconds = 5000;

QString tokenIn(const QVariantMap &platformData)
{
    const auto token = platformData.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString() : token;
}

QVariantMap ownPlatformData()
{
    QVariantMap data;
    if (qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"))
        data.insert(QStringLiteral("activation-token"), qEnvironmentVariable("XDG_ACTIVATION_TOKEN"));
    if (qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"))
        data.insert(QStringLiteral("desktop-startup-id"), qEnvironmentVariable("DESKTOP_STARTUP_ID"));
    return data;
}

void askFirstToShowItself(const QDBusConnection &connection)
{
    auto message = QDBusMessage::createMethodCall(name, path, interface, QStringLiteral("Activate"));
    message << ownPlatformData();
    connection.call(message, QDBus::Block, patienceMilliseconds);
}

bool takeName(const QDBusConnection &connection)
{
    const auto reply = connection.interface()->registerService(name, QDBusConnectionInterface::DontQueueService,
                                                               QDBusConnectionInterface::DontAllowReplacement);
    // A bus that does not answer has no first instance either.
    return !reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

QString lockPath()
{
    const auto runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtimeFolder.isEmpty())
        return runtimeFolder + QStringLiteral("/velquarin.lock");
    return QDir::tempPath() + QStringLiteral("/velquarin-%1.lock").arg(getuid());
}

}  // namespace

SingleInstance::SingleInstance(SessionBus &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    auto application = std::make_unique<ApplicationObject>();
    connect(application.get(), &ApplicationObject::activated, this, &SingleInstance::showRequested);
    m_application = std::move(application);
}

SingleInstance::~SingleInstance()
{
    if (m_lock >= 0)
        close(m_lock);
}

SingleInstance::Role SingleInstance::settle()
{
    const auto role = m_bus.connection().isConnected() ? settleOnBus() : settleByLock();
    if (role == Role::First)
        connect(&m_bus, &SessionBus::connected, this, &SingleInstance::takeNameAgain);
    return role;
}

// The object is there before the name is ours: whoever sees the name may call at once.
SingleInstance::Role SingleInstance::settleOnBus()
{
    exportObject();
    const auto connection = m_bus.connection();
    if (takeName(connection))
        return Role::First;
    askFirstToShowItself(connection);
    return Role::Second;
}

// The kernel drops the lock with the process, however it ends: no stale lock can keep the program from starting.
SingleInstance::Role SingleInstance::settleByLock()
{
    const auto file = QFile::encodeName(lockPath());
    m_lock = open(file.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    const bool isHeldByOther = m_lock >= 0 && flock(m_lock, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    return isHeldByOther ? Role::Second : Role::First;
}

void SingleInstance::exportObject()
{
    m_bus.connection().registerObject(path, m_application.get(), QDBusConnection::ExportAllSlots);
}

// A bus that came back knows nothing of us. Should another instance have come first there, both go on: ending now would
// take the item from under the user's eyes.
void SingleInstance::takeNameAgain()
{
    exportObject();
    auto message =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    constexpr uint doNotQueue = 4;
    message << name << doNotQueue;
    m_bus.connection().asyncCall(message);
}

void ApplicationObject::Activate(const QVariantMap &platformData)
{
    Q_EMIT activated(tokenIn(platformData));
}

// There is nothing to open: a file given to the program shows the dashboard like a bare start.
void ApplicationObject::Open(const QStringList & /*uris*/, const QVariantMap &platformData)
{
    Activate(platformData);
}

void ApplicationObject::ActivateAction(const QString & /*action*/, const QVariantList & /*parameter*/,
                                       const QVariantMap &platformData)
{
    Activate(platformData);
}

}  // namespace velquarin
