// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/StatusItem/DbusObject.h"
#include "Platform/Linux/StatusItem/SniProperties.h"
#include "Platform/Linux/StatusItem/StatusHost.h"
#include "Platform/StatusItem.h"

#include <QTimer>

namespace velquarin {

//! The item as a service on the session bus that status bars look at.
//! Source: StatusNotifierItem specification, and docs/decisions/0004-status-item.md
class SniStatusItem : public DbusObject
{
    Q_OBJECT
public:
    //! Stands on @p connection under objectPath() while it exists; nobody looks at it before announce().
    SniStatusItem(QDBusConnection connection, QString iconThemePath, const StatusHost &host,
                  StatusItemAppearance appearance, QObject *parent = nullptr);

    [[nodiscard]] static QString objectPath();

    //! Tells the host what changed; an equal value tells nothing.
    void setAppearance(const StatusItemAppearance &appearance);
    void setHost(const StatusHost &host);

    //! Asks the watcher that is there now to show the item. A host that shows labels is told of the label once more after
    //! it has read the item: GNOME's shows no label that was there before it looked.
    void announce();

    //! The token that the host gave for the next activation; given out once, may be empty.
    [[nodiscard]] QString takeActivationToken();

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

Q_SIGNALS:
    //! A left or middle click at @p position, where the host says.
    void activated(QPoint position, const QString &activationToken);

    //! A right click, from a host that leaves the menu to us.
    void menuRequested(QPoint position);

private:
    [[nodiscard]] QVariantMap properties() const override { return m_properties; }
    [[nodiscard]] Methods methods();
    void activate(QPoint position);
    void refresh();
    void tellChangesSince(const QVariantMap &before);
    void wasReadWhole();

    QString m_iconThemePath;
    StatusHost m_host;
    StatusItemAppearance m_appearance;
    QVariantMap m_properties;
    QString m_activationToken;
    bool m_isLabelDue = false;  // to be told of once more, after the host has taken the item in
    QTimer m_takingIn;
};

}  // namespace velquarin
