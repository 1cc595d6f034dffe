// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Notifications/NotifyArguments.h"
#include "Platform/NotificationCenter.h"

#include <QCoroTask>
#include <QSet>

#include <chrono>
#include <vector>

class QDBusMessage;

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
//! Authorized: a server is there, or the bus can start one, and answers. Denied: one is there and does not answer as it
//! should. NotDetermined: none is there and none can be started. There is never more than one notification of a category:
//! a new one takes the place of the last. Listens to the bus only while a notification is open.
//! Source: Desktop Notifications Specification 1.2; docs/decisions/0003-reminders.md
class FreedesktopNotifications : public NotificationCenter
{
    Q_OBJECT
public:
    explicit FreedesktopNotifications(SessionBus &bus, QObject *parent = nullptr, NotificationPatience patience = {});

    [[nodiscard]] QFuture<AuthorizationStatus> authorizationStatus() override;
    [[nodiscard]] QFuture<bool> requestAuthorization() override;
    void setCategories(const QList<NotificationCategory> &categories) override;
    [[nodiscard]] QFuture<bool> add(const NotificationRequest &request) override;
    void withdraw(const QString &requestIdentifier) override;

    //! Takes back all that is shown, and waits at most @p patience for each to be gone. For the end of the program: nobody
    //! would answer the buttons any more, nor take the notification back when its day is over.
    void withdrawAll(std::chrono::milliseconds patience);

private:
    //! A notification that is on the screen as far as we know.
    struct Shown
    {
        QString requestIdentifier;
        NotificationCategory category;
        QString server;  //!< unique name of the connection that shows it
        uint id = 0;
        QString activationToken;
    };
    using Position = std::vector<Shown>::iterator;

    //! Holds the name of a request that is on its way, until the way ends or we do.
    class UnderWay;

    [[nodiscard]] QCoro::Task<bool> show(NotificationRequest request);
    [[nodiscard]] QCoro::Task<QDBusMessage> notify(const NotificationServer &knownServer,
                                                   const NotificationRequest &request);

    [[nodiscard]] NotificationCategory categoryOf(const NotificationRequest &request) const;
    [[nodiscard]] Position sameKind(const NotificationRequest &request);
    [[nodiscard]] Position find(uint id, const QString &server);
    void keep(const NotificationRequest &request, const QString &server, uint id);
    [[nodiscard]] static QDBusMessage closingOf(const Shown &shown);
    void close(Position shown);

    void listen();
    void stopListeningIfIdle();
    Q_SLOT void forgetAll();
    Q_SLOT void keepToken(uint id, const QString &token, const QDBusMessage &signal);
    Q_SLOT void act(uint id, const QString &actionKey, const QDBusMessage &signal);
    Q_SLOT void forgetClosed(uint id, uint reason, const QDBusMessage &signal);

    SessionBus &m_bus;
    NotificationPatience m_patience;
    QList<NotificationCategory> m_categories;
    std::vector<Shown> m_shown;
    QSet<QString> m_underWay;  // requests that were neither answered nor withdrawn yet
    bool m_isListening = false;
};

}  // namespace velquarin
