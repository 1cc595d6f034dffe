// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Session/DbusObject.h"

#include <QString>
#include <QVariantMap>

namespace velquarin {

//! The names under which the program stands on the bus.
struct ProgramName
{
    static QString service() { return QStringLiteral("io.velquarin.Velquarin"); }
    static QString path() { return QStringLiteral("/io/velquarin/Velquarin"); }
    static QString interface() { return QStringLiteral("io.velquarin.Velquarin1"); }
};

//! Has those types sent and read over the bus that the program's properties are made of: a number a date ("a{sx}") and
//! records of named values ("aa{sv}"). As often as one likes.
void registerProgramTypes();

//! The running program on the bus: the figures for whoever wants to show them, and the interface through which desktops
//! activate it.
//! Source: io.velquarin.Velquarin1.xml beside this file; Desktop Entry Specification, "D-Bus Activation"
class ProgramObject : public DbusObject
{
    Q_OBJECT
public:
    //! Shows @p properties; none before there are any.
    ProgramObject(QDBusConnection connection, QVariantMap properties, QObject *parent = nullptr);

    //! Shows these from now on, and tells of those whose value is another one.
    void publish(QVariantMap properties);

Q_SIGNALS:
    //! Somebody wants the program on the screen. @p activationToken lets a window take the focus; it may be empty.
    void activated(const QString &activationToken);
    void refreshRequested();

protected:
    [[nodiscard]] QVariantMap properties() const override { return m_properties; }

private:
    [[nodiscard]] Methods ownMethods();
    [[nodiscard]] Methods applicationMethods();

    QVariantMap m_properties;
};

}  // namespace velquarin
