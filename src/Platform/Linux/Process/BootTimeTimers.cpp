// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/BootTimeTimers.h"

#include <QSocketNotifier>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace velquarin {

namespace {

constexpr double shortest = 0.001;
constexpr double longest = 100.0 * 365 * 24 * 3600;

timespec timeSpan(Timers::Seconds span)
{
    // A period that is not a number waits for ever, like one that is too long.
    const auto seconds = std::isnan(span.count()) ? longest : std::clamp(span.count(), shortest, longest);
    const auto whole = std::floor(seconds);
    return {static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
}

class BootTimeTimer : public Timer
{
public:
    BootTimeTimer(timespec first, timespec period, Timers::Tick tick)
        : m_descriptor(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK))
        , m_notifier(m_descriptor, QSocketNotifier::Read)
        , m_tick(std::move(tick))
    {
        const itimerspec schedule{period, first};
        timerfd_settime(m_descriptor, 0, &schedule, nullptr);
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { expire(); });
    }

    ~BootTimeTimer() override
    {
        m_notifier.setEnabled(false);
        close(m_descriptor);
    }

    BootTimeTimer(const BootTimeTimer &) = delete;
    BootTimeTimer &operator=(const BootTimeTimer &) = delete;

private:
    void expire()
    {
        std::uint64_t expirations = 0;
        if (read(m_descriptor, &expirations, sizeof expirations) != sizeof expirations)
            return;
        // The tick may destroy this timer, and with it the function it runs in.
        const auto tick = m_tick;
        tick();
    }

    int m_descriptor;
    QSocketNotifier m_notifier;
    Timers::Tick m_tick;
};

}  // namespace

std::unique_ptr<Timer> BootTimeTimers::every(Seconds period, Tick tick)
{
    const auto span = timeSpan(period);
    return std::make_unique<BootTimeTimer>(span, span, std::move(tick));
}

std::unique_ptr<Timer> BootTimeTimers::after(Seconds delay, Tick tick)
{
    return std::make_unique<BootTimeTimer>(timeSpan(delay), timespec{}, std::move(tick));
}

}  // namespace velquarin
