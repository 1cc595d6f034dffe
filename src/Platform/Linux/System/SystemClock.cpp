// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/SystemClock.h"

namespace velquarin {

Instant SystemClock::now() const
{
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

Calendar SystemClock::calendar() const
{
    const auto zone = QTimeZone::systemTimeZone();
    return Calendar(zone.isValid() ? zone : QTimeZone::utc());
}

}  // namespace velquarin
