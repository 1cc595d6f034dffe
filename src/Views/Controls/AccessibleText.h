// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

namespace velquarin {

//! Makes widgets that paint their text themselves readable: those whose class says so stand in the accessibility tree
//! as texts, under their accessible name. Cheap to call again.
void readAsText();

}  // namespace velquarin
