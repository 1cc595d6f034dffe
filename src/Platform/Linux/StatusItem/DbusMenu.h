// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Session/DbusObject.h"
#include "Platform/Linux/StatusItem/DbusMenuLayout.h"
#include "Platform/StatusItem.h"

#include <optional>

namespace velquarin {

//! A menu that the status bar draws. Actions run on the main thread after the host has had its answer, so that
//! an action may end the program. Source: com.canonical.dbusmenu, version 3
class DbusMenu : public DbusObject
{
    Q_OBJECT
public:
    //! Stands on @p connection under objectPath() while it exists.
    DbusMenu(QDBusConnection connection, QString iconThemePath, QObject *parent = nullptr);

    [[nodiscard]] static QString objectPath();

    //! Replaces the entries and tells the host where they read otherwise. An identifier is never used for a second
    //! entry, so that a click in a menu that was drawn earlier does nothing else than it says.
    void setEntries(const QList<MenuEntry> &entries);

Q_SIGNALS:
    //! The host shows the menu to the user, or is about to: some say only the one, some only the other.
    void opened();

private:
    QDBusMessage getLayout(const QDBusMessage &call);
    QDBusMessage getGroupProperties(const QDBusMessage &call);
    QDBusMessage getProperty(const QDBusMessage &call);
    QDBusMessage oneEvent(const QDBusMessage &call);
    QDBusMessage eventGroup(const QDBusMessage &call);
    QDBusMessage aboutToShow(const QDBusMessage &call);
    QDBusMessage aboutToShowGroup(const QDBusMessage &call);

    [[nodiscard]] QVariantMap properties() const override;
    [[nodiscard]] std::optional<QVariantMap> itemProperties(int id) const;
    [[nodiscard]] DbusMenuLayoutItem layoutOf(int id, int depth, const QStringList &names) const;
    [[nodiscard]] QList<int> allIds() const;
    void react(const DbusMenuEvent &event);

    QString m_iconThemePath;
    QList<MenuEntry> m_entries;
    int m_firstId = 1;  // the entries are numbered from here; 0 is the menu itself
    uint m_revision = 1;
};

}  // namespace velquarin
