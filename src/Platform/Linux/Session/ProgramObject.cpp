// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/ProgramObject.h"

#include <QDBusMetaType>

#include <utility>

namespace velquarin {

namespace {

// Whoever wants these asks for them: of many repositories they are long, and they change with every commit.
const QStringList toldByNameAlone{QStringLiteral("CommitsPerDay"), QStringLiteral("Repositories")};

QString tokenIn(const QVariant &platformData)
{
    const auto data = qdbus_cast<QVariantMap>(platformData);
    const auto token = data.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? data.value(QStringLiteral("desktop-startup-id")).toString() : token;
}

}  // namespace

void registerProgramTypes()
{
    qDBusRegisterMetaType<QMap<QString, qint64>>();
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

ProgramObject::ProgramObject(QDBusConnection connection, QVariantMap properties, QObject *parent)
    : DbusObject(std::move(connection), ProgramName::path(), ProgramName::interface(), parent)
    , m_properties(std::move(properties))
{
    registerProgramTypes();
    setMethods(ownMethods());
    setMethods(QStringLiteral("org.freedesktop.Application"), applicationMethods());
}

void ProgramObject::publish(QVariantMap properties)
{
    const auto before = std::exchange(m_properties, std::move(properties));
    sendChangedProperties(before, toldByNameAlone);
}

DbusObject::Methods ProgramObject::ownMethods()
{
    const auto refresh = [this](const QDBusMessage &call) {
        Q_EMIT refreshRequested();
        return call.createReply();
    };
    const auto show = [this](const QDBusMessage &call) {
        Q_EMIT activated(call.arguments().at(0).toString());
        return call.createReply();
    };
    return {{QStringLiteral("Refresh"), {QString(), refresh}},
            {QStringLiteral("ShowDashboard"), {QStringLiteral("s"), show}}};
}

// There is nothing to open: a file given to the program shows the dashboard like a bare start.
DbusObject::Methods ProgramObject::applicationMethods()
{
    const auto activate = [this](const QDBusMessage &call) {
        Q_EMIT activated(tokenIn(call.arguments().constLast()));
        return call.createReply();
    };
    return {{QStringLiteral("Activate"), {QStringLiteral("a{sv}"), activate}},
            {QStringLiteral("Open"), {QStringLiteral("asa{sv}"), activate}},
            {QStringLiteral("ActivateAction"), {QStringLiteral("sava{sv}"), activate}}};
}

}  // namespace velquarin
