// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Await.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <memory>
#include <utility>

namespace velquarin::test {

//! The longest time, in milliseconds of one clock, between two ticks of a timer that is due every millisecond.
class Ticker
{
public:
    explicit Ticker(clockid_t clock)
        : m_clock(clock)
        , m_last(now())
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
        m_timer.start(std::chrono::milliseconds(1));
    }

    [[nodiscard]] qint64 longestGap() const { return std::max(m_longest, now() - m_last) / nanosecondsInOne; }

private:
    static constexpr qint64 nanosecondsInOne = 1'000'000;

    [[nodiscard]] qint64 now() const
    {
        timespec time{};
        clock_gettime(m_clock, &time);
        return qint64(time.tv_sec) * 1000 * nanosecondsInOne + time.tv_nsec;
    }

    void tick()
    {
        const auto before = std::exchange(m_last, now());
        m_longest = std::max(m_longest, m_last - before);
    }

    QTimer m_timer;
    clockid_t m_clock;
    qint64 m_last;
    qint64 m_longest = 0;
};

//! By the clock on the wall, which other programs on the same machine can only put forward: for a benchmark that
//! compares, and never for a test.
template <typename Work>
qint64 longestGapDuring(Work work)
{
    const Ticker ticker(CLOCK_MONOTONIC);
    work();
    return ticker.longestGap();
}

//! The most that this thread works, in milliseconds of the processor, between two turns of its loop. Nothing else that
//! the machine does counts, and neither does waiting: see LoopWatch.
template <typename Work>
qint64 mostWorkDuring(Work work)
{
    const Ticker ticker(CLOCK_THREAD_CPUTIME_ID);
    work();
    return ticker.longestGap();
}

//! Tells a main thread that works from one that waits: whoever does something for it on another thread first has the
//! loop turn once, which it cannot while it waits for them.
class LoopWatch
{
public:
    //! On the other thread: on the main thread itself nothing can turn. Gives up in the end, and for good, so that a
    //! test fails where it would hang.
    void awaitTurn()
    {
        if (m_isOver || m_hasStoodStill)
            return;
        const auto turned = m_turned;
        const auto turn = [turned] { turned->release(); };
        QMetaObject::invokeMethod(qApp, turn, Qt::QueuedConnection);
        const bool isMainThread = QThread::currentThread() == qApp->thread();
        if (isMainThread || !turned->tryAcquire(1, waitLimitMs))
            m_hasStoodStill = true;
    }

    //! On the main thread, before it rightly waits for the other one.
    void end()
    {
        m_isOver = true;
        m_turned->release();
    }

    [[nodiscard]] bool hasStoodStill() const { return m_hasStoodStill; }

private:
    std::shared_ptr<QSemaphore> m_turned = std::make_shared<QSemaphore>();
    std::atomic<bool> m_isOver = false;
    std::atomic<bool> m_hasStoodStill = false;
};

}  // namespace velquarin::test
