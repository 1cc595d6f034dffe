// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QFuture>
#include <QFutureWatcher>
#include <QSignalSpy>
#include <QTest>

#include <chrono>

namespace velquarin::test {

//! Runs the event loop until the future has ended, and gives its result or throws its error.
template <typename Result>
Result await(QFuture<Result> future)
{
    if (!QTest::qWaitFor([&future] { return future.isFinished(); }, 60'000))
        throw std::runtime_error("the future did not end within a minute");
    return future.result();
}

//! Runs the event loop until the coroutine has ended.
inline void await(QCoro::Task<> task)
{
    bool isDone = false;
    task.then([&isDone] { isDone = true; });
    if (!QTest::qWaitFor([&isDone] { return isDone; }, 60'000))
        throw std::runtime_error("the coroutine did not end within a minute");
}

}  // namespace velquarin::test
