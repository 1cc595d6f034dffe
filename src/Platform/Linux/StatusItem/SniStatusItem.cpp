// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/SniStatusItem.h"

#include "Platform/Linux/StatusItem/DbusProperties.h"

#include <QCursor>
#include <QDBusError>
#include <QDBusPendingCall>
#include <QHash>

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");

// Longer than a host takes to make something of what it has read, and too short for anybody to miss the label.
constexpr auto timeToTakeIn = 500ms;

QPoint pointIn(const QVariantList &arguments)
{
    return {arguments.at(0).toInt(), arguments.at(1).toInt()};
}

// The signature that each method takes.
QString signatureOf(const QString &method)
{
    static const QHash<QString, QString> signatures{
        {QStringLiteral("Activate"), QStringLiteral("ii")},
        {QStringLiteral("SecondaryActivate"), QStringLiteral("ii")},
        {QStringLiteral("XAyatanaSecondaryActivate"), QStringLiteral("u")},
        {QStringLiteral("ContextMenu"), QStringLiteral("ii")},
        {QStringLiteral("Scroll"), QStringLiteral("is")},
        {QStringLiteral("ProvideXdgActivationToken"), QStringLiteral("s")},
    };
    return signatures.value(method);
}

}  // namespace

SniStatusItem::SniStatusItem(QDBusConnection connection, QString iconThemePath, const StatusHost &host,
                             StatusItemAppearance appearance, QObject *parent)
    : QDBusVirtualObject(parent)
    , m_connection(std::move(connection))
    , m_iconThemePath(std::move(iconThemePath))
    , m_host(host)
    , m_appearance(std::move(appearance))
    , m_properties(sniProperties(m_appearance, m_host, m_iconThemePath))
{
    m_takingIn.setSingleShot(true);
    m_takingIn.setInterval(timeToTakeIn);
    connect(&m_takingIn, &QTimer::timeout, this, [this] {
        m_isLabelDue = false;
        tellChangesSince(withoutLabel(m_properties));
    });
    registerSniTypes();
    m_connection.registerVirtualObject(objectPath(), this);
}

SniStatusItem::~SniStatusItem()
{
    m_connection.unregisterObject(objectPath());
}

QString SniStatusItem::objectPath()
{
    return QStringLiteral("/StatusNotifierItem");
}

void SniStatusItem::setAppearance(const StatusItemAppearance &appearance)
{
    if (appearance == m_appearance)
        return;
    m_appearance = appearance;
    refresh();
}

void SniStatusItem::setHost(const StatusHost &host)
{
    if (host == m_host)
        return;
    m_host = host;
    refresh();
}

void SniStatusItem::refresh()
{
    tellChangesSince(std::exchange(m_properties, sniProperties(m_appearance, m_host, m_iconThemePath)));
}

void SniStatusItem::tellChangesSince(const QVariantMap &before)
{
    const auto news = sniSignals(before, m_properties);
    for (const auto &item : news) {
        auto signal = QDBusMessage::createSignal(objectPath(), itemInterface, item.name);
        signal.setArguments(item.arguments);
        m_connection.send(signal);
    }
    if (const auto signal = propertiesChanged(objectPath(), itemInterface, before, m_properties))
        m_connection.send(*signal);
}

// By the path: every watcher takes the sender of the call as the other half of the address.
void SniStatusItem::announce()
{
    m_isLabelDue = m_host.display == CountDisplay::Label;
    auto call = QDBusMessage::createMethodCall(watcherName, QStringLiteral("/StatusNotifierWatcher"), watcherName,
                                               QStringLiteral("RegisterStatusNotifierItem"));
    call.setArguments({objectPath()});
    call.setAutoStartService(false);
    m_connection.asyncCall(call);
}

// Once for each announcement, else a host that reads all at every signal would never come to rest.
void SniStatusItem::wasReadWhole()
{
    if (m_isLabelDue)
        m_takingIn.start();
}

QString SniStatusItem::takeActivationToken()
{
    return std::exchange(m_activationToken, {});
}

bool SniStatusItem::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (const auto reply = answerToPropertiesCall(message, itemInterface, m_properties)) {
        if (message.member() == QLatin1String("GetAll"))
            wasReadWhole();
        return connection.send(*reply);
    }
    if (message.interface() != itemInterface && !message.interface().isEmpty())
        return false;
    const auto reply = answer(message);
    return !message.isReplyRequired() || connection.send(reply);
}

// What a click sets off waits for the next turn of the loop, so that the host has its answer first.
QDBusMessage SniStatusItem::answer(const QDBusMessage &call)
{
    const auto method = call.member();
    const auto signature = signatureOf(method);
    if (signature.isEmpty())
        return call.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("No such method: ") + method);
    if (signature != call.signature())
        return call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("Wrong arguments for ") + method);
    const auto arguments = call.arguments();
    QMetaObject::invokeMethod(
        this, [this, method, arguments] { react(method, arguments); }, Qt::QueuedConnection);
    return call.createReply();
}

void SniStatusItem::react(const QString &method, const QVariantList &arguments)
{
    if (method == QLatin1String("ProvideXdgActivationToken"))
        m_activationToken = arguments.at(0).toString();
    else if (method == QLatin1String("Activate") || method == QLatin1String("SecondaryActivate"))
        activate(pointIn(arguments));
    else if (method == QLatin1String("XAyatanaSecondaryActivate"))
        activate(QCursor::pos());  // it brings a time and no place
    else if (method == QLatin1String("ContextMenu"))
        Q_EMIT menuRequested(pointIn(arguments));
}

void SniStatusItem::activate(QPoint position)
{
    Q_EMIT activated(position, takeActivationToken());
}

QString SniStatusItem::introspect(const QString & /*path*/) const
{
    return interfaceDescription(itemInterface);
}

}  // namespace velquarin
