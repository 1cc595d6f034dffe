// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/StatusItem/StatusHost.h"
#include "Platform/StatusItem.h"

#include <QDBusArgument>
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

}  // namespace velquarin
