// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/SingleInstance.h"

#include "Platform/Linux/Session/ProgramObject.h"
#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/PathNames.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velquarin {

namespace {

QString take(const char *variable)
{
    auto value = qEnvironmentVariable(variable);
    qunsetenv(variable);
    return value;
}

const QString interface = QStringLiteral("org.freedesktop.Application");

constexpr int patienceMilliseconds = 5000;

QVariantMap platformData(const LaunchTokens &tokens)
{
    QVariantMap data;
    if (!tokens.activationToken.isEmpty())
        data.insert(QStringLiteral("activation-token"), tokens.activationToken);
    if (!tokens.startupId.isEmpty())
        data.insert(QStringLiteral("desktop-startup-id"), tokens.startupId);
    return data;
}

void askFirstToShowItself(const QDBusConnection &connection, const LaunchTokens &tokens)
{
    auto message = QDBusMessage::createMethodCall(ProgramName::service(), ProgramName::path(), interface,
                                                  QStringLiteral("Activate"));
    message << platformData(tokens);
    connection.call(message, QDBus::Block, patienceMilliseconds);
}

bool takeName(const QDBusConnection &connection)
{
    const auto reply =
        connection.interface()->registerService(ProgramName::service(), QDBusConnectionInterface::DontQueueService,
                                                QDBusConnectionInterface::DontAllowReplacement);
    // A bus that does not answer has no first instance either.
    return !reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

// One for each display: sessions of the same user side by side have a program each.
QString lockPath()
{
    const auto runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const auto folder = runtimeFolder.isEmpty() ? QDir::tempPath() : runtimeFolder;
    auto display = qEnvironmentVariable("WAYLAND_DISPLAY") + qEnvironmentVariable("DISPLAY");
    display.replace(QLatin1Char('/'), QLatin1Char('_'));
    return joinPath(folder, QStringLiteral("velquarin-%1-%2.lock").arg(getuid()).arg(display));
}

// In a folder that everybody may write to, somebody else could make the file, lock it and keep us from starting.
bool isOurs(int file)
{
    struct stat status = {};
    return file >= 0 && fstat(file, &status) == 0 && status.st_uid == getuid();
}

}  // namespace

LaunchTokens takeLaunchTokens()
{
    return {.activationToken = take("XDG_ACTIVATION_TOKEN"), .startupId = take("DESKTOP_STARTUP_ID")};
}

SingleInstance::SingleInstance(SessionBus &bus, LaunchTokens tokens, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_tokens(std::move(tokens))
{
}

SingleInstance::~SingleInstance()
{
    if (m_lock >= 0)
        close(m_lock);
}

SingleInstance::Role SingleInstance::settle()
{
    const bool isLockFree = takeLock();
    const bool isNameFree = !m_bus.connection().isConnected() || takeNameOnBus();
    if (!isNameFree || !isLockFree)
        return Role::Second;
    connect(&m_bus, &SessionBus::connected, this, &SingleInstance::takeNameAgain);
    return Role::First;
}

// The object is there before the name is ours: whoever sees the name may call at once.
bool SingleInstance::takeNameOnBus()
{
    exportObject();
    const auto connection = m_bus.connection();
    if (takeName(connection))
        return true;
    askFirstToShowItself(connection, m_tokens);
    return false;
}

// The kernel drops the lock with the process, however it ends: no stale lock can keep the program from starting. Where
// the file cannot be opened, the bus alone decides.
bool SingleInstance::takeLock()
{
    const auto file = QFile::encodeName(lockPath());
    m_lock = open(file.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    const bool isHeldByOther = isOurs(m_lock) && flock(m_lock, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    return !isHeldByOther;
}

void SingleInstance::exportObject()
{
    m_object.reset();
    m_object = std::make_unique<ProgramObject>(m_bus.connection(), m_properties);
    connect(m_object.get(), &ProgramObject::activated, this, &SingleInstance::showRequested);
    connect(m_object.get(), &ProgramObject::refreshRequested, this, &SingleInstance::refreshRequested);
}

void SingleInstance::publish(const QVariantMap &properties)
{
    m_properties = properties;
    if (m_object)
        m_object->publish(properties);
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
    message << ProgramName::service() << doNotQueue;
    m_bus.connection().asyncCall(message);
}

}  // namespace velquarin
