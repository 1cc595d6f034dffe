// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>
#include <QTimer>

#include <memory>
#include <optional>

class QDBusServiceWatcher;

namespace velquarin {

class SessionBus;

//! Whether it writes light on dark.
[[nodiscard]] bool isDark(const QPalette &palette);

//! The palette for what shall be dark or may be as it is. Shape: @p ofDesktop itself where it serves; else one of our own,
//! in which what is selected keeps the desktop's accent.
[[nodiscard]] QPalette darkenedWhere(bool shallBeDark, const QPalette &ofDesktop);

//! How the user wants windows to look, as far as the desktop's portal tells it.
//! Source: XDG Desktop Portal, org.freedesktop.portal.Settings, namespace org.freedesktop.appearance
struct Appearance
{
    bool isDark = false;
    bool isHighContrast = false;
    bool isMotionReduced = false;
    std::optional<QColor> accent = {};

    //! One setting of that namespace. Keys that it does not know change nothing.
    void take(const QString &key, const QVariant &value);
    friend bool operator==(const Appearance &, const Appearance &) = default;
};

//! @p ofDesktop itself where that serves. Else dark, black and white, and with the accent, as it is wanted: a dark palette
//! is never made light, and an accent that the desktop's own palette has holds. @p ofToolkit tells which it has not chosen.
[[nodiscard]] QPalette paletteFor(const Appearance &wanted, const QPalette &ofDesktop, const QPalette &ofToolkit);

//! What the user has asked the desktop for, as the desktop's portal tells it. Without a bus or a portal nobody has; each
//! portal that comes is asked. Nothing waits for the answer, which comes through the event loop.
class AppearanceSettings : public QObject
{
    Q_OBJECT
public:
    explicit AppearanceSettings(SessionBus &bus, QObject *parent = nullptr);
    ~AppearanceSettings() override;

    [[nodiscard]] const Appearance &wanted() const { return m_wanted; }

Q_SIGNALS:
    //! Never for an equal value.
    void changed();

private:
    void follow();
    void awaitPortals(const QDBusConnection &connection);
    QCoro::Task<> ask(QDBusConnection connection);
    void want(const Appearance &wanted);
    Q_SLOT void hear(const QString &group, const QString &key, const QDBusVariant &value);

    SessionBus &m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_portals;  // on the connection that stands
    Appearance m_wanted;
};

//! Keeps the program's palette as the user wants it where the desktop says so and its palette does not follow, as GNOME's
//! does not: a style switch there leaves the theme that Qt takes its colours from as it was. Each new palette of the
//! desktop's is judged anew. Source: docs/decisions/0007-look.md
class DesktopAppearance : public QObject
{
    Q_OBJECT
public:
    explicit DesktopAppearance(SessionBus &bus, QObject *parent = nullptr);

    [[nodiscard]] bool isMotionReduced() const { return m_settings.wanted().isMotionReduced; }

    //! Sees the palette of the program change.
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    //! What the user wants or the desktop's palette has changed, and ours is as it should be.
    void applied();

private:
    void follow();

    AppearanceSettings m_settings;
    QTimer m_desktopsTurn{this};
    bool m_isOurs = false;  // the palette that is set
};

}  // namespace velquarin
