// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Interface.h"

namespace velquarin {

//! What the desktop knows of the application among the programs that it starts at login. Only Enabled means on.
enum class LoginItemStatus {
    Enabled,           //!< it is started
    NotRegistered,     //!< nothing asks for it here
    RequiresApproval,  //!< it is registered, and somebody has switched it off in the settings of the desktop
    NotFound,          //!< something is registered that cannot be read, or that starts nothing
};

//! What became of a change that the desktop was asked for.
enum class LoginItemOutcome { Done, Failed };

//! The application itself as a program that is started when its user logs in. Main thread only; each call is over in
//! the time that a small file takes.
class LoginItem : public Interface
{
public:
    //! Has the application started at login. Done at once where the status is Enabled already.
    [[nodiscard]] virtual LoginItemOutcome registerItem() = 0;

    //! Has it no longer started. Done at once where the status is any other than Enabled.
    [[nodiscard]] virtual LoginItemOutcome unregisterItem() = 0;

    //! Read afresh at each call, since others may change it too.
    [[nodiscard]] virtual LoginItemStatus status() const = 0;
};

}  // namespace velquarin
