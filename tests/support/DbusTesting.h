// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTest>

#include <optional>

namespace velquarin::test {

//! A connection of its own to the session bus, closed with the object.
class SecondConnection
{
public:
    explicit SecondConnection(const char *name)
        : m_name(QLatin1String(name))
        , m_connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name))
    {
    }
    SecondConnection(const SecondConnection &) = delete;
    SecondConnection &operator=(const SecondConnection &) = delete;
    ~SecondConnection() { QDBusConnection::disconnectFromBus(m_name); }

    [[nodiscard]] QDBusConnection &operator*() { return m_connection; }
    [[nodiscard]] QDBusConnection *operator->() { return &m_connection; }

private:
    QString m_name;
    QDBusConnection m_connection;
};

//! Calls an object that may live in this very thread, and turns the event loop until it has answered.
inline QDBusMessage answerOf(QDBusConnection &connection, const QDBusMessage &call)
{
    QDBusPendingCallWatcher watcher(connection.asyncCall(call));
    QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
    if (!watcher.isFinished())
        finished.wait();
    return watcher.reply();
}

inline QDBusMessage answerOf(QDBusConnection &connection, const QString &service, const QString &path,
                             const QString &interface, const char *method, const QVariantList &arguments = {})
{
    auto call = QDBusMessage::createMethodCall(service, path, interface, QLatin1String(method));
    call.setArguments(arguments);
    return answerOf(connection, call);
}

//! Keeps the signals of one interface of one object, in the order of their arrival.
class SignalRecorder : public QObject
{
    Q_OBJECT
public:
    SignalRecorder(QDBusConnection &connection, const QString &service, const QString &path, const QString &interface,
                   const QStringList &names)
    {
        for (const auto &name : names)
            connection.connect(service, path, interface, name, this, SLOT(record(QDBusMessage)));
    }

    [[nodiscard]] QStringList names() const
    {
        QStringList all;
        for (const auto &message : messages)
            all.append(message.member());
        return all;
    }

    [[nodiscard]] QVariantList argumentsOf(const char *name) const
    {
        for (const auto &message : messages) {
            if (message.member() == QLatin1String(name))
                return message.arguments();
        }
        return {};
    }

    QList<QDBusMessage> messages;

private:
    Q_SLOT void record(const QDBusMessage &message) { messages.append(message); }
};

//! A watcher that writes down which items were announced to it, by sender and path. It says nothing of those who show
//! what it collects before viewerGoes() or viewerComes().
class FakeStatusWatcher : public QDBusVirtualObject
{
public:
    explicit FakeStatusWatcher(QDBusConnection connection)
        : m_connection(std::move(connection))
    {
        m_connection.registerVirtualObject(path(), this);
    }
    ~FakeStatusWatcher() override { m_connection.unregisterObject(path()); }

    void appear() { QVERIFY(m_connection.registerService(name())); }
    void disappear() { QVERIFY(m_connection.unregisterService(name())); }

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    void viewerGoes() { m_hasViewer = false; }
    void viewerComes()
    {
        m_hasViewer = true;
        m_connection.send(QDBusMessage::createSignal(path(), name(), QStringLiteral("StatusNotifierHostRegistered")));
    }

    //! One of those who show what is collected, of whom there may be more.
    void tellThatOneWent()
    {
        m_connection.send(QDBusMessage::createSignal(path(), name(), QStringLiteral("StatusNotifierHostUnregistered")));
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (!isReady) {
            ++refusals;
            return false;
        }
        if (message.member() == QLatin1String("Get") && m_hasViewer) {
            ++questions;
            return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(*m_hasViewer))));
        }
        if (message.member() != QLatin1String("RegisterStatusNotifierItem"))
            return false;
        announced.append(message.service() + message.arguments().at(0).toString());
        return connection.send(message.createReply());
    }

    QStringList announced;
    int questions = 0;    //!< how often it was asked for a viewer
    bool isReady = true;  //!< some have their name before they answer to it
    int refusals = 0;     //!< how often it was asked something before it was ready

private:
    static QString name() { return QStringLiteral("org.kde.StatusNotifierWatcher"); }
    static QString path() { return QStringLiteral("/StatusNotifierWatcher"); }

    QDBusConnection m_connection;
    std::optional<bool> m_hasViewer;
};

}  // namespace velquarin::test
