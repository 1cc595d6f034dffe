// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <functional>

namespace velquarin {

class AppSettings;
class Clock;
class FolderChooser;
class GitService;
class LaunchAtLogin;
class StreakManager;

//! What the settings window shows and changes. All of it outlives the window.
struct SettingsWorld
{
    AppSettings &settings;
    StreakManager &streakManager;
    LaunchAtLogin &launchAtLogin;
    GitService &gitService;
    FolderChooser &folderChooser;
    const Clock &clock;
    std::function<QByteArray()> readLocale;  //!< what locale times are written in
};

}  // namespace velquarin
