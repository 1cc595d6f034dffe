// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

namespace velquarin {

//! Lets screen readers announce our windows as such, the dashboard and the settings; to the toolkit a widget of ours is
//! a mere part of something, even where it is a window. Cheap to call again.
void readAsWindow();

}  // namespace velquarin
