// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <QString>
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

//! Calls @p show, which shows or activates a window, with @p activationToken in its hands: what lets a window take the
//! focus. The token may be empty.
using ShowWithToken = std::function<void(const QString &activationToken, const std::function<void()> &show)>;

//! What a program can do about its windows here. The default is X11, where all is known and nothing needs leave.
struct WindowSystem
{
    bool placesWindows = true;  //!< a program says where its windows stand, and a popup of it takes every click
    bool knowsPointer = true;   //!< it hears where the pointer is and what is clicked, over the windows of others too
    AnchorWindow anchorWindow = {};
    //! Whether what lies below a window shows through it just now. Asked where windows are placed; elsewhere it does.
    std::function<bool()> blendsWindows = [] { return false; };
    ShowWithToken showWithToken = [](const QString & /*token*/, const std::function<void()> &show) { show(); };
};

}  // namespace velquarin
