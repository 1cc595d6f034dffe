// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <optional>

namespace velquarin {

//! When the user pressed the key or the button that is being answered right now. Main thread only.
//! Source: docs/decisions/0012-activation-tokens.md
class InputTime : public QObject
{
    Q_OBJECT
public:
    //! Sees the events of the whole application from now on.
    explicit InputTime(QObject *parent = nullptr);

    //! Nothing where no input is being answered: a screen reader has pressed, or the answer came later.
    //! Units: milliseconds of the display's clock, which on X11 is the server's.
    [[nodiscard]] std::optional<quint32> now() const { return m_time; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::optional<quint32> m_time;
};

//! A startup id that nobody else has, for a program that the user asks us to start or to bring forward. It carries the
//! moment of that, by which window managers tell a wanted window from one that comes in between.
//! Units: @p userTime in milliseconds of the X server's clock. Source: Startup Notification Protocol 0.1
[[nodiscard]] QString newStartupId(quint32 userTime);

//! newStartupId() for what the user does on that platform of Qt at that time. Empty where the time is not known,
//! and elsewhere than on X11, where nobody reads one and Qt's public interface gives nothing in its place.
[[nodiscard]] QString startupIdOn(const QString &platform, std::optional<quint32> userTime);

//! What launchers are told when the start of that id is over, without the zero byte at its end.
//! Source: Startup Notification Protocol 0.1, "Message format"
[[nodiscard]] QByteArray endOfStartup(const QString &startupId);

//! Tells launchers on X11 that the start of that id is over: until then the pointer shows that something is coming.
//! Does nothing for an empty id and on other displays.
void finishStartup(const QString &startupId);

}  // namespace velquarin
