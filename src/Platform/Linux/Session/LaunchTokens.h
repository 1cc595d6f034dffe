// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace velquarin {

//! By what a launcher lets the window that it asked for take the focus, and knows when the start is over. Either may be
//! empty.
struct LaunchTokens
{
    QString activationToken;  //!< of a Wayland compositor
    QString startupId;        //!< of an X11 launcher
    friend bool operator==(const LaunchTokens &, const LaunchTokens &) = default;
};

//! Takes the tokens that this start was given out of the environment, so that no program that we start finds them and
//! passes itself off as us. To be called before the application object is made, which takes one of them for itself.
//! Source: xdg-activation-v1; Startup Notification Protocol 0.1; docs/decisions/0012-activation-tokens.md
[[nodiscard]] LaunchTokens takeLaunchTokens();

}  // namespace velquarin
