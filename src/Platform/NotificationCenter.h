// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QString>

#include <stdexcept>

namespace velquarin {

struct NotificationAction
{
    QString identifier;
    QString title;
    bool bringsToForeground = false;
    friend bool operator==(const NotificationAction &, const NotificationAction &) = default;
};

//! A kind of notification and the actions it offers, in the order shown.
struct NotificationCategory
{
    QString identifier;
    QList<NotificationAction> actions;
    friend bool operator==(const NotificationCategory &, const NotificationCategory &) = default;
};

struct NotificationRequest
{
    QString identifier;
    QString title;
    QString body;  //!< plain text
    QString categoryIdentifier;
    friend bool operator==(const NotificationRequest &, const NotificationRequest &) = default;
};

//! The notification service failed or is not there; what() says so in UTF-8. Leave that is refused is no error; a
//! notification that is refused is one.
class NotificationError : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

//! Shows one notification at a time. Main thread only. Every answer comes later, through the event loop; nothing
//! blocks.
class NotificationCenter : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    //! Whether a notification would be shown now. Never fails.
    [[nodiscard]] virtual QCoro::Task<bool> isAuthorized() = 0;

    //! Asks for leave to notify; false where it is refused. Errors: NotificationError where nobody is there to ask.
    [[nodiscard]] virtual QCoro::Task<bool> requestAuthorization() = 0;

    //! Of which kind every notification is.
    virtual void setCategory(const NotificationCategory &category) = 0;

    //! Shows the notification at once, with a sound, even while the user asked not to be disturbed; the last one goes. Not
    //! to be called again before the service has accepted it, or refused. Errors: NotificationError.
    [[nodiscard]] virtual QCoro::Task<> add(NotificationRequest request) = 0;

    //! Takes the notification off the screen, if it is still there.
    virtual void withdraw() = 0;

Q_SIGNALS:
    //! The user wants the application: an action that brings to the foreground, or a click on the
    //! notification itself. @p activationToken lets a window take the focus; it may be empty.
    void openRequested(const QString &activationToken);
};

}  // namespace velquarin
