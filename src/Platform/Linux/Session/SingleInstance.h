// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <memory>

namespace velquarin {

class ProgramObject;
class SessionBus;

//! By what a launcher lets the window that it asked for take the focus, and knows when the start is over. Either may be
//! empty.
struct LaunchTokens
{
    QString activationToken;  //!< of a Wayland compositor
    QString startupId;        //!< of an X11 launcher
    friend bool operator==(const LaunchTokens &, const LaunchTokens &) = default;
};

//! Takes the tokens that this start was given out of the environment, so that no program that we start finds them and
//! passes itself off as us. To be called before the application object is made, which takes one of them for itself.
//! Source: xdg-activation-v1; Startup Notification Protocol 0.1; docs/decisions/0012-activation-tokens.md
[[nodiscard]] LaunchTokens takeLaunchTokens();

//! Sees to it that the program runs once a session: the first to own its name on the session bus and a locked file is
//! the one. The file is for sessions without a bus, and for a bus that comes when the program is already there. A
//! second start asks the first to show itself, where there is a bus to ask on.
//! Source: Desktop Entry Specification, "D-Bus Activation"; flock(2)
class SingleInstance : public QObject
{
    Q_OBJECT
public:
    enum class Role { First, Second };

    //! @p tokens are those of this start. A second instance hands them to the first one.
    explicit SingleInstance(SessionBus &bus, LaunchTokens tokens = {}, QObject *parent = nullptr);
    ~SingleInstance() override;

    //! Finds out which we are. A second instance has asked the first one to show itself when this returns, and should
    //! end. Blocks until the bus has answered: nothing runs yet that could wait for us.
    [[nodiscard]] Role settle();

    //! Shows these properties on the bus, under the names and with the types of io.velquarin.Velquarin1.xml, and tells of
    //! those that changed. A bus that comes back gets them again.
    void publish(const QVariantMap &properties);

Q_SIGNALS:
    //! Somebody started the program again. @p activationToken lets a window take the focus; it may be empty.
    void showRequested(const QString &activationToken);
    //! Somebody on the bus wants a refresh.
    void refreshRequested();

private:
    void exportObject();
    void takeNameAgain();
    [[nodiscard]] bool takeNameOnBus();
    [[nodiscard]] bool takeLock();

    SessionBus &m_bus;
    LaunchTokens m_tokens;
    std::unique_ptr<ProgramObject> m_object;
    QVariantMap m_properties;
    int m_lock = -1;
};

}  // namespace velquarin
