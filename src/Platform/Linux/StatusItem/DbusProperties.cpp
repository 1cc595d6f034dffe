// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/DbusProperties.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QFile>

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

QDBusMessage answer(const QDBusMessage &call, const QString &interface, const QVariantMap &properties)
{
    const auto member = call.member();
    const auto signature = call.signature();
    const auto isOurs = [&] { return call.arguments().at(0).toString() == interface; };
    if (member == QLatin1String("GetAll") && signature == QLatin1String("s"))
        return call.createReply(isOurs() ? properties : QVariantMap());
    if (member == QLatin1String("Get") && signature == QLatin1String("ss"))
        return valueOf(call, isOurs() ? properties : QVariantMap());
    if (member == QLatin1String("Set") && signature == QLatin1String("ssv"))
        return call.createErrorReply(QDBusError::PropertyReadOnly, QStringLiteral("All properties are read-only"));
    return call.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("No such method: ") + member);
}

}  // namespace

std::optional<QDBusMessage> answerToPropertiesCall(const QDBusMessage &call, const QString &interface,
                                                   const QVariantMap &properties)
{
    if (call.interface() != propertiesInterface)
        return std::nullopt;
    return answer(call, interface, properties);
}

QString interfaceDescription(const QString &interface)
{
    QFile file(QStringLiteral(":/dbus/") + interface + QStringLiteral(".xml"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList changedNames(const QVariantMap &before, const QVariantMap &after)
{
    QStringList names;
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (!after.contains(it.key()) || after.value(it.key()) != it.value())
            names.append(it.key());
    }
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (!before.contains(it.key()))
            names.append(it.key());
    }
    names.sort();
    return names;
}

std::optional<QDBusMessage> propertiesChanged(const QString &path, const QString &interface, const QVariantMap &before,
                                              const QVariantMap &after)
{
    QVariantMap changed;
    QStringList invalidated;
    const auto names = changedNames(before, after);
    for (const auto &name : names) {
        if (after.contains(name))
            changed.insert(name, after.value(name));
        else
            invalidated.append(name);
    }
    if (names.isEmpty())
        return std::nullopt;
    auto signal = QDBusMessage::createSignal(path, propertiesInterface, QStringLiteral("PropertiesChanged"));
    signal.setArguments({interface, changed, invalidated});
    return signal;
}

}  // namespace velquarin
