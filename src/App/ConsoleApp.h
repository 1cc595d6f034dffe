// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

namespace velquarin {

//! Does what the words of a command line ask for, without any display, and ends the process. It fails where nobody gave it
//! anything to write to.
//! Source: docs/status-lines.md
[[noreturn]] void runCommand(int argc, char **argv, bool isOutputOpen);

}  // namespace velquarin
