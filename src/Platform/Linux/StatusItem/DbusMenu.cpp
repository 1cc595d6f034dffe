// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/DbusMenu.h"

#include <QDBusError>
#include <QGuiApplication>

#include <algorithm>
#include <iterator>
#include <utility>

namespace velquarin {

namespace {

const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
constexpr int rootId = 0;

QDBusMessage noSuchItem(const QDBusMessage &call, int id)
{
    return call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("No menu item with the id %1").arg(id));
}

bool readsAlike(const MenuEntry &left, const MenuEntry &right)
{
    return left.text == right.text && left.keyEquivalent == right.keyEquivalent;
}

}  // namespace

DbusMenu::DbusMenu(QDBusConnection connection, QString iconThemePath, QObject *parent)
    : DbusObject(std::move(connection), objectPath(), menuInterface, parent)
    , m_iconThemePath(std::move(iconThemePath))
{
    registerDbusMenuTypes();
    const auto method = [this](const char *signature, auto handler) {
        return Method{QLatin1String(signature),
                      [this, handler](const QDBusMessage &call) { return (this->*handler)(call); }};
    };
    setMethods({
        {QStringLiteral("GetLayout"), method("iias", &DbusMenu::getLayout)},
        {QStringLiteral("GetGroupProperties"), method("aias", &DbusMenu::getGroupProperties)},
        {QStringLiteral("GetProperty"), method("is", &DbusMenu::getProperty)},
        {QStringLiteral("Event"), method("isvu", &DbusMenu::oneEvent)},
        {QStringLiteral("EventGroup"), method("a(isvu)", &DbusMenu::eventGroup)},
        {QStringLiteral("AboutToShow"), method("i", &DbusMenu::aboutToShow)},
        {QStringLiteral("AboutToShowGroup"), method("ai", &DbusMenu::aboutToShowGroup)},
    });
}

QString DbusMenu::objectPath()
{
    return QStringLiteral("/StatusNotifierMenu");
}

void DbusMenu::setEntries(const QList<MenuEntry> &entries)
{
    const auto before = std::exchange(m_entries, entries);
    if (std::ranges::equal(before, entries, readsAlike))
        return;
    m_firstId += static_cast<int>(before.size());
    send(QStringLiteral("LayoutUpdated"), {++m_revision, rootId});
}

QVariantMap DbusMenu::properties() const
{
    const auto isRightToLeft = QGuiApplication::layoutDirection() == Qt::RightToLeft;
    return {{QStringLiteral("Version"), 3U},
            {QStringLiteral("TextDirection"), isRightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr")},
            {QStringLiteral("Status"), QStringLiteral("normal")},
            {QStringLiteral("IconThemePath"), QStringList{m_iconThemePath}}};
}

std::optional<QVariantMap> DbusMenu::itemProperties(int id) const
{
    if (id == rootId)
        return QVariantMap{{QStringLiteral("children-display"), QStringLiteral("submenu")}};
    if (id < m_firstId || id - m_firstId >= m_entries.size())
        return std::nullopt;
    return dbusMenuProperties(m_entries.at(id - m_firstId));
}

QList<int> DbusMenu::allIds() const
{
    QList<int> ids{rootId};
    for (int i = 0; i < m_entries.size(); ++i)
        ids.append(m_firstId + i);
    return ids;
}

DbusMenuLayoutItem DbusMenu::layoutOf(int id, int depth, const QStringList &names) const
{
    DbusMenuLayoutItem item{id, selected(itemProperties(id).value_or(QVariantMap()), names), {}};
    if (id != rootId || depth == 0)
        return item;
    const auto ids = allIds();
    for (const auto child : ids) {
        if (child != rootId)
            item.children.push_back(layoutOf(child, 0, names));
    }
    return item;
}

QDBusMessage DbusMenu::getLayout(const QDBusMessage &call)
{
    const auto arguments = call.arguments();
    const auto id = arguments.at(0).toInt();
    if (!itemProperties(id))
        return noSuchItem(call, id);
    const auto layout = layoutOf(id, arguments.at(1).toInt(), arguments.at(2).toStringList());
    return call.createReply({m_revision, QVariant::fromValue(layout)});
}

QDBusMessage DbusMenu::getGroupProperties(const QDBusMessage &call)
{
    const auto asked = qdbus_cast<QList<int>>(call.arguments().at(0));
    const auto ids = asked.isEmpty() ? allIds() : asked;
    QList<DbusMenuItem> items;
    for (const auto id : ids) {
        if (const auto properties = itemProperties(id))
            items.append({id, selected(*properties, call.arguments().at(1).toStringList())});
    }
    return call.createReply(QVariant::fromValue(items));
}

QDBusMessage DbusMenu::getProperty(const QDBusMessage &call)
{
    const auto id = call.arguments().at(0).toInt();
    const auto name = call.arguments().at(1).toString();
    const auto properties = itemProperties(id);
    if (!properties)
        return noSuchItem(call, id);
    const auto value = properties->value(name, dbusMenuDefault(name));
    if (!value.isValid())
        return call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("No such property: ") + name);
    return call.createReply(QVariant::fromValue(QDBusVariant(value)));
}

QDBusMessage DbusMenu::oneEvent(const QDBusMessage &call)
{
    const auto arguments = call.arguments();
    const DbusMenuEvent event{arguments.at(0).toInt(), arguments.at(1).toString(), {}, arguments.at(3).toUInt()};
    if (!itemProperties(event.id))
        return noSuchItem(call, event.id);
    react(event);
    return call.createReply();
}

QDBusMessage DbusMenu::eventGroup(const QDBusMessage &call)
{
    const auto events = qdbus_cast<QList<DbusMenuEvent>>(call.arguments().at(0));
    QList<int> unknown;
    for (const auto &event : events) {
        if (itemProperties(event.id))
            react(event);
        else
            unknown.append(event.id);
    }
    if (!events.isEmpty() && unknown.size() == events.size())
        return noSuchItem(call, unknown.first());
    return call.createReply(QVariant::fromValue(unknown));
}

// The action waits for the next turn of the loop: it may open a window or end the program, and the host must
// have its answer before that.
void DbusMenu::react(const DbusMenuEvent &event)
{
    if (event.kind == QLatin1String("opened") && event.id == rootId)
        Q_EMIT opened();
    if (event.kind != QLatin1String("clicked") || event.id == rootId)
        return;
    if (const auto &action = m_entries.at(event.id - m_firstId).action)
        QMetaObject::invokeMethod(this, action, Qt::QueuedConnection);
}

QDBusMessage DbusMenu::aboutToShow(const QDBusMessage &call)
{
    const auto id = call.arguments().at(0).toInt();
    if (id == rootId)
        Q_EMIT opened();
    return itemProperties(id) ? call.createReply(false) : noSuchItem(call, id);
}

QDBusMessage DbusMenu::aboutToShowGroup(const QDBusMessage &call)
{
    const auto ids = qdbus_cast<QList<int>>(call.arguments().at(0));
    if (ids.contains(rootId))
        Q_EMIT opened();
    QList<int> unknown;
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(unknown), [&](int id) { return !itemProperties(id); });
    if (!ids.isEmpty() && unknown.size() == ids.size())
        return noSuchItem(call, unknown.first());
    return call.createReply({QVariant::fromValue(QList<int>()), QVariant::fromValue(unknown)});
}

}  // namespace velquarin
