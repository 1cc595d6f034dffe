// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WindowSystem.h"

namespace velquarin {

//! What this session lets us do: X11, Wayland, or X11 within Wayland. To be asked once there is an application.
[[nodiscard]] WindowSystem linuxWindowSystem();

//! Whether a window stands where its program says.
[[nodiscard]] bool canPlaceWindows();

//! Whether all that is on the screen is X11: where other windows are about, the X server hears neither of clicks over them
//! nor of where the pointer is there, and cannot tell what they show.
[[nodiscard]] bool isAllX11();

//! Has Qt find the token, and nobody else: it looks in the environment, where a program that we start later would find it
//! too and pass itself off as this window.
void showWithToken(const QString &activationToken, const std::function<void()> &show);

}  // namespace velquarin
