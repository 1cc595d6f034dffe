// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/StatusItem/StatusHost.h"
#include "Platform/StatusItem.h"

#include <memory>
#include <optional>

class QMenu;

namespace velquarin {

class DbusMenu;
class MenuWindow;
class SessionBus;
class SniStatusItem;
class StatusNotifierWatch;
class XEmbedStatusItem;

//! The status item of this desktop: on the session bus while somebody collects items there, and in the tray of the older
//! kind while nobody shows what is collected. Nothing is shown before the first setAppearance().
//! Source: docs/decisions/0004-status-item.md
class LinuxStatusItem : public StatusItem
{
    Q_OBJECT
public:
    //! @p bus must outlive the item. @p iconThemePath is the absolute path of our own icon folder.
    LinuxStatusItem(SessionBus &bus, QString iconThemePath, QObject *parent = nullptr);
    ~LinuxStatusItem() override;

    void setAppearance(const StatusItemAppearance &appearance) override;
    void setMenu(const QList<MenuEntry> &entries) override;

private:
    enum class Place { Unknown, Bar, BarThatNobodyShows, Tray };

    void followBus();
    void loseBus();
    void moveToBar(const StatusHost &host, bool isShown);
    void moveToTray();
    void moveTo(Place place);
    void beSeen(bool isShownInBar);
    void standInBar();
    void makeBar();
    void showInTray();
    void updateBarMenu();
    void openFromMenu();
    void popUpMenu(QPoint position);
    void popUpAt(QPoint position);
    void toggleMenuWindow();

    SessionBus &m_bus;
    QString m_iconThemePath;
    std::optional<StatusItemAppearance> m_appearance;
    QList<MenuEntry> m_entries;

    Place m_place = Place::Unknown;
    StatusHost m_host;
    std::unique_ptr<StatusNotifierWatch> m_watch;
    std::unique_ptr<DbusMenu> m_barMenu;
    std::unique_ptr<SniStatusItem> m_bar;
    std::unique_ptr<XEmbedStatusItem> m_tray;
    std::unique_ptr<QMenu> m_popUp;
    std::unique_ptr<MenuWindow> m_menuWindow;
};

}  // namespace velquarin
