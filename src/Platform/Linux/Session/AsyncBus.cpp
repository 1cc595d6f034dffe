// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/AsyncBus.h"

#include <QDBusPendingCallWatcher>

namespace velquarin {

namespace {

// Awaits the watcher's own signal: a future in between would let later signals overtake the reply. The watcher
// goes when the reply is taken; GCC 12 copies what is awaited, so a pointer that owns would not do.
class PendingReply
{
public:
    explicit PendingReply(const QDBusPendingCall &call)
        : m_watcher(new QDBusPendingCallWatcher(call))
    {
    }

    // What fails at once is told later as well: nobody is called back in the middle of asking.
    [[nodiscard]] bool await_ready() const { return false; }

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

QCoro::Task<QDBusMessage> replyTo(QDBusMessage call, QDBusConnection connection, std::chrono::milliseconds timeout)
{
    const PendingReply pending(connection.asyncCall(call, int(timeout.count())));
    co_return co_await pending;
}

}  // namespace velquarin
