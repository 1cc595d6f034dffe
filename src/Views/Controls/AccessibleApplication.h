// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

namespace velquarin {

//! Lets screen readers find the dashboard among the program's windows. The toolkit leaves out windows that pop up, which
//! for menus is right; the dashboard is one on X11, and a window to its user.
//! To be called before the application object is made: what a screen reader has asked for once is kept.
void installAccessibleApplication();

}  // namespace velquarin
