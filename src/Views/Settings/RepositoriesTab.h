// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/SettingsRecords.h"
#include "Views/Controls/Rendering.h"

#include <QList>
#include <QWidget>

class QPushButton;
class QVBoxLayout;

namespace velquarin {

class AppSettings;
class EmptyPanel;
class ListRow;
class ProgressLine;
class RepositoryActions;
class RowList;
class Text;

//! The tracked repositories: which they are, whether each counts, and how more come to be tracked.
class RepositoriesTab : public QWidget
{
    Q_OBJECT
public:
    RepositoriesTab(AppSettings &settings, RepositoryActions &actions, QWidget *parent = nullptr);

private:
    void build();
    void addHeader();
    void addList();
    void addButtons();
    [[nodiscard]] ListRow *makeRow(QWidget *parent) const;
    void observe();
    void render();
    void renderMessages();
    void enable(QUuid id, bool isEnabled);
    void remove(QUuid id);

    AppSettings &m_settings;
    RepositoryActions &m_actions;
    Rendering m_rendering;
    QList<TrackedRepository> m_shown;
    Text *m_count = nullptr;
    EmptyPanel *m_empty = nullptr;
    RowList *m_list = nullptr;
    QPushButton *m_add = nullptr;
    QPushButton *m_scan = nullptr;
    QPushButton *m_refresh = nullptr;
    ProgressLine *m_progress = nullptr;
    Text *m_message = nullptr;
};

}  // namespace velquarin
