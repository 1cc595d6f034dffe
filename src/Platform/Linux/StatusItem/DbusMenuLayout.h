// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <QDBusArgument>
#include <QVariantMap>

#include <vector>

namespace velquarin {

// The shapes that com.canonical.dbusmenu sends. Source: com.canonical.dbusmenu, version 3

//! One item with what lies below it: (ia{sv}av).
struct DbusMenuLayoutItem
{
    int id = 0;
    QVariantMap properties;
    std::vector<DbusMenuLayoutItem> children;
    friend bool operator==(const DbusMenuLayoutItem &, const DbusMenuLayoutItem &) = default;
};

//! One item alone: (ia{sv}).
struct DbusMenuItem
{
    int id = 0;
    QVariantMap properties;
    friend bool operator==(const DbusMenuItem &, const DbusMenuItem &) = default;
};

//! Something that happened to an item on the host's side: (isvu).
struct DbusMenuEvent
{
    int id = 0;
    QString kind;
    QDBusVariant data;
    uint timestamp = 0;
    friend bool operator==(const DbusMenuEvent &, const DbusMenuEvent &) = default;
};

QDBusArgument &operator<<(QDBusArgument &argument, const DbusMenuLayoutItem &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DbusMenuLayoutItem &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DbusMenuItem &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DbusMenuItem &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DbusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, DbusMenuEvent &event);

//! Makes the shapes known to the D-Bus library. Can be called again.
void registerDbusMenuTypes();

//! The properties of an entry that differ from the protocol's defaults. Underlines are doubled in labels,
//! since a single one marks an access key; the key equivalent is a shortcut with Control.
[[nodiscard]] QVariantMap dbusMenuProperties(const MenuEntry &entry);

//! What the protocol says a property is where an item does not tell; invalid for a name it does not know.
[[nodiscard]] QVariant dbusMenuDefault(const QString &property);

//! The properties with the given names; all of them where no name is given.
[[nodiscard]] QVariantMap selected(const QVariantMap &properties, const QStringList &names);

}  // namespace velquarin
