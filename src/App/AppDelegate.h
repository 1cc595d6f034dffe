// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WindowSystem.h"
#include "Services/Streak/CommitWatch.h"
#include "Services/Streak/StreakManager.h"

#include <QObject>
#include <QPoint>
#include <QString>

#include <functional>
#include <memory>

namespace velquarin {

class HangObserver;
class Popover;
class SettingsView;
class Shared;
class StatusItem;
class StreakObserver;
struct SettingsServices;

//! Holds the program together while it runs: the status item, the streak and what the user asks for. Main thread only.
class AppDelegate : public QObject
{
    Q_OBJECT
public:
    //! What only the program's entry can do.
    struct Desktop
    {
        std::function<std::unique_ptr<StatusItem>()> makeStatusItem;
        std::function<void()> terminate;
        std::function<void(QPoint position)> repeatRightClick;
        WindowSystem windowSystem = {};
    };

    AppDelegate(Shared &shared, Desktop desktop);
    ~AppDelegate() override;

    //! Shows the status item and starts the first refresh, without waiting for it.
    void applicationDidFinishLaunching();

    //! Brings the program before the user's eyes: somebody started it again, or wants it from a notification.
    //! @p activationToken lets the window take the focus; it may be empty.
    void openDashboard(const QString &activationToken);

    //! Opens the settings window, or raises the one that is open.
    void openSettings();

    [[nodiscard]] StreakManager &streakManager() { return *m_streakManager; }

private:
    void setupMenuBar();
    [[nodiscard]] Popover &popover();
    void setupPopover();
    void setupStreakObserver();
    void setupHangObserver();
    void updateMenuBarDisplay(qint64 streak, bool isRefreshing, bool hasCommittedToday);
    void handleClick(QPoint position, const QString &activationToken);
    void togglePopover(QPoint position, const QString &activationToken);
    [[nodiscard]] SettingsServices settingsServices();
    void refreshData();
    void quitApp() const;

    Shared &m_shared;
    Desktop m_desktop;
    std::unique_ptr<StreakManager> m_streakManager;
    std::unique_ptr<CommitWatch> m_commitWatch;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<Popover> m_popover;
    std::unique_ptr<SettingsView> m_settings;
    std::unique_ptr<StreakObserver> m_streakObserver;
    std::unique_ptr<HangObserver> m_hangObserver;
    std::optional<QString> m_hangingRepository;
};

}  // namespace velquarin
