// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Standstill.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFuture>
#include <QTimer>

#include <chrono>

namespace velquarin::test {

//! Where a test waits.
struct Place
{
    const char *file;
    int line;
};

//! Longer than the busiest machine takes, in milliseconds: only what never comes takes so long.
constexpr int waitLimitMs = 90'000;
constexpr std::chrono::milliseconds waitLimit(waitLimitMs);

//! Any machine does in that time what shall be done at once, and no library gives up so soon.
constexpr std::chrono::seconds atOnce(20);

//! Runs the event loop until it is so. What never becomes so ends the test, which then says where it waited and what
//! the programs do that it started.
template <typename Condition>
void awaitThat(Condition isSo, Place place = Place{__builtin_FILE(), __builtin_LINE()})
{
    const QDeadlineTimer end(waitLimit);
    QTimer wakesTheLoop;
    wakesTheLoop.start(waitLimit);
    while (!isSo()) {
        if (end.hasExpired())
            qFatal("%s:%d: waited in vain; %s", place.file, place.line, sightOfChildren().constData());
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

//! Runs the event loop until the future has ended, and gives its result or throws its error.
template <typename Result>
Result await(QFuture<Result> future, Place place = Place{__builtin_FILE(), __builtin_LINE()})
{
    awaitThat([&future] { return future.isFinished(); }, place);
    return future.result();
}

//! Runs the event loop until the coroutine has ended, with an error or without.
template <typename Result>
void await(const QCoro::Task<Result> &task, Place place = Place{__builtin_FILE(), __builtin_LINE()})
{
    awaitThat([&task] { return task.isReady(); }, place);
}

}  // namespace velquarin::test
