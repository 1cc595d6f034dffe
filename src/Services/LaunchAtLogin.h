// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

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
    //! Reads the status of @p item, which must outlive this, and changes nothing.
    explicit LaunchAtLogin(LoginItem &item, QObject *parent = nullptr);

    [[nodiscard]] bool isEnabled() const { return m_isEnabled; }

    //! Announces the value, takes it over, then has the desktop follow, also where it is the same as before. No error
    //! is reported: where the desktop does not follow, what it says instead is assigned in the same way, and again for
    //! as long as it fails.
    void setIsEnabled(bool isEnabled);

Q_SIGNALS:
    void isEnabledWillChange(bool newValue);

private:
    void updateLaunchAtLogin();

    LoginItem &m_item;
    bool m_isEnabled;
};

}  // namespace velquarin
