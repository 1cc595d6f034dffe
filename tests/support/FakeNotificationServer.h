// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <chrono>
#include <functional>

namespace velquarin::test {

//! A call of Notify as it arrived.
struct NotifyCall
{
    QString application;
    uint replacesId = 0;
    QString icon;
    QString summary;
    QString body;
    QStringList actions;
    QVariantMap hints;
    int timeout = 0;
};

//! A notification server on a connection of its own, which it gives up when it goes, as a server that ends. It
//! answers each of its members as it is told to.
class FakeNotificationServer : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
    Q_PROPERTY(bool Inhibited READ isInhibited)
public:
    enum class Mood { Answers, Fails, IsSilent, TalksNonsense, TakesItsTime };
    enum class Audience { Caller, Everybody };

    FakeNotificationServer()
        : m_connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, newName()))
    {
        m_connection.registerObject(path(), this,
                                    QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
        m_connection.registerService(interface());
    }

    ~FakeNotificationServer() override { QDBusConnection::disconnectFromBus(m_connection.name()); }

    QString name = QStringLiteral("Fake");
    QStringList capabilities{QStringLiteral("actions"), QStringLiteral("body")};
    QHash<QString, Mood> moods;  //!< by member
    QString errorName = QStringLiteral("org.freedesktop.DBus.Error.Failed");
    QString errorText = QStringLiteral("Out of order");
    std::chrono::milliseconds time{2000};     //!< that it takes in that mood
    bool holdsBack = false;                   //!< as while the user is not to be disturbed
    std::function<void(uint id)> afterReply;  //!< runs when the reply to Notify is on its way
    std::function<void()> whenAskedWhatItCan;

    [[nodiscard]] bool isInhibited() const { return holdsBack; }
    [[nodiscard]] const QStringList &asked() const { return m_asked; }
    [[nodiscard]] const QList<NotifyCall> &notified() const { return m_notified; }
    [[nodiscard]] const QList<uint> &closed() const { return m_closed; }
    [[nodiscard]] uint lastId() const { return m_lastId; }

    //! As a server whose place another takes: it lives on for those who know it.
    void giveUpName() { m_connection.unregisterService(interface()); }

    void invoke(uint id, const QString &action, Audience audience = Audience::Caller)
    {
        say(QStringLiteral("ActionInvoked"), {id, action}, audience);
    }
    void give(uint id, const QString &token) { say(QStringLiteral("ActivationToken"), {id, token}, Audience::Caller); }
    void dismiss(uint id, Audience audience = Audience::Caller)
    {
        say(QStringLiteral("NotificationClosed"), {id, 2U}, audience);
    }

public Q_SLOTS:
    QStringList GetCapabilities()
    {
        if (whenAskedWhatItCan)
            whenAskedWhatItCan();
        if (takes(QStringLiteral("GetCapabilities")) && isSlowIn(QStringLiteral("GetCapabilities")))
            answerLater(capabilities);
        return capabilities;
    }

    QString GetServerInformation(QString &vendor, QString &version, QString &specification)
    {
        vendor = QStringLiteral("Velquarin");
        version = QStringLiteral("1");
        specification = QStringLiteral("1.2");
        takes(QStringLiteral("GetServerInformation"));
        return name;
    }

    uint Notify(const QString &application, uint replacesId, const QString &icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int timeout)
    {
        m_notified << NotifyCall{application, replacesId, icon, summary, body, actions, hints, timeout};
        m_caller = message().service();
        if (!takes(QStringLiteral("Notify")))
            return 0;
        m_lastId = replacesId == 0 ? ++m_issued : replacesId;
        if (isSlowIn(QStringLiteral("Notify")))
            answerLater(m_lastId);
        if (afterReply) {
            setDelayedReply(true);
            m_connection.send(message().createReply(m_lastId));
            afterReply(m_lastId);
        }
        return m_lastId;
    }

    void CloseNotification(uint id)
    {
        m_closed << id;
        takes(QStringLiteral("CloseNotification"));
    }

private:
    static QString path() { return QStringLiteral("/org/freedesktop/Notifications"); }
    static QString interface() { return QStringLiteral("org.freedesktop.Notifications"); }

    static QString newName()
    {
        static int made = 0;
        return QStringLiteral("notification-server-%1").arg(++made);
    }

    // Whether the call is to be answered as it should.
    bool takes(const QString &member)
    {
        m_asked << member;
        const auto mood = moods.value(member, Mood::Answers);
        if (mood == Mood::Answers || mood == Mood::TakesItsTime)
            return true;
        setDelayedReply(true);
        if (mood == Mood::Fails)
            m_connection.send(message().createErrorReply(errorName, errorText));
        if (mood == Mood::TalksNonsense)
            m_connection.send(message().createReply(QVariantList{true, 1.5}));
        return false;
    }

    [[nodiscard]] bool isSlowIn(const QString &member) const { return moods.value(member) == Mood::TakesItsTime; }

    void answerLater(const QVariant &answer)
    {
        setDelayedReply(true);
        QTimer::singleShot(time, Qt::PreciseTimer, this,
                           [this, reply = message().createReply(answer)] { m_connection.send(reply); });
    }

    void say(const QString &member, const QVariantList &arguments, Audience audience)
    {
        auto signal = audience == Audience::Caller
                          ? QDBusMessage::createTargetedSignal(m_caller, path(), interface(), member)
                          : QDBusMessage::createSignal(path(), interface(), member);
        signal.setArguments(arguments);
        m_connection.send(signal);
    }

    QDBusConnection m_connection;
    QStringList m_asked;
    QList<NotifyCall> m_notified;
    QList<uint> m_closed;
    QString m_caller;
    uint m_issued = 0;
    uint m_lastId = 0;
};

}  // namespace velquarin::test
