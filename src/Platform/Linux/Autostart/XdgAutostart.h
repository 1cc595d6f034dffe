// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Autostart/AutostartEntry.h"
#include "Platform/LoginItem.h"

#include <utility>

namespace velquarin {

//! The login item as an autostart entry of the user, "io.velquarin.Velquarin.desktop". Nothing is written where it
//! stands as it is wanted already; what is written is there whole or not at all.
//! Source: Desktop Application Autostart Specification; docs/decisions/0009-start-at-login.md
class XdgAutostart final : public LoginItem
{
public:
    explicit XdgAutostart(AutostartEnvironment environment)
        : m_environment(std::move(environment))
    {
    }

    //! Writes the user's entry anew, whatever was in it. Fails also where nothing would come of it: the program
    //! that runs is no longer on the disk, or its path cannot be told to all desktops.
    [[nodiscard]] LoginItemOutcome registerItem() override;

    //! Removes the user's entry, or writes one that hides an entry for everybody.
    [[nodiscard]] LoginItemOutcome unregisterItem() override;

    //! That of the entry in the first folder that has one. A link counts as what it leads to, and one that leads
    //! nowhere is none.
    [[nodiscard]] LoginItemStatus status() const override;

private:
    AutostartEnvironment m_environment;
};

}  // namespace velquarin
