// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>

namespace velquarin {

//! Clicks with the right button at @p position, as the user has just done while a window of ours kept every click for
//! itself: what lies there gets it after all. Does nothing where the pointer has moved on meanwhile, elsewhere than on X11,
//! and where the server lets nobody do so. Source: X Test Extension Protocol 2.2, "XTestFakeInput"
void repeatRightClick(QPoint position);

}  // namespace velquarin
