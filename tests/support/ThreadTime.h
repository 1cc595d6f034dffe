// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <ctime>

namespace velquarin::test {

//! How long this thread has had a processor, in milliseconds. Source: clock_gettime(2)
inline qint64 threadTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return qint64(time.tv_sec) * 1000 + time.tv_nsec / 1'000'000;
}

//! The most time, in milliseconds, for which this thread has a processor between two turns of its event loop while
//! @p work is done. However busy the machine is, that adds nothing.
template <typename Work>
qint64 longestTurnDuring(Work work)
{
    auto last = threadTime();
    qint64 longest = 0;
    const auto note = [&] {
        const auto now = threadTime();
        longest = std::max(longest, now - last);
        last = now;
    };
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.callOnTimeout(note);
    timer.start(std::chrono::milliseconds(1));
    work();
    note();
    return longest;
}

}  // namespace velquarin::test
