// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace velquarin {

class AppSettings;
class FolderChooser;
class StreakManager;

//! What the user can do about the watched folders, and what came of it. Main thread only; nothing here waits.
class WatchedFolderActions : public QObject
{
    Q_OBJECT
public:
    //! All outlive it; @p window is the one that asks for folders.
    WatchedFolderActions(AppSettings &settings, StreakManager &streakManager, FolderChooser &folderChooser,
                         QObject &window);

    //! The one message line.
    [[nodiscard]] const std::optional<QString> &validationError() const { return m_validationError; }

    //! Asks for a folder and watches it, five levels deep; then looks for repositories at once.
    void addWatchedFolder();

    //! Looks for repositories at once, however recently that was done, and whether or not it is done by itself.
    void scanNow();

    //! The message is over once its window is.
    void forgetMessage();

Q_SIGNALS:
    //! The message is another now.
    void changed();

private:
    void watch(const QString &path);
    void setMessage(std::optional<QString> message);

    AppSettings &m_settings;
    StreakManager &m_streakManager;
    FolderChooser &m_folderChooser;
    QObject &m_window;
    std::optional<QString> m_validationError;
};

}  // namespace velquarin
