// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <Qt>

#include <functional>

class QWindow;

namespace velquarin {

//! Where a window stands on its screen, told by the edges that it keeps to. Units: logical pixels, counted from the
//! edges or from the panels that have reserved their place along them.
struct WindowAnchor
{
    Qt::Edges edges;
    QMargins margins;
    friend bool operator==(const WindowAnchor &, const WindowAnchor &) = default;
};

//! Has the desktop keep a window at that place of its screen, now and whenever it is shown. The first call has to come
//! before the window is shown at all. Empty where the desktop knows no such thing.
using AnchorWindow = std::function<void(QWindow &window, const WindowAnchor &anchor)>;

}  // namespace velquarin
