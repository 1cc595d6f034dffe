// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/DbusMenuLayout.h"

#include "Platform/Linux/Session/DbusObject.h"

#include <QDBusMetaType>

namespace velquarin {

QDBusArgument &operator<<(QDBusArgument &argument, const DbusMenuLayoutItem &item)
{
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const auto &child : item.children)
        argument << QDBusVariant(QVariant::fromValue(child));
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DbusMenuLayoutItem &item)
{
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.beginArray();
    item.children.clear();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        item.children.push_back(qdbus_cast<DbusMenuLayoutItem>(child.variant()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const DbusMenuItem &item)
{
    return writeStructure(argument, item.id, item.properties);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DbusMenuItem &item)
{
    return readStructure(argument, item.id, item.properties);
}

QDBusArgument &operator<<(QDBusArgument &argument, const DbusMenuEvent &event)
{
    return writeStructure(argument, event.id, event.kind, event.data, event.timestamp);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DbusMenuEvent &event)
{
    return readStructure(argument, event.id, event.kind, event.data, event.timestamp);
}

void registerDbusMenuTypes()
{
    qDBusRegisterMetaType<DbusMenuLayoutItem>();
    qDBusRegisterMetaType<DbusMenuItem>();
    qDBusRegisterMetaType<QList<DbusMenuItem>>();
    qDBusRegisterMetaType<DbusMenuEvent>();
    qDBusRegisterMetaType<QList<DbusMenuEvent>>();
    qDBusRegisterMetaType<QList<QStringList>>();
}

QVariantMap dbusMenuProperties(const MenuEntry &entry)
{
    if (entry.isSeparator())
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    auto label = entry.text;
    QVariantMap properties{{QStringLiteral("label"), label.replace(u'_', QLatin1String("__"))}};
    if (!entry.keyEquivalent.isEmpty()) {
        const QList<QStringList> shortcut{{QStringLiteral("Control"), entry.keyEquivalent}};
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcut));
    }
    return properties;
}

QVariant dbusMenuDefault(const QString &property)
{
    static const QVariantMap defaults{
        {QStringLiteral("type"), QStringLiteral("standard")},
        {QStringLiteral("label"), QString()},
        {QStringLiteral("enabled"), true},
        {QStringLiteral("visible"), true},
        {QStringLiteral("icon-name"), QString()},
        {QStringLiteral("icon-data"), QByteArray()},
        {QStringLiteral("shortcut"), QVariant::fromValue(QList<QStringList>())},
        {QStringLiteral("toggle-type"), QString()},
        {QStringLiteral("toggle-state"), -1},
        {QStringLiteral("children-display"), QString()},
        {QStringLiteral("disposition"), QStringLiteral("normal")},
    };
    return defaults.value(property);
}

QVariantMap selected(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty())
        return properties;
    QVariantMap chosen;
    for (const auto &name : names) {
        if (properties.contains(name))
            chosen.insert(name, properties.value(name));
    }
    return chosen;
}

}  // namespace velquarin
