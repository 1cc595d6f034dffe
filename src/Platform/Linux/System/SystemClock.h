// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"

namespace velquarin {

//! The system's clock, and the zone that TZ or /etc/localtime name at the moment of asking.
//! Source: clock_gettime(2), localtime(5)
class SystemClock : public Clock
{
public:
    [[nodiscard]] Instant now() const override;
    [[nodiscard]] Calendar calendar() const override;
};

}  // namespace velquarin
