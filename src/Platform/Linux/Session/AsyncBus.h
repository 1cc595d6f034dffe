// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>

#include <chrono>

namespace velquarin {

//! The reply to @p call, or the error message that came instead: of the other side, of the bus, of a
//! connection that does not stand, or of a reply that took longer than @p timeout. Waits without blocking, and
//! goes on in step with the signals of the connection: what the other side sent after its reply comes after.
[[nodiscard]] QCoro::Task<QDBusMessage> replyTo(QDBusMessage call, QDBusConnection connection,
                                                std::chrono::milliseconds timeout);

}  // namespace velquarin
