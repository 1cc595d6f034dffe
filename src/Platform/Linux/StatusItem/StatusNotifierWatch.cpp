// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusNotifierWatch.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/WhileAlive.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

// Longer than any bar takes to start.
constexpr auto patienceForViewer = 2s;

// As long as the bus itself would wait.
constexpr auto patienceForAnswer = 25s;

// An error's text would otherwise pass for the result.
template <typename Value>
Value resultOf(const QDBusMessage &answer)
{
    const QDBusReply<Value> reply(answer);
    return reply.isValid() ? reply.value() : Value();
}

QDBusMessage questionToBus(const QString &method, const QString &name)
{
    const auto bus = QStringLiteral("org.freedesktop.DBus");
    auto call = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
    call.setArguments({name});
    return call;
}

}  // namespace

StatusNotifierWatch::StatusNotifierWatch(QDBusConnection connection, QObject *parent)
    : QObject(parent)
    , m_connection(std::move(connection))
    , m_names(watcherName, m_connection, QDBusServiceWatcher::WatchForOwnerChange)
    , m_asker(std::make_unique<QObject>())
{
    connect(&m_names, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) { ownerChanged(owner); });
    // A signal that named its sender would make the connection ask the bus for it, and wait.
    m_connection.connect({}, watcherPath, watcherName, QStringLiteral("StatusNotifierHostRegistered"), this,
                         SLOT(viewerCame(QDBusMessage)));
    m_connection.connect({}, watcherPath, watcherName, QStringLiteral("StatusNotifierHostUnregistered"), this,
                         SLOT(viewerWent(QDBusMessage)));
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceForViewer);
    connect(&m_patience, &QTimer::timeout, this, [this] { tell(false); });
    // On the next turn of the loop: where there is no bus the answer comes at once, before anybody listens.
    QTimer::singleShot(0, this, &StatusNotifierWatch::askForOwner);
}

QCoro::Task<QDBusMessage> StatusNotifierWatch::answerTo(const QDBusMessage &question)
{
    return whileAlive(m_asker.get(), replyTo(question, m_connection, patienceForAnswer));
}

QCoro::Task<> StatusNotifierWatch::askForOwner()
{
    const auto question = questionToBus(QStringLiteral("GetNameOwner"), watcherName);
    const auto answer = co_await answerTo(question);
    ownerChanged(resultOf<QString>(answer));
}

void StatusNotifierWatch::ownerChanged(const QString &owner)
{
    m_asker = std::make_unique<QObject>();
    m_owner = owner;
    m_host.reset();
    m_hasViewer = false;
    m_isShown.reset();
    m_patience.stop();
    if (owner.isEmpty())
        Q_EMIT absent();
    else
        askForProcess(owner);
}

QCoro::Task<> StatusNotifierWatch::askForProcess(QString owner)
{
    const auto question = questionToBus(QStringLiteral("GetConnectionUnixProcessID"), owner);
    const auto answer = co_await answerTo(question);
    m_host = statusHostOfProcess(resultOf<uint>(answer));
    if (m_hasViewer) {
        tell(true);
        co_return;
    }
    m_patience.start();
    askForViewer();
}

// Whoever cannot answer is taken for one that shows items.
QCoro::Task<> StatusNotifierWatch::askForViewer()
{
    auto question = QDBusMessage::createMethodCall(
        m_owner, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question.setArguments({watcherName, QStringLiteral("IsStatusNotifierHostRegistered")});
    const auto answer = co_await answerTo(question);
    m_answers = answer.type() == QDBusMessage::ReplyMessage;
    const bool isShown = !m_answers || resultOf<QDBusVariant>(answer).variant().toBool();
    if (isShown || !m_patience.isActive())
        tell(isShown);
}

// GNOME's says so in the moment in which it takes its name, before we know that it is GNOME's.
// Budgie's has its name before it answers to it: what it was told until then is lost.
void StatusNotifierWatch::viewerCame(const QDBusMessage &signal)
{
    if (signal.service() != m_owner)
        return;
    m_hasViewer = true;
    if (!std::exchange(m_answers, true))
        m_isShown.reset();
    if (m_host)
        tell(true);
}

// There may be others.
void StatusNotifierWatch::viewerWent(const QDBusMessage &signal)
{
    if (signal.service() == m_owner && m_isShown)
        askForViewer();
}

void StatusNotifierWatch::tell(bool isShown)
{
    m_patience.stop();
    const auto told = std::exchange(m_isShown, isShown);
    if (!told)
        Q_EMIT appeared(*m_host, isShown);
    else if (told != isShown)
        Q_EMIT shownChanged(isShown);
}

}  // namespace velquarin
