// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"
#include "Platform/Instant.h"
#include "Platform/Interface.h"

namespace velquarin {

//! What time it is, and in which zone the user lives. Both may change from one call to the next: the clock is
//! set, the user travels. Safe to call from any thread.
class Clock : public Interface
{
public:
    [[nodiscard]] virtual Instant now() const = 0;
    [[nodiscard]] virtual Calendar calendar() const = 0;
};

}  // namespace velquarin
