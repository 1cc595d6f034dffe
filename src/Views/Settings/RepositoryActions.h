// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <optional>

namespace velquarin {

class AppSettings;
class FolderChooser;
class GitService;
class StreakManager;

//! What follows from a scan for repositories that the user asked for.
struct ScanOutcome
{
    std::optional<QString> message;  //!< what the user is told; nothing where new rows tell it
    bool isRefreshDue = false;
    friend bool operator==(const ScanOutcome &, const ScanOutcome &) = default;
};

//! @p found counts the paths that the scan found, @p added those of them that were not tracked before.
[[nodiscard]] ScanOutcome scanOutcome(qsizetype found, qsizetype added);

//! What the user can do about the tracked repositories, and what came of it. Main thread only; nothing here waits.
class RepositoryActions : public QObject
{
    Q_OBJECT
public:
    //! All outlive it; @p window is the one that asks for folders.
    RepositoryActions(AppSettings &settings, StreakManager &streakManager, GitService &gitService,
                      FolderChooser &folderChooser, QObject &window);

    //! The one message line: what went wrong, and what a scan found that added nothing.
    [[nodiscard]] const std::optional<QString> &validationError() const { return m_validationError; }

    //! From the moment a folder to scan is chosen until its repositories are tracked.
    [[nodiscard]] bool isScanning() const { return m_isScanning; }

    //! What is said beside the turning wheel meanwhile.
    [[nodiscard]] const std::optional<QString> &scanProgress() const { return m_scanProgress; }

    //! Asks for a folder and tracks it, if git can be started there. A folder without a repository passes: it is tracked
    //! and has no commits until it becomes one.
    void addRepository();

    //! Asks for a folder and tracks every repository in it, up to five levels deep.
    void scanFolder();

    void refreshNow();

    //! The message is over once its window is.
    void forgetMessage();

Q_SIGNALS:
    //! One of the three values above is another now.
    void changed();

private:
    QCoro::Task<> checkAndAdd(QString path);
    QCoro::Task<> scan(QString path);
    void setMessage(std::optional<QString> message);

    AppSettings &m_settings;
    StreakManager &m_streakManager;
    GitService &m_gitService;
    FolderChooser &m_folderChooser;
    QObject &m_window;
    std::optional<QString> m_validationError;
    bool m_isScanning = false;
    std::optional<QString> m_scanProgress;
};

}  // namespace velquarin
