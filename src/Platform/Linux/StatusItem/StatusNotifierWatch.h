// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/StatusItem/StatusHost.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

namespace velquarin {

//! Follows whether a program is there that collects status items, which one, and whether somebody shows them. Tells once
//! where things stand at the start, then at every change; always later, through the event loop. Waits a while for
//! somebody who shows what is collected: a bar that is just starting can miss an item that was there before it looked.
//! Source: StatusNotifierWatcher, in the StatusNotifierItem specification
class StatusNotifierWatch : public QObject
{
    Q_OBJECT
public:
    explicit StatusNotifierWatch(QDBusConnection connection, QObject *parent = nullptr);

Q_SIGNALS:
    //! A watcher is there, for the first time or in place of another, or is ready at last: items must be announced to
    //! it. @p isShown tells whether somebody shows what it collects; one that cannot say is believed to have somebody.
    void appeared(const StatusHost &host, bool isShown);

    //! The first who shows what that watcher collects came, or the last one went.
    void shownChanged(bool isShown);

    //! There is no watcher.
    void absent();

private:
    QCoro::Task<> askForOwner();
    void ownerChanged(const QString &owner);
    QCoro::Task<> askForProcess(QString owner);
    QCoro::Task<> askForViewer();
    void tell(bool isShown);
    Q_SLOT void viewerCame(const QDBusMessage &signal);
    Q_SLOT void viewerWent(const QDBusMessage &signal);
    [[nodiscard]] QCoro::Task<QDBusMessage> answerTo(const QDBusMessage &question);

    QDBusConnection m_connection;
    QDBusServiceWatcher m_names;
    QString m_owner;
    std::optional<StatusHost> m_host;  // once it is known
    bool m_hasViewer = false;          // who said so before that
    std::optional<bool> m_isShown;     // what was told of this watcher
    bool m_answers = true;             // whether the watcher could say who shows what it collects
    QTimer m_patience;                 // with a watcher whose items nobody shows yet
    std::unique_ptr<QObject> m_asker;  // goes when the watcher changes, and with it whatever waits for an answer
};

}  // namespace velquarin
