// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/AppSettings.h"
#include "Services/Git/GitService.h"
#include "Services/LaunchAtLogin.h"
#include "Services/Reminder/NotificationService.h"

#include <memory>

namespace velquarin {

class Clock;
class FileViewer;
class FileTree;
class FolderChooser;
class LoginItem;
class NotificationCenter;
class Output;
class PreferencesStore;
class ProcessRunner;
class RepositoryWatch;
class Timers;

//! What the desktop gives: one adapter for each interface, all longer-lived than whoever uses them.
struct Platform
{
    ProcessRunner &processes;
    const FileTree &files;
    const Clock &clock;
    Timers &timers;
    Output &output;
    PreferencesStore &preferences;
    NotificationCenter &notificationCenter;
    FileViewer &fileViewer;
    LoginItem &loginItem;
    FolderChooser &folderChooser;
    RepositoryWatch &repositoryWatch;
};

//! The services of which there is one each: made at first use, kept for the life of the program. Only the application
//! knows this class; everybody else is handed references.
class Shared
{
public:
    explicit Shared(const Platform &platform);
    Shared(const Shared &) = delete;
    Shared &operator=(const Shared &) = delete;
    ~Shared();

    [[nodiscard]] const Platform &platform() const { return m_platform; }
    [[nodiscard]] GitService &gitService();
    [[nodiscard]] AppSettings &appSettings();
    [[nodiscard]] NotificationService &notificationService();
    [[nodiscard]] LaunchAtLogin &launchAtLogin();

private:
    Platform m_platform;
    std::unique_ptr<GitService> m_gitService;
    std::unique_ptr<AppSettings> m_appSettings;
    std::unique_ptr<NotificationService> m_notificationService;
    std::unique_ptr<LaunchAtLogin> m_launchAtLogin;
};

}  // namespace velquarin
