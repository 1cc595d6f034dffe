// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace velquarin {

//! The item in a tray of the older kind, which shows small windows of other programs. It waits by itself for a
//! tray that comes later. Source: System Tray Protocol Specification
class XEmbedStatusItem : public QObject
{
    Q_OBJECT
public:
    XEmbedStatusItem(const StatusItemAppearance &appearance, const QList<MenuEntry> &entries,
                     QObject *parent = nullptr);

    void setAppearance(const StatusItemAppearance &appearance);
    void setMenu(const QList<MenuEntry> &entries);

Q_SIGNALS:
    //! A left or middle click; @p position is the middle of the icon.
    void activated(QPoint position);

private:
    void react(QSystemTrayIcon::ActivationReason reason);

    QMenu m_menu;
    QSystemTrayIcon m_icon;
};

}  // namespace velquarin
