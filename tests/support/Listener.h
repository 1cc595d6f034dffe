// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <arpa/inet.h>
#include <array>
#include <atomic>
#include <cerrno>
#include <functional>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace velquarin::test {

//! Somebody on a port of this machine who notes that there was a call, and hangs up.
class Listener
{
public:
    explicit Listener(std::function<void(int call)> answer = [](int) {})
        : m_answer(std::move(answer))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const raw = reinterpret_cast<sockaddr *>(&address);
        if (bind(m_socket, raw, size) != 0 || listen(m_socket, 8) != 0 || getsockname(m_socket, raw, &size) != 0)
            throw std::runtime_error("cannot listen");
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { answerAll(); });
    }
    ~Listener()
    {
        shutdown(m_socket, SHUT_RDWR);
        m_thread.join();
        close(m_socket);
    }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    [[nodiscard]] QString address() const { return QStringLiteral("127.0.0.1:%1").arg(m_port); }

    [[nodiscard]] bool wasCalled() const
    {
        if (m_wasCalled)
            return true;
        pollfd waiting{m_socket, POLLIN, 0};
        return poll(&waiting, 1, 0) > 0;
    }

protected:
    //! What the system call gives once no child that ends meanwhile interrupts it.
    template <typename Call>
    static auto uninterrupted(Call call)
    {
        auto result = call();
        while (result < 0 && errno == EINTR)
            result = call();
        return result;
    }

private:
    // Whoever called learns nothing before the call is noted.
    void answerAll()
    {
        for (int call = -1; (call = nextCall()) >= 0; close(call)) {
            m_wasCalled = true;
            m_answer(call);
        }
    }

    int nextCall() const
    {
        return uninterrupted([this] { return accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC); });
    }

    std::function<void(int call)> m_answer;
    int m_socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_port = 0;
    std::atomic<bool> m_wasCalled = false;
    std::thread m_thread;
};

//! A web server that lets nobody in without a password.
//! Source: RFC 9110, section 11.6.1
class Doorkeeper : public Listener
{
public:
    Doorkeeper()
        : Listener(&refuse)
    {
    }

private:
    static void refuse(int call)
    {
        const QByteArray refusal = "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"
                                   "Content-Length: 0\r\nConnection: close\r\n\r\n";
        std::array<char, 4096> request = {};
        if (uninterrupted([&] { return recv(call, request.data(), request.size(), 0); }) > 0)
            send(call, refusal.constData(), size_t(refusal.size()), MSG_NOSIGNAL);
    }
};

}  // namespace velquarin::test
