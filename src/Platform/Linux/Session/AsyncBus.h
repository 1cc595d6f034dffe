// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QFuture>
#include <QPromise>

#include <chrono>

namespace velquarin {

//! The reply to @p call, or the error message that came instead: of the other side, of the bus, of a
//! connection that does not stand, or of a reply that took longer than @p timeout. Waits without blocking, and
//! goes on in step with the signals of the connection: what the other side sent after its reply comes after.
[[nodiscard]] QCoro::Task<QDBusMessage> replyTo(QDBusMessage call, QDBusConnection connection,
                                                std::chrono::milliseconds timeout);

template <typename T>
QCoro::Task<> settle(QPromise<T> promise, QCoro::Task<T> task)
{
    try {
        promise.addResult(co_await task);
    } catch (...) {
        promise.setException(std::current_exception());
    }
    promise.finish();
}

//! What @p task will answer, value or exception, for those who are no coroutines themselves.
template <typename T>
[[nodiscard]] QFuture<T> futureOf(QCoro::Task<T> task)
{
    QPromise<T> promise;
    auto future = promise.future();
    promise.start();
    settle(std::move(promise), std::move(task));
    return future;
}

}  // namespace velquarin
