// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QHash>
#include <QVariantMap>

#include <functional>

namespace velquarin {

//! An object of ours on the bus, with one interface of its own, all of whose properties are read-only. It answers each
//! call itself: Qt's own answer cannot leave a property out.
//! Source: D-Bus Specification, "org.freedesktop.DBus.Properties"
class DbusObject : public QDBusVirtualObject
{
    Q_OBJECT
public:
    ~DbusObject() override;

    [[nodiscard]] QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

protected:
    struct Method
    {
        QString signature;  //!< of its arguments
        std::function<QDBusMessage(const QDBusMessage &call)> answer;
    };
    using Methods = QHash<QString, Method>;

    //! Stands on @p connection under @p path while it exists. A file named after @p interface in this folder describes it.
    DbusObject(QDBusConnection connection, QString path, QString interface, QObject *parent);

    void setMethods(Methods methods) { m_methods = std::move(methods); }
    [[nodiscard]] virtual QVariantMap properties() const = 0;

    void send(const QString &signal, const QVariantList &arguments);

    //! Tells what has changed since the properties were @p before; nothing where that is nothing.
    void sendChangedProperties(const QVariantMap &before);

    [[nodiscard]] const QDBusConnection &connection() const { return m_connection; }

private:
    [[nodiscard]] QDBusMessage answer(const QDBusMessage &call) const;
    [[nodiscard]] QDBusMessage answerPropertiesCall(const QDBusMessage &call) const;

    QDBusConnection m_connection;
    QString m_path;
    QString m_interface;
    Methods m_methods;
};

//! The names whose values differ, or that only one of the sets has; sorted.
[[nodiscard]] QStringList changedNames(const QVariantMap &before, const QVariantMap &after);

//! Writes a structure that is made of those members.
template <typename... Members>
QDBusArgument &writeStructure(QDBusArgument &argument, const Members &...members)
{
    argument.beginStructure();
    (argument << ... << members);
    argument.endStructure();
    return argument;
}

//! Reads one.
template <typename... Members>
const QDBusArgument &readStructure(const QDBusArgument &argument, Members &...members)
{
    argument.beginStructure();
    (argument >> ... >> members);
    argument.endStructure();
    return argument;
}

}  // namespace velquarin
