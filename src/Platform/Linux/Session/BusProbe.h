// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <chrono>

namespace velquarin {

//! Whether somebody at a bus's address begins to speak the protocol within @p patience; blocks no longer than that. The
//! library behind the toolkit's connections waits for ever for a bus that accepts and stays silent.
//! Shape:  @p address as in DBUS_SESSION_BUS_ADDRESS. An address of a kind that cannot be tried passes.
//! Source: D-Bus Specification, "Server Addresses" and "Authentication Protocol"
[[nodiscard]] bool busAnswers(const QByteArray &address, std::chrono::milliseconds patience);

}  // namespace velquarin
