// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>
#include <QTimer>

#include <memory>

class QDBusServiceWatcher;

namespace velquarin {

class SessionBus;

//! Whether it writes light on dark.
[[nodiscard]] bool isDark(const QPalette &palette);

//! The palette for what shall be dark or may be as it is. Shape: @p ofDesktop itself where it serves; else one of our own,
//! in which what is selected keeps the desktop's accent.
[[nodiscard]] QPalette darkenedWhere(bool shallBeDark, const QPalette &ofDesktop);

//! Whether the user has asked the desktop for dark windows, as the desktop's portal tells it. Without a bus or a portal
//! nobody has; each portal that comes is asked. Nothing waits for the answer, which comes through the event loop.
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
    QCoro::Task<> ask(QDBusConnection connection);
    void take(const QVariant &value);
    Q_SLOT void hear(const QString &group, const QString &key, const QDBusVariant &value);

    SessionBus &m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_portals;  // on the connection that stands
    bool m_asksForDark = false;
};

//! Keeps the program's palette as dark as the user wants it where the desktop says so and its palette does not follow, as
//! GNOME's does not: a style switch there leaves the theme that Qt takes its colours from as it was. A palette
//! that is dark already stays as it is; each new one of the desktop's is judged anew.
//! Source: docs/decisions/0007-look.md
class DesktopColors : public QObject
{
    Q_OBJECT
public:
    explicit DesktopColors(SessionBus &bus, QObject *parent = nullptr);

    //! Sees the palette of the program change.
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    //! What the user wants or the desktop's palette has changed, and ours is as it should be.
    void applied();

private:
    void follow();

    ColorSchemeSetting m_setting;
    QTimer m_desktopsTurn{this};
    bool m_isOurs = false;  // the palette that is set
};

}  // namespace velquarin
