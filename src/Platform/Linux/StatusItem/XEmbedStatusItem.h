// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/StatusItem/TrayWindow.h"
#include "Platform/StatusItem.h"

#include <QTimer>

namespace velquarin {

//! The item in a tray of the older kind, which shows small windows of other programs.
//! Source: docs/decisions/0014-own-tray-window.md
class XEmbedStatusItem : public QObject
{
    Q_OBJECT
public:
    explicit XEmbedStatusItem(const StatusItemAppearance &appearance, QObject *parent = nullptr);
    ~XEmbedStatusItem() override;

    void setAppearance(const StatusItemAppearance &appearance);

Q_SIGNALS:
    //! A left or middle click; @p position is the middle of the icon.
    void activated(QPoint position);

    //! A right click where the pointer is.
    void menuRequested(QPoint position);

private:
    void react(Qt::MouseButton button, QRect place);
    void waitToExplain(bool isPointedAt);
    void explain() const;

    TrayWindow m_window;
    QString m_explanation;
    QTimer m_rest;  // how long the pointer has to rest before something is explained
};

}  // namespace velquarin
