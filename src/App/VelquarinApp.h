// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Files/PosixFileTree.h"
#include "Platform/Linux/Notifications/FreedesktopNotifications.h"
#include "Platform/Linux/Preferences/JsonPreferencesStore.h"
#include "Platform/Linux/Process/ChildProcessRunner.h"
#include "Platform/Linux/Process/StandardStreams.h"
#include "Platform/Linux/Process/SystemClock.h"
#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/Linux/Session/SingleInstance.h"

namespace velquarin {

//! The application entry: makes the adapters of this desktop, hands them to the rest, and ends everything in order.
class VelquarinApp
{
public:
    explicit VelquarinApp(LaunchTokens launchTokens);

    //! Runs until the user quits, and ends the process.
    [[noreturn]] void run();

private:
    LaunchTokens m_launchTokens;
    SessionBus m_bus;
    SystemClock m_clock;
    BootTimeTimers m_timers;
    StandardOutput m_output;
    ChildProcessRunner m_processes;
    PosixFileTree m_files;
};

}  // namespace velquarin
