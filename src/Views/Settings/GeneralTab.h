// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Rendering.h"

#include <QList>
#include <QScrollArea>
#include <QWidget>

#include <functional>
#include <utility>

class QBoxLayout;

namespace velquarin {

class AppSettings;
class LaunchAtLogin;
class Picker;
class StreakManager;
class Switch;
class Text;

//! Settings below a title, a row each, on a quietly tinted ground.
class FormSection : public QWidget
{
    Q_OBJECT
public:
    explicit FormSection(const QString &title, QWidget *parent = nullptr);

    void addRow(Switch *control);

    //! A row with something at either edge.
    void addRow(QWidget *leading, QWidget *trailing);

private:
    QBoxLayout *makeRow(int outset = 0);
    void addDivider();

    Text *m_title;
    QBoxLayout *m_rows;
};

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
    void addRefresh(QWidget &form);
    Picker *addPicker(FormSection &section, const QString &name, const QString &label);
    void addAbout(QWidget &form);
    void observe();
    void render();
    void choosePeriod(int index);
    void chooseCounted(int index);

    AppSettings &m_settings;
    StreakManager &m_streakManager;
    LaunchAtLogin &m_launchAtLogin;
    Rendering m_rendering;
    QList<std::pair<Switch *, std::function<bool()>>> m_switches;
    Picker *m_period = nullptr;
    Picker *m_counted = nullptr;
};

}  // namespace velquarin
