// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Settings/SettingsWorld.h"

#include <QFont>
#include <QWidget>

#include <memory>

class QStackedWidget;

namespace velquarin {

class RepositoryActions;
class TabStrip;
class WatchedFolderActions;

//! The window in which everything is set: three tabs, of which the first is shown whenever it opens. Every change is
//! kept at the moment it is made; closing the window loses nothing and ends nothing that was begun in it.
class SettingsView : public QWidget
{
    Q_OBJECT
public:
    explicit SettingsView(const SettingsWorld &world, QWidget *parent = nullptr);
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

    SettingsWorld m_world;
    std::unique_ptr<RepositoryActions> m_repositoryActions;
    std::unique_ptr<WatchedFolderActions> m_folderActions;
    TabStrip *m_strip = nullptr;
    QStackedWidget *m_pages = nullptr;
    QFont m_builtFor;
};

}  // namespace velquarin
