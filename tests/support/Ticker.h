// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Await.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <limits>

namespace velquarin::test {

//! The longest time, in milliseconds, between two ticks of a timer that is due every millisecond.
class Ticker
{
public:
    Ticker()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                         [this] { m_longest = std::max(m_longest, m_since.restart()); });
        m_since.start();
        m_timer.start(std::chrono::milliseconds(1));
    }

    [[nodiscard]] qint64 longestGap() const { return std::max(m_longest, m_since.elapsed()); }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

template <typename Work>
qint64 longestGapDuring(Work work)
{
    const Ticker ticker;
    work();
    return ticker.longestGap();
}

//! The longest gap that @p work makes, less that of a loop with nothing to do for as long. Another program on the same
//! machine can only add to it: the best of three attempts is nearest to the truth.
template <typename Work>
qint64 gapOf(Work work)
{
    qint64 best = std::numeric_limits<qint64>::max();
    for (int attempt = 0; attempt < 3; ++attempt) {
        QElapsedTimer taken;
        taken.start();
        const auto gap = longestGapDuring(work);
        const QDeadlineTimer end(taken.elapsed());
        const auto idle = longestGapDuring([&end] { awaitThat([&end] { return end.hasExpired(); }); });
        best = std::min(best, gap - idle);
    }
    return best;
}

}  // namespace velquarin::test
