// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Rendering.h"

#include <QScrollArea>

namespace velquarin {

class AppSettings;
class LaunchAtLogin;
class Picker;
class StreakManager;
class Switch;

//! The options that are not about repositories. Each control writes its value when it is moved, and follows the value
//! when it changes elsewhere.
class GeneralTab : public QScrollArea
{
    Q_OBJECT
public:
    GeneralTab(AppSettings &settings, StreakManager &streakManager, LaunchAtLogin &launchAtLogin,
               QWidget *parent = nullptr);

private:
    void buildForm();
    QWidget *makeStartup(QWidget *form);
    QWidget *makeDisplay(QWidget *form);
    QWidget *makeNotifications(QWidget *form);
    QWidget *makeRefresh(QWidget *form);
    QWidget *makeAbout(QWidget *form);
    void connectControls();
    void observe();
    void render();
    void choosePeriod(int index);

    AppSettings &m_settings;
    StreakManager &m_streakManager;
    LaunchAtLogin &m_launchAtLogin;
    Rendering m_rendering;
    Switch *m_launch = nullptr;
    Switch *m_count = nullptr;
    Switch *m_reminder = nullptr;
    Picker *m_period = nullptr;
};

}  // namespace velquarin
