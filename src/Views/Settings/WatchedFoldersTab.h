// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/SettingsRecords.h"
#include "Views/Controls/Rendering.h"

#include <QByteArray>
#include <QList>
#include <QWidget>

#include <functional>

class QPushButton;

namespace velquarin {

class AppSettings;
class Clock;
class EmptyPanel;
class ListRow;
class ProgressLine;
class RowList;
class StreakManager;
class Switch;
class Text;
class WatchedFolderActions;

//! The folders in which repositories are found by themselves, and what was found last.
class WatchedFoldersTab : public QWidget
{
    Q_OBJECT
public:
    //! All references outlive it; @p readLocale says what locale times are written in.
    WatchedFoldersTab(AppSettings &settings, StreakManager &streakManager, const Clock &clock,
                      std::function<QByteArray()> readLocale, WatchedFolderActions &actions, QWidget *parent = nullptr);

private:
    void build();
    void addHeader();
    void addList();
    void addButtons();
    void addDiscovered();
    ListRow *makeRow(QWidget *parent);
    void observe();
    void render();
    void renderScan();
    void renderDiscovered();
    void change(QUuid id, const std::function<void(WatchedFolder &folder)> &edit);
    void remove(QUuid id);

    AppSettings &m_settings;
    StreakManager &m_streakManager;
    const Clock &m_clock;
    std::function<QByteArray()> m_readLocale;
    WatchedFolderActions &m_actions;
    Rendering m_rendering;
    QList<WatchedFolder> m_shown;
    Switch *m_isAutomatic = nullptr;
    EmptyPanel *m_empty = nullptr;
    RowList *m_list = nullptr;
    QPushButton *m_add = nullptr;
    QPushButton *m_scan = nullptr;
    ProgressLine *m_progress = nullptr;
    Text *m_lastScan = nullptr;
    QWidget *m_discovered = nullptr;
    QList<Text *> m_discoveredLines;
    Text *m_more = nullptr;
    Text *m_message = nullptr;
};

}  // namespace velquarin
