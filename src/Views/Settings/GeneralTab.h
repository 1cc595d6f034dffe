// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Rendering.h"

#include <QList>
#include <QScrollArea>

#include <functional>
#include <utility>

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
    //! A setting that is on or off.
    struct Flag
    {
        std::function<bool()> get;
        std::function<void(bool)> set;
    };

    void buildForm();
    void addSwitches(QWidget &form);
    Switch *addSwitch(QWidget &form, const QString &title, const QString &label, const Flag &flag);
    void addRefreshPeriod(QWidget &form);
    void addAbout(QWidget &form);
    void observe();
    void render();
    void choosePeriod(int index);

    AppSettings &m_settings;
    StreakManager &m_streakManager;
    LaunchAtLogin &m_launchAtLogin;
    Rendering m_rendering;
    QList<std::pair<Switch *, std::function<bool()>>> m_switches;
    Picker *m_period = nullptr;
};

}  // namespace velquarin
