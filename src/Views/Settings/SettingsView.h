// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Rendering.h"

#include <QByteArray>
#include <QWidget>

#include <functional>
#include <memory>

class QStackedWidget;

namespace velquarin {

class AppSettings;
class Clock;
class FolderChooser;
class GitService;
class LaunchAtLogin;
class RepositoryActions;
class StreakManager;
class TabStrip;
class WatchedFolderActions;

//! What the settings window shows and changes. All of it outlives the window.
struct SettingsServices
{
    AppSettings &settings;
    StreakManager &streakManager;
    LaunchAtLogin &launchAtLogin;
    GitService &gitService;
    FolderChooser &folderChooser;
    const Clock &clock;
    std::function<QByteArray()> readLocale;  //!< what locale times are written in
};

//! The window in which everything is set: three tabs, of which the first is shown whenever it opens. Every change is
//! kept at the moment it is made; closing the window loses nothing and ends nothing that was begun in it.
class SettingsView : public QWidget
{
    Q_OBJECT
public:
    explicit SettingsView(const SettingsServices &services, QWidget *parent = nullptr);
    ~SettingsView() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void build();
    void addTab(const QString &title, const QString &symbol, QWidget *content);
    void rebuild();
    void turnBy(int tabs);

    SettingsServices m_services;
    std::unique_ptr<RepositoryActions> m_repositoryActions;
    std::unique_ptr<WatchedFolderActions> m_folderActions;
    TabStrip *m_strip = nullptr;
    QStackedWidget *m_pages = nullptr;
    Rebuilding m_rebuilding;
};

}  // namespace velquarin
