// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/WatchedFolderActions.h"

#include "Models/AppSettings.h"
#include "Platform/Folders.h"
#include "Services/Streak/StreakManager.h"

#include <algorithm>
#include <utility>

namespace velquarin {

namespace {

constexpr qint64 depthAtFirst = 5;

}  // namespace

WatchedFolderActions::WatchedFolderActions(AppSettings &settings, StreakManager &streakManager,
                                           FolderChooser &folderChooser, QObject &window)
    : m_settings(settings)
    , m_streakManager(streakManager)
    , m_folderChooser(folderChooser)
    , m_window(window)
{
}

void WatchedFolderActions::addWatchedFolder()
{
    m_folderChooser.choose({tr("Select a folder to watch for git repositories"), tr("Watch")}, m_window,
                           [this](const QString &path) { watch(path); });
}

void WatchedFolderActions::watch(const QString &path)
{
    const auto watched = m_settings.watchedFolders();
    if (std::ranges::find(watched, path, &WatchedFolder::path) != watched.end()) {
        setMessage(tr("This folder is already being watched"));
        return;
    }
    m_settings.addWatchedFolder(path, depthAtFirst);
    setMessage(std::nullopt);
    scanNow();
}

void WatchedFolderActions::scanNow()
{
    m_settings.setLastAutoDiscoveryScan(std::nullopt);
    m_streakManager.runAutoDiscovery();
}

void WatchedFolderActions::forgetMessage()
{
    setMessage(std::nullopt);
}

void WatchedFolderActions::setMessage(std::optional<QString> message)
{
    m_validationError = std::move(message);
    Q_EMIT changed();
}

}  // namespace velquarin
