// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"
#include "Platform/Interface.h"

#include <chrono>
#include <functional>
#include <memory>

namespace velquarin {

//! What time it is, and in which zone the user lives. Both may change from one call to the next: the clock is
//! set, the user travels. Safe to call from any thread.
class Clock : public Interface
{
public:
    [[nodiscard]] virtual Instant now() const = 0;
    [[nodiscard]] virtual Calendar calendar() const = 0;
};

//! A timer that runs while it exists. Once destroyed, a tick that was pending never comes.
class Timer : public Interface
{
};

//! Makes timers of the main loop. Time spent in suspend counts; a tick that fell due meanwhile comes once on
//! waking.
class Timers : public Interface
{
public:
    using Seconds = std::chrono::duration<double>;
    using Tick = std::function<void()>;

    //! Ticks every @p period, first one period from now. Any positive period works, from a millisecond to
    //! centuries.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(Seconds period, Tick tick) = 0;

    //! Ticks once, @p delay from now.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(Seconds delay, Tick tick) = 0;
};

}  // namespace velquarin
