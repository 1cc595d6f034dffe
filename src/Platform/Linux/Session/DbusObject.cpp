// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/DbusObject.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QFile>

#include <utility>

namespace velquarin {

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QDBusMessage valueOf(const QDBusMessage &call, const QVariantMap &properties)
{
    const auto name = call.arguments().at(1).toString();
    const auto value = properties.constFind(name);
    if (value == properties.constEnd())
        return call.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("No such property: ") + name);
    return call.createReply(QVariant::fromValue(QDBusVariant(*value)));
}

QString descriptionOf(const QString &interface)
{
    QFile file(QStringLiteral(":/dbus/") + interface + QStringLiteral(".xml"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QDBusMessage noSuchMethod(const QDBusMessage &call)
{
    return call.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("No such method: ") + call.member());
}

}  // namespace

DbusObject::DbusObject(QDBusConnection connection, QString path, QString interface, QObject *parent)
    : QDBusVirtualObject(parent)
    , m_connection(std::move(connection))
    , m_path(std::move(path))
    , m_interface(std::move(interface))
{
    m_connection.registerVirtualObject(m_path, this);
}

DbusObject::~DbusObject()
{
    m_connection.unregisterObject(m_path);
}

QString DbusObject::introspect(const QString & /*path*/) const
{
    QString description;
    for (auto interface = m_methods.keyBegin(); interface != m_methods.keyEnd(); ++interface)
        description += descriptionOf(*interface);
    return description;
}

bool DbusObject::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.interface() == propertiesInterface)
        return connection.send(answerPropertiesCall(message));
    const auto methods = m_methods.constFind(message.interface().isEmpty() ? m_interface : message.interface());
    if (methods == m_methods.constEnd())
        return false;
    const auto reply = answer(message, *methods);
    return !message.isReplyRequired() || connection.send(reply);
}

QDBusMessage DbusObject::answer(const QDBusMessage &call, const Methods &methods)
{
    const auto method = methods.constFind(call.member());
    if (method == methods.constEnd())
        return noSuchMethod(call);
    if (method->signature != call.signature())
        return call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("Wrong arguments for ") + call.member());
    return method->answer(call);
}

QDBusMessage DbusObject::answerPropertiesCall(const QDBusMessage &call) const
{
    const auto member = call.member();
    const auto signature = call.signature();
    const auto asked = [&] { return call.arguments().at(0).toString() == m_interface ? properties() : QVariantMap(); };
    if (member == QLatin1String("GetAll") && signature == QLatin1String("s"))
        return call.createReply(asked());
    if (member == QLatin1String("Get") && signature == QLatin1String("ss"))
        return valueOf(call, asked());
    if (member == QLatin1String("Set") && signature == QLatin1String("ssv"))
        return call.createErrorReply(QDBusError::PropertyReadOnly, QStringLiteral("All properties are read-only"));
    return noSuchMethod(call);
}

void DbusObject::send(const QString &signal, const QVariantList &arguments)
{
    auto message = QDBusMessage::createSignal(m_path, m_interface, signal);
    message.setArguments(arguments);
    m_connection.send(message);
}

void DbusObject::sendChangedProperties(const QVariantMap &before, const QStringList &byNameAlone)
{
    const auto after = properties();
    QVariantMap changed;
    QStringList invalidated;
    const auto names = changedNames(before, after);
    for (const auto &name : names) {
        if (after.contains(name) && !byNameAlone.contains(name))
            changed.insert(name, after.value(name));
        else
            invalidated.append(name);
    }
    if (names.isEmpty())
        return;
    auto signal = QDBusMessage::createSignal(m_path, propertiesInterface, QStringLiteral("PropertiesChanged"));
    signal.setArguments({m_interface, changed, invalidated});
    m_connection.send(signal);
}

QStringList changedNames(const QVariantMap &before, const QVariantMap &after)
{
    auto names = before.keys() + after.keys();
    names.removeIf([&](const QString &name) {
        return before.contains(name) && after.contains(name) && before.value(name) == after.value(name);
    });
    names.sort();
    names.removeDuplicates();
    return names;
}

}  // namespace velquarin
