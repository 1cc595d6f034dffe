// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/RepeatedClick.h"

#include "Platform/Linux/Windows/X11Display.h"

#include <QApplication>
#include <QCursor>

#include <algorithm>
#include <xcb/xtest.h>

namespace velquarin {

namespace {

// The server is told of buttons as they lie on the device, and left-handed people have them stand for others. Zero where
// none stands for the right one.
quint8 rightButton(xcb_connection_t *display)
{
    constexpr quint8 rightOne = 3;
    const auto reply = x11Owned(xcb_get_pointer_mapping_reply(display, xcb_get_pointer_mapping(display), nullptr));
    if (!reply)
        return 0;
    const auto *first = xcb_get_pointer_mapping_map(reply.get());
    const auto *end = first + xcb_get_pointer_mapping_map_length(reply.get());
    const auto *found = std::find(first, end, rightOne);
    return found == end ? quint8(0) : quint8(found - first + 1);
}

}  // namespace

void repeatRightClick(QPoint position)
{
    if ((QCursor::pos() - position).manhattanLength() >= QApplication::startDragDistance())
        return;
    auto *display = x11Display();
    const auto *extension = display ? xcb_get_extension_data(display, &xcb_test_id) : nullptr;
    if (!extension || extension->present == 0)
        return;
    const auto button = rightButton(display);
    if (button == 0)
        return;
    for (const auto type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
        xcb_test_fake_input(display, quint8(type), button, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    xcb_flush(display);
}

}  // namespace velquarin
