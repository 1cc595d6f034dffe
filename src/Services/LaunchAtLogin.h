// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timers.h"

#include <QObject>

#include <memory>

namespace velquarin {

class LoginItem;

//! Whether the application starts when its user logs in, as a value that can be observed and set. What the desktop says
//! is the only truth; it is read when this is made, and again where it could not be changed. Main thread only.
//! Source: docs/decisions/0009-start-at-login.md
class LaunchAtLogin : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setIsEnabled NOTIFY isEnabledWillChange)
public:
    //! Reads the status of @p item and changes nothing. Both must outlive this.
    LaunchAtLogin(LoginItem &item, Timers &timers, QObject *parent = nullptr);

    [[nodiscard]] bool isEnabled() const { return m_isEnabled; }

    //! Announces the value, takes it over, then has the desktop follow, also where it is the same as before. No error
    //! is reported: where the desktop does not follow, what it says instead is assigned in the same way on a later
    //! turn of the event loop, again and again while it keeps failing, ever more slowly. A value that is set
    //! meanwhile takes the place of all that.
    void setIsEnabled(bool isEnabled);

Q_SIGNALS:
    void isEnabledWillChange(bool newValue);

private:
    void assign(bool isEnabled);
    void updateLaunchAtLogin();
    void correct();

    LoginItem &m_item;
    Timers &m_timers;
    bool m_isEnabled;
    Timers::Seconds m_patience{};         // from a failure to its correction
    std::unique_ptr<Timer> m_correction;  // while one is due
};

}  // namespace velquarin
