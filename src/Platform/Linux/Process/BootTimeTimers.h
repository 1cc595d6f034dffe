// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timers.h"

namespace velquarin {

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
