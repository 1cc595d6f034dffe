// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"

#include <QTest>

#include <algorithm>
#include <utility>
#include <vector>

namespace velquarin::test {

//! Timers that tick when the test says so. A live timer is one that still exists and may tick again.
class FakeTimers : public Timers
{
public:
    struct Live
    {
        Seconds interval;  //!< the period, or the delay of a single tick
        bool repeats = false;
        Tick tick;
        int number = 0;
    };

    [[nodiscard]] std::unique_ptr<Timer> every(Seconds period, Tick tick) override
    {
        return start(period, true, std::move(tick));
    }

    [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, Tick tick) override
    {
        return start(delay, false, std::move(tick));
    }

    //! In the order in which they were made.
    [[nodiscard]] const std::vector<Live> &live() const { return *m_live; }

    //! Lets the live timer tick. A timer that ticks once is dead before it does; the tick may end any timer,
    //! its own included.
    void fire(std::size_t index)
    {
        QVERIFY2(index < m_live->size(), "There is no such timer");
        const auto tick = (*m_live)[index].tick;
        if (!(*m_live)[index].repeats)
            m_live->erase(m_live->begin() + std::ptrdiff_t(index));
        tick();
    }

private:
    using List = std::shared_ptr<std::vector<Live>>;

    class Handle : public Timer
    {
    public:
        Handle(List list, int number)
            : m_list(std::move(list))
            , m_number(number)
        {
        }
        ~Handle() override
        {
            std::erase_if(*m_list, [this](const Live &timer) { return timer.number == m_number; });
        }

    private:
        List m_list;
        int m_number;
    };

    std::unique_ptr<Timer> start(Seconds interval, bool repeats, Tick tick)
    {
        m_live->push_back({interval, repeats, std::move(tick), ++m_made});
        return std::make_unique<Handle>(m_live, m_made);
    }

    List m_live = std::make_shared<std::vector<Live>>();
    int m_made = 0;
};

}  // namespace velquarin::test
