// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/NotificationCenter.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>

#include <chrono>
#include <optional>

namespace velquarin {

class SessionBus;

//! How long a notification server may take for an answer before it counts as none.
struct NotificationPatience
{
    std::chrono::milliseconds forQuestions = std::chrono::seconds(5);
    std::chrono::milliseconds forShowing = std::chrono::seconds(25);
};

//! The notifications of the desktop, over org.freedesktop.Notifications.
//!
//! Authorized: a server is there, or the bus can start one, and answers as it should. Listens to the bus only while a
//! notification is open. Source: Desktop Notifications Specification 1.2; docs/decisions/0003-reminders.md
class FreedesktopNotifications : public NotificationCenter
{
    Q_OBJECT
public:
    explicit FreedesktopNotifications(SessionBus &bus, NotificationPatience patience = {});

    [[nodiscard]] QCoro::Task<bool> isAuthorized() override;
    [[nodiscard]] QCoro::Task<bool> requestAuthorization() override;
    void setCategory(const NotificationCategory &category) override { m_category = category; }
    [[nodiscard]] QCoro::Task<> add(NotificationRequest request) override;
    void withdraw() override;

    //! Takes it back, and waits at most @p patience for it to be gone. For the end of the program: nobody would answer
    //! the buttons any more, nor take the notification back when its day is over.
    void withdrawAndWait(std::chrono::milliseconds patience);

private:
    //! A notification that is on the screen as far as we know.
    struct Shown
    {
        QString server;  //!< unique name of the connection that shows it
        uint id = 0;
        QString activationToken;
    };

    void listen();
    void stopListening();
    Q_SLOT void hear(const QDBusMessage &signal);
    void act(const QString &actionKey);

    SessionBus &m_bus;
    NotificationPatience m_patience;
    NotificationCategory m_category;
    std::optional<Shown> m_shown;
};

}  // namespace velquarin
