// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/ProgramClient.h"

#include "Platform/Linux/Session/ProgramObject.h"
#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/WhileAlive.h"

#include <QDBusArgument>

#include <future>
#include <thread>
#include <utility>

namespace velquarin {

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

// A bus may take a connection and never say a word. Whoever waits for that one waits in a thread of its own, which is left
// behind with it.
std::optional<QDBusConnection> connectionWithin(std::chrono::milliseconds patience, const QString &address,
                                                const QString &name)
{
    std::promise<QDBusConnection> promise;
    auto future = promise.get_future();
    std::thread([promise = std::move(promise), address, name]() mutable {
        promise.set_value(QDBusConnection::connectToBus(address, name));
    }).detach();
    return future.wait_for(patience) == std::future_status::ready ? std::optional(future.get()) : std::nullopt;
}

// Qt keeps a connection that failed under its name, and one that hangs is never heard of again.
QString nextName()
{
    static int attempts = 0;
    return QStringLiteral("velquarin-command-%1").arg(++attempts);
}

QDBusMessage callOf(const QString &interface, const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(ProgramName::service(), ProgramName::path(), interface, method);
    message.setArguments(arguments);
    // Who asks for a number does not want a program in the status bar.
    message.setAutoStartService(false);
    return message;
}

// Of one that is gone the bus itself tells; what else goes wrong is one that is there and cannot say it.
RunningProgram::State stateIn(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ReplyMessage)
        return RunningProgram::State::Answered;
    const bool isAbsent = reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
                          reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
    return isAbsent ? RunningProgram::State::Absent : RunningProgram::State::Silent;
}

// Qt leaves what it does not know packed.
QVariant unpacked(const QVariant &value)
{
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return value;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() == QLatin1String("a{sx}"))
        return QVariant::fromValue(qdbus_cast<QMap<QString, qint64>>(argument));
    if (argument.currentSignature() == QLatin1String("aa{sv}"))
        return QVariant::fromValue(qdbus_cast<QList<QVariantMap>>(argument));
    return {};
}

QVariantMap propertiesIn(const QDBusMessage &reply)
{
    QVariantMap properties;
    if (reply.signature() != QLatin1String("a{sv}"))
        return properties;
    const auto packed = qdbus_cast<QVariantMap>(reply.arguments().constFirst());
    for (const auto &[name, value] : packed.asKeyValueRange())
        properties.insert(name, unpacked(value));
    return properties;
}

}  // namespace

ProgramClient::ProgramClient(std::chrono::milliseconds patience, QObject *parent)
    : RunningProgram(parent)
    , m_patience(patience)
{
}

ProgramClient::~ProgramClient()
{
    if (m_connection)
        QDBusConnection::disconnectFromBus(m_connection->name());
}

RunningProgram::State ProgramClient::connectToBus()
{
    if (m_connection)
        return State::Answered;
    const auto address = QString::fromLocal8Bit(sessionBusAddress());
    if (address.isEmpty())
        return State::Absent;
    const auto name = nextName();
    const auto connection = connectionWithin(m_patience, address, name);
    if (!connection)
        return State::Silent;
    if (!connection->isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return State::Absent;
    }
    m_connection = connection;
    listen();
    return State::Answered;
}

void ProgramClient::listen()
{
    m_connection->connect(ProgramName::service(), ProgramName::path(), propertiesInterface,
                          QStringLiteral("PropertiesChanged"), this, SLOT(tellOfChange()));
    m_connection->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                          QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                          SLOT(forgetConnection()));
    m_watcher = std::make_unique<QDBusServiceWatcher>(ProgramName::service(), *m_connection);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this, &ProgramClient::tellOfChange);
}

void ProgramClient::tellOfChange()
{
    Q_EMIT changed();
}

void ProgramClient::forgetConnection()
{
    m_watcher.reset();
    QDBusConnection::disconnectFromBus(m_connection->name());
    m_connection.reset();
    Q_EMIT changed();
}

QCoro::Task<RunningProgram::Answer> ProgramClient::properties()
{
    if (const auto state = connectToBus(); state != State::Answered)
        co_return Answer{state, {}};
    const auto call = callOf(propertiesInterface, QStringLiteral("GetAll"), {ProgramName::interface()});
    auto question = replyTo(call, *m_connection, m_patience);
    const auto reply = co_await whileAlive(this, std::move(question));
    co_return Answer{stateIn(reply), propertiesIn(reply)};
}

QCoro::Task<RunningProgram::State> ProgramClient::call(QString method, QVariantList arguments)
{
    if (const auto state = connectToBus(); state != State::Answered)
        co_return state;
    const auto call = callOf(ProgramName::interface(), method, arguments);
    auto question = replyTo(call, *m_connection, m_patience);
    const auto reply = co_await whileAlive(this, std::move(question));
    co_return stateIn(reply);
}

}  // namespace velquarin
