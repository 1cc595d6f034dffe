// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/StatusItem/StatusHost.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <functional>
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
    void askForOwner();
    void ownerChanged(const QString &owner);
    void askForProcess(const QString &owner);
    void takeProcess(uint processId);
    void askForViewer();
    void tell(bool isShown);
    Q_SLOT void viewerCame(const QDBusMessage &signal);
    Q_SLOT void viewerWent(const QDBusMessage &signal);
    void ask(const QDBusMessage &question, const std::function<void(const QDBusPendingCall &answer)> &take);
    void askBus(const QString &method, const QString &name,
                const std::function<void(const QDBusPendingCall &answer)> &take);

    QDBusConnection m_connection;
    QDBusServiceWatcher m_names;
    QString m_owner;
    std::optional<StatusHost> m_host;  // once it is known
    bool m_hasViewer = false;          // who said so before that
    std::optional<bool> m_isShown;     // what was told of this watcher
    bool m_answers = true;             // whether the watcher could say who shows what it collects
    QTimer m_patience;                 // with a watcher whose items nobody shows yet
    int m_generation = 0;              // an answer to a question that was asked before the last change is dropped
};

}  // namespace velquarin
