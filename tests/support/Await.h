// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QCoroTask>
#include <QEventLoop>
#include <QFuture>

namespace velquarin::test {

//! Runs the event loop until the future has ended, and gives its result or throws its error. A future that never ends
//! holds the test until its time is up.
template <typename Result>
Result await(QFuture<Result> future)
{
    while (!future.isFinished())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return future.result();
}

//! Runs the event loop until the coroutine has ended.
inline void await(QCoro::Task<> task)
{
    bool isDone = false;
    task.then([&isDone] { isDone = true; });
    while (!isDone)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

//! Runs the event loop until it is so.
template <typename Condition>
void awaitThat(Condition isSo)
{
    while (!isSo())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace velquarin::test
