// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Session/DbusObject.h"
#include "Platform/Linux/StatusItem/StatusHost.h"
#include "Platform/StatusItem.h"

#include <QDBusArgument>
#include <QTimer>
#include <QVariantMap>

namespace velquarin {

// The shapes that org.kde.StatusNotifierItem sends. Source: StatusNotifierItem specification

//! A picture: (iiay). The bytes are as pixelsInNetworkOrder() gives them.
struct SniPixmap
{
    int width = 0;
    int height = 0;
    QByteArray bytes;
    friend bool operator==(const SniPixmap &, const SniPixmap &) = default;
};

//! A tooltip: (sa(iiay)ss).
struct SniToolTip
{
    QString iconName;
    QList<SniPixmap> icon;
    QString title;
    QString text;
    friend bool operator==(const SniToolTip &, const SniToolTip &) = default;
};

QDBusArgument &operator<<(QDBusArgument &argument, const SniPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, SniPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const SniToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, SniToolTip &toolTip);

//! Makes the shapes known to the D-Bus library. Can be called again.
void registerSniTypes();

//! Everything the item says about itself to @p host. Without a title there is no XAyatanaLabel at all, since an
//! empty one makes room for a text on some hosts and hides the icon on others.
[[nodiscard]] QVariantMap sniProperties(const StatusItemAppearance &appearance, const StatusHost &host,
                                        const QString &iconThemePath);

//! What a host that has not heard of the label knows of the item.
[[nodiscard]] QVariantMap withoutLabel(QVariantMap properties);

//! A signal without its object.
struct SniSignal
{
    QString name;
    QVariantList arguments;
    friend bool operator==(const SniSignal &, const SniSignal &) = default;
};

//! The signals of the item's own interface that tell of a change. Most hosts listen to these alone, and two of
//! them take the label from the signal's arguments.
[[nodiscard]] QList<SniSignal> sniSignals(const QVariantMap &before, const QVariantMap &after);

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
