// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

#include <memory>

class QDBusServiceWatcher;

namespace velquarin {

class SessionBus;

//! Whether the user has asked the desktop for dark windows, as the desktop's portal tells it. Without a bus or a portal
//! he has not; each portal that comes is asked. Nothing waits for the answer, which comes through the event loop.
//! Source: XDG Desktop Portal, org.freedesktop.portal.Settings, "color-scheme" of org.freedesktop.appearance
class ColorSchemeSetting : public QObject
{
    Q_OBJECT
public:
    explicit ColorSchemeSetting(SessionBus &bus, QObject *parent = nullptr);
    ~ColorSchemeSetting() override;

    [[nodiscard]] bool asksForDark() const { return m_asksForDark; }

Q_SIGNALS:
    //! Never for an equal value.
    void changed(bool asksForDark);

private:
    void follow();
    void awaitPortals(const QDBusConnection &connection);
    void ask(QDBusConnection connection);
    void take(const QVariant &value);
    Q_SLOT void hear(const QString &group, const QString &key, const QDBusVariant &value);

    SessionBus &m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_portals;  // on the connection that stands
    bool m_asksForDark = false;
};

}  // namespace velquarin
