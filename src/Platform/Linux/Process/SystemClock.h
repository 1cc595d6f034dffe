// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"

#include <QByteArray>

#include <memory>
#include <mutex>
#include <sys/types.h>
#include <tuple>

namespace velquarin {

//! The system's clock, and the zone that TZ or /etc/localtime name at the moment of asking: whatever libc makes of them,
//! as every other program does, git too. An older calendar follows the zone of now.
//! Source: clock_gettime(2), tzset(3), localtime(5)
class SystemClock : public Clock
{
public:
    [[nodiscard]] Instant now() const override;
    [[nodiscard]] Calendar calendar() const override;

private:
    //! What libc reads a zone from: the variable's text, or the system's file with its device, number and time.
    using ZoneSource = std::tuple<QByteArray, dev_t, ino_t, time_t>;
    [[nodiscard]] static ZoneSource currentSource();

    mutable std::mutex m_mutex;
    mutable ZoneSource m_source;                 // guarded by m_mutex
    mutable std::shared_ptr<const Zone> m_zone;  // guarded by m_mutex
};

//! Where TZ holds neither a zone's name, nor the path of its file, nor a rule, says so on standard error and takes it
//! away: for this program and for git the system's zone counts, where libc would silently take that of Greenwich. To be
//! called before the first thread starts.
//! Source: tzset(3)
void dropUnknownZone();

//! Timers of the kernel on the clock that goes on during suspend, watched by the main loop. Qt's own timers stand
//! still during suspend, and cannot wait longer than 24 days.
//! Source: timerfd_create(2), CLOCK_BOOTTIME
class BootTimeTimers : public Timers
{
public:
    [[nodiscard]] std::unique_ptr<Timer> every(Seconds period, Tick tick) override;
    [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, Tick tick) override;
};

}  // namespace velquarin
