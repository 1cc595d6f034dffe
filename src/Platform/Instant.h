// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace velquarin {

//! A moment, the same everywhere on earth.
//! Units: milliseconds since 1970-01-01T00:00Z.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

}  // namespace velquarin
