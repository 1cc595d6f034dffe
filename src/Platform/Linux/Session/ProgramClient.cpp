// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/ProgramClient.h"

#include "Platform/Linux/Session/ProgramObject.h"
#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/WhileAlive.h"

#include <QDBusArgument>
#include <QDBusVariant>

#include <algorithm>
#include <future>
#include <system_error>
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
    auto connect = [promise = std::move(promise), address, name]() mutable {
        promise.set_value(QDBusConnection::connectToBus(address, name));
    };
    try {
        std::thread(std::move(connect)).detach();
    } catch (const std::system_error &) {
        return std::nullopt;
    }
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

QVariant valueIn(const QDBusMessage &reply)
{
    return reply.signature() == QLatin1String("v")
               ? unpacked(reply.arguments().constFirst().value<QDBusVariant>().variant())
               : QVariant();
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
    // By the object and not by its owner's name, for which Qt would wait. Whoever else speaks so has us ask once more.
    m_connection->connect(QString(), ProgramName::path(), propertiesInterface, QStringLiteral("PropertiesChanged"),
                          {ProgramName::interface()}, QString(), this,
                          SLOT(hearChange(QString, QVariantMap, QStringList)));
    m_connection->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                          QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                          SLOT(forgetConnection()));
    m_watcher = std::make_unique<QDBusServiceWatcher>(ProgramName::service(), *m_connection);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this, &ProgramClient::changed);
}

// That it refreshes, and when it last did, changes every few minutes, and no figure with it.
void ProgramClient::hearChange(const QString & /*interface*/, const QVariantMap &changed,
                               const QStringList &changedByName)
{
    const auto names = changed.keys() + changedByName;
    const auto isFigure = [](const QString &name) {
        return name != QLatin1String("Refreshing") && name != QLatin1String("LastRefresh");
    };
    if (std::ranges::any_of(names, isFigure))
        Q_EMIT this->changed();
}

void ProgramClient::forgetConnection()
{
    m_watcher.reset();
    QDBusConnection::disconnectFromBus(m_connection->name());
    m_connection.reset();
    Q_EMIT changed();
}

QCoro::Task<QDBusMessage> ProgramClient::ask(QDBusMessage call)
{
    auto question = replyTo(call, *m_connection, m_patience);
    co_return co_await whileAlive(this, std::move(question));
}

QCoro::Task<RunningProgram::Answer> ProgramClient::properties(QStringList names)
{
    if (const auto state = connectToBus(); state != State::Answered)
        co_return Answer{state, {}};
    if (!names.isEmpty()) {
        auto answer = some(names);
        co_return co_await answer;
    }
    auto question = ask(callOf(propertiesInterface, QStringLiteral("GetAll"), {ProgramName::interface()}));
    const auto reply = co_await question;
    co_return Answer{stateIn(reply), propertiesIn(reply)};
}

// A program that has none yet answers each with an error.
QCoro::Task<RunningProgram::Answer> ProgramClient::some(QStringList names)
{
    Answer answer{State::Answered, {}};
    for (const auto &name : std::as_const(names)) {
        auto question = ask(callOf(propertiesInterface, QStringLiteral("Get"), {ProgramName::interface(), name}));
        const auto reply = co_await question;
        if (reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.UnknownProperty"))
            continue;
        answer.state = stateIn(reply);
        if (answer.state != State::Answered)
            break;
        answer.properties.insert(name, valueIn(reply));
    }
    co_return answer;
}

QCoro::Task<RunningProgram::State> ProgramClient::call(QString method, QVariantList arguments)
{
    if (const auto state = connectToBus(); state != State::Answered)
        co_return state;
    auto question = ask(callOf(ProgramName::interface(), method, arguments));
    const auto reply = co_await question;
    co_return stateIn(reply);
}

}  // namespace velquarin
