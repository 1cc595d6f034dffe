// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QHash>
#include <QMap>
#include <QVariantMap>

#include <functional>

namespace velquarin {

//! An object of ours on the bus, with one interface of its own, all of whose properties are read-only, and perhaps others
//! without any. It answers each call itself: Qt's own answer cannot leave a property out.
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

    //! Stands on @p connection under @p path while it exists. A resource named after each interface describes it.
    DbusObject(QDBusConnection connection, QString path, QString interface, QObject *parent);

    void setMethods(const Methods &methods) { m_methods.insert(m_interface, methods); }
    void setMethods(const QString &otherInterface, const Methods &methods)
    {
        m_methods.insert(otherInterface, methods);
    }
    [[nodiscard]] virtual QVariantMap properties() const = 0;

    void send(const QString &signal, const QVariantList &arguments);

    //! Tells what has changed since the properties were @p before; nothing where that is nothing. Of those @p byNameAlone
    //! it does not tell the new value.
    void sendChangedProperties(const QVariantMap &before, const QStringList &byNameAlone = {});

    [[nodiscard]] const QDBusConnection &connection() const { return m_connection; }

private:
    [[nodiscard]] static QDBusMessage answer(const QDBusMessage &call, const Methods &methods);
    [[nodiscard]] QDBusMessage answerPropertiesCall(const QDBusMessage &call) const;

    QDBusConnection m_connection;
    QString m_path;
    QString m_interface;
    QMap<QString, Methods> m_methods;  // by interface
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
