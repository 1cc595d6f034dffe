// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Desktop/RepeatedClick.h"

#include "Platform/Linux/Desktop/X11Display.h"

#include <xcb/xtest.h>

namespace velquarin {

void repeatRightClick()
{
    auto *display = x11Display();
    const auto *extension = display ? xcb_get_extension_data(display, &xcb_test_id) : nullptr;
    if (!extension || extension->present == 0)
        return;
    constexpr quint8 rightButton = 3;
    for (const auto type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
        xcb_test_fake_input(display, quint8(type), rightButton, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    xcb_flush(display);
}

}  // namespace velquarin
