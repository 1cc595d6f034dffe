// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/BusProbe.h"

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

}  // namespace

bool busAnswers(const QByteArray &address, std::chrono::milliseconds patience)
{
    const auto alternatives = address.split(';');
    return std::ranges::any_of(alternatives, [patience](const QByteArray &alternative) {
        const auto target = alternative.startsWith("unix:") ? targetOf(alternative) : std::nullopt;
        return !target || answers(*target, patience);
    });
}

}  // namespace velquarin
