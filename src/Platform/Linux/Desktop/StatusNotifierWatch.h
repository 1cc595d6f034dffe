// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Desktop/StatusHost.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

namespace velquarin {

//! Follows whether a program is there that collects status items, and which one. Tells once where things stand
//! at the start, then at every change; always later, through the event loop. Source: StatusNotifierWatcher, in
//! the StatusNotifierItem specification
class StatusNotifierWatch : public QObject
{
    Q_OBJECT
public:
    explicit StatusNotifierWatch(QDBusConnection connection, QObject *parent = nullptr);

Q_SIGNALS:
    //! A watcher is there, for the first time or in place of another: items must be announced to it.
    void appeared(const StatusHost &host);

    //! There is no watcher.
    void absent();

private:
    void askForOwner();
    void ownerChanged(const QString &owner);
    void askForProcess(const QString &owner);
    [[nodiscard]] QDBusMessage askBus(const QString &method, const QString &name) const;

    QDBusConnection m_connection;
    QDBusServiceWatcher m_names;
    int m_generation = 0;  // an answer to a question that was asked before the last change is dropped
};

}  // namespace velquarin
