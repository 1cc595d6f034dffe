// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QPoint>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace velquarin {

//! Qt's own connection to the X server; null where the program shows itself on another kind of display.
[[nodiscard]] xcb_connection_t *x11Display();

//! The screen that the program was started on. Source: X(7), "DISPLAY NAMES"
[[nodiscard]] int x11ScreenNumber();
[[nodiscard]] xcb_screen_t *x11Screen(xcb_connection_t *display);

//! The server's number for a name. Blocks for the answer; XCB_ATOM_NONE where there is none.
[[nodiscard]] xcb_atom_t x11Atom(xcb_connection_t *display, const QByteArray &name);

//! The window that holds a selection just now; XCB_WINDOW_NONE where there is none. Blocks for the answer.
[[nodiscard]] xcb_window_t x11SelectionOwner(xcb_connection_t *display, xcb_atom_t selection);

//! Whether somebody composes the windows of our screen just now, so that they may be transparent. Blocks for the answer.
//! Source: Extended Window Manager Hints, "_NET_WM_CM_Sn"
[[nodiscard]] bool x11HasCompositor();

//! An answer of the X server, which the caller has to free.
template <typename Reply>
[[nodiscard]] std::unique_ptr<Reply, decltype(&std::free)> x11Owned(Reply *reply)
{
    return {reply, &std::free};
}

//! Draws a picture over what a window shows. Shape: @p image is so small that the server takes it at once, which each
//! does up to 256 by 256 pixels. Source: X Rendering Extension
void x11PaintOver(xcb_connection_t *display, xcb_window_t window, xcb_visualid_t visual, const QImage &image,
                  QPoint at);

//! Clicks with the right button at @p position, as the user has just done while a window of ours kept every click for
//! itself: what lies there gets it after all. Does nothing where the pointer has moved on meanwhile, elsewhere than on X11,
//! and where the server lets nobody do so. Source: X Test Extension Protocol 2.2, "XTestFakeInput"
void x11RepeatRightClick(QPoint position);

}  // namespace velquarin
