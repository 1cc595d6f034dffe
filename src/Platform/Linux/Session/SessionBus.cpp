// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/SessionBus.h"

#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QFileInfo>
#include <QList>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace velquarin {

namespace {

struct SocketAddress
{
    sockaddr_un address = {};
    socklen_t length = 0;
};

class Socket
{
public:
    Socket()
        : m_descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {
    }
    ~Socket() { close(m_descriptor); }
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;

    [[nodiscard]] bool connectTo(const SocketAddress &target) const
    {
        return connect(m_descriptor, reinterpret_cast<const sockaddr *>(&target.address), target.length) == 0;
    }
    [[nodiscard]] bool send(const QByteArray &bytes) const
    {
        return ::send(m_descriptor, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
    }
    [[nodiscard]] bool hasAnswer(std::chrono::milliseconds patience) const
    {
        pollfd reading{m_descriptor, POLLIN, 0};
        return poll(&reading, 1, int(patience.count())) == 1 && (reading.revents & POLLIN) != 0;
    }

private:
    int m_descriptor;
};

// The value of a key in "unix:path=/run/bus,guid=...", with its escaped bytes read back.
QByteArray valueOf(const QByteArray &key, const QByteArray &address)
{
    const auto pairs = address.mid(address.indexOf(':') + 1).split(',');
    for (const auto &pair : pairs) {
        if (pair.startsWith(key + '='))
            return QByteArray::fromPercentEncoding(pair.mid(key.size() + 1));
    }
    return {};
}

std::optional<SocketAddress> socketAddress(const QByteArray &name)
{
    SocketAddress target;
    target.address.sun_family = AF_UNIX;
    if (name.isEmpty() || std::size_t(name.size()) >= sizeof target.address.sun_path)
        return std::nullopt;
    std::memcpy(&target.address.sun_path, name.constData(), std::size_t(name.size()));
    const bool isAbstract = name.startsWith('\0');
    target.length = socklen_t(offsetof(sockaddr_un, sun_path)) + socklen_t(name.size()) + (isAbstract ? 0 : 1);
    return target;
}

// A server speaks only when spoken to; this asks it for the methods that it knows.
bool answers(const SocketAddress &target, std::chrono::milliseconds patience)
{
    const Socket socket;
    const QByteArray greeting("\0AUTH\r\n", 7);
    return socket.connectTo(target) && socket.send(greeting) && socket.hasAnswer(patience);
}

std::optional<SocketAddress> targetOf(const QByteArray &address)
{
    if (const auto path = valueOf("path", address); !path.isEmpty())
        return socketAddress(path);
    if (const auto name = valueOf("abstract", address); !name.isEmpty())
        return socketAddress('\0' + name);
    if (valueOf("runtime", address) == "yes")
        return socketAddress(qgetenv("XDG_RUNTIME_DIR") + "/bus");
    return std::nullopt;
}

// A bus on the same machine answers within a millisecond or two. At the start of the program nothing runs yet that could
// wait for a slow one; later the user does.
constexpr std::chrono::milliseconds patienceAtFirst(1000);
constexpr std::chrono::milliseconds patienceLater(50);

const QString localPath = QStringLiteral("/org/freedesktop/DBus/Local");
const QString localInterface = QStringLiteral("org.freedesktop.DBus.Local");

// Awaits the watcher's own signal: a future in between would let later signals overtake the reply. The watcher
// goes when the reply is taken; GCC 12 copies what is awaited, so a pointer that owns would not do.
class PendingReply
{
public:
    explicit PendingReply(const QDBusPendingCall &call)
        : m_watcher(new QDBusPendingCallWatcher(call))
    {
    }

    [[nodiscard]] bool await_ready() const { return m_watcher->isFinished(); }

    void await_suspend(std::coroutine_handle<> caller) const
    {
        QObject::connect(m_watcher, &QDBusPendingCallWatcher::finished, [caller] { caller.resume(); });
    }

    [[nodiscard]] QDBusMessage await_resume() const
    {
        m_watcher->deleteLater();
        return m_watcher->reply();
    }

private:
    QDBusPendingCallWatcher *m_watcher;
};

}  // namespace

// Without an address the library would start a bus of its own beside the session, on which nobody listens.
QByteArray sessionBusAddress()
{
    auto given = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const auto runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    const auto socket = runtimeFolder + "/bus";
    if (!given.isEmpty() || runtimeFolder.isEmpty() || !QFileInfo::exists(QFile::decodeName(socket)))
        return given;
    return "unix:path=" + socket;
}

bool busAnswers(const QByteArray &address, std::chrono::milliseconds patience)
{
    const auto alternatives = address.split(';');
    return std::ranges::any_of(alternatives, [patience](const QByteArray &alternative) {
        const auto target = alternative.startsWith("unix:") ? targetOf(alternative) : std::nullopt;
        return !target || answers(*target, patience);
    });
}

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
    const auto address = sessionBusAddress();
    return !address.isEmpty() && busAnswers(address, patience);
}

// Qt remembers a failed connection under its name for good, so each attempt has a name of its own.
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

QCoro::Task<QDBusMessage> replyTo(QDBusMessage call, QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const PendingReply pending(connection.asyncCall(call, int(timeout.count())));
    co_return co_await pending;
}

}  // namespace velquarin
