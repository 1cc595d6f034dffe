// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <chrono>

namespace velquarin {

//! Whether somebody at a bus's address begins to speak the protocol within @p patience; blocks no longer than that. The
//! library behind Qt's connections waits for ever for a bus that accepts and stays silent.
//! Shape:  @p address as in DBUS_SESSION_BUS_ADDRESS. An address of a kind that cannot be tried passes.
//! Source: D-Bus Specification, "Server Addresses" and "Authentication Protocol"
[[nodiscard]] bool busAnswers(const QByteArray &address, std::chrono::milliseconds patience);

//! The session bus's address: DBUS_SESSION_BUS_ADDRESS, or the socket in XDG_RUNTIME_DIR; empty where there is neither.
//! Source: D-Bus Specification, "Message Bus Types"
[[nodiscard]] QByteArray sessionBusAddress();

//! The one connection to the user's session bus. A bus that is missing, dies or comes back changes nothing
//! for the rest of the program: whoever needs the bus asks for it anew, and is told when it has to announce
//! itself again. Main thread only. Source: D-Bus Specification, "Message Bus Specification"
class SessionBus : public QObject
{
    Q_OBJECT
public:
    explicit SessionBus(QObject *parent = nullptr);
    ~SessionBus() override;

    //! The live connection; made now where there is none and a bus answers. isConnected() is false where none
    //! does.
    [[nodiscard]] QDBusConnection connection();

Q_SIGNALS:
    //! A connection stands, the first or a new one after a loss: names, objects and watches must be set up on
    //! it.
    void connected();

    //! The bus is gone, with all that was registered on it.
    void disconnected();

private:
    [[nodiscard]] bool isBusThere();
    void connectToBus();
    Q_SLOT void forgetConnection();

    QString m_name;
    int m_looks = 0;
    int m_attempts = 0;
};

//! The reply to @p call, or the error message that came instead: of the other side, of the bus, of a
//! connection that does not stand, or of a reply that took longer than @p timeout. Waits without blocking, and
//! goes on in step with the signals of the connection: what the other side sent after its reply comes after.
[[nodiscard]] QCoro::Task<QDBusMessage> replyTo(QDBusMessage call, QDBusConnection connection,
                                                std::chrono::milliseconds timeout);

}  // namespace velquarin
