// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/SniStatusItem.h"

#include "Platform/Linux/Session/DbusObject.h"
#include "Platform/Linux/StatusItem/DbusMenu.h"
#include "Platform/Linux/StatusItem/StatusIconPainter.h"

#include <QCursor>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>

#include <algorithm>
#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

const QString label = QStringLiteral("XAyatanaLabel");
const QString labelGuide = QStringLiteral("XAyatanaLabelGuide");

QList<SniPixmap> pixmapsOf(const QList<QImage> &images, AlphaUse alpha)
{
    QList<SniPixmap> pixmaps;
    for (const auto &image : images)
        pixmaps.append({image.width(), image.height(), pixelsInNetworkOrder(image, alpha)});
    return pixmaps;
}

QString iconName(const StatusItemAppearance &appearance, const StatusHost &host)
{
    if (host.display != CountDisplay::Label)
        return {};
    return appearance.isTemplate ? appearance.symbolName + QStringLiteral("-symbolic") : appearance.symbolName;
}

// Every host prefers a name over pictures, so that there is only ever one of the two.
QList<SniPixmap> iconPixmap(const StatusItemAppearance &appearance, const StatusHost &host)
{
    if (host.display == CountDisplay::Label)
        return {};
    return pixmapsOf(host.display == CountDisplay::Wide ? wideIcons(appearance) : squareIcons(appearance),
                     host.wantsMultiplied ? AlphaUse::Multiplied : AlphaUse::Apart);
}

// The text of a tip is markup, and a folder may be called anything.
SniToolTip toolTip(const StatusItemAppearance &appearance)
{
    const auto words = statusWords(appearance);
    return {{}, {}, words.headline, words.detail.toHtmlEscaped()};
}

const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");

// Longer than a host takes to make something of what it has read, and too short for anybody to miss the label.
constexpr auto timeToTakeIn = 500ms;

QPoint pointIn(const QVariantList &arguments)
{
    return {arguments.at(0).toInt(), arguments.at(1).toInt()};
}

}  // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const SniPixmap &pixmap)
{
    return writeStructure(argument, pixmap.width, pixmap.height, pixmap.bytes);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, SniPixmap &pixmap)
{
    return readStructure(argument, pixmap.width, pixmap.height, pixmap.bytes);
}

QDBusArgument &operator<<(QDBusArgument &argument, const SniToolTip &toolTip)
{
    return writeStructure(argument, toolTip.iconName, toolTip.icon, toolTip.title, toolTip.text);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, SniToolTip &toolTip)
{
    return readStructure(argument, toolTip.iconName, toolTip.icon, toolTip.title, toolTip.text);
}

void registerSniTypes()
{
    qDBusRegisterMetaType<SniPixmap>();
    qDBusRegisterMetaType<QList<SniPixmap>>();
    qDBusRegisterMetaType<SniToolTip>();
}

QVariantMap sniProperties(const StatusItemAppearance &appearance, const StatusHost &host, const QString &iconThemePath)
{
    QVariantMap properties{
        {QStringLiteral("Category"), QStringLiteral("ApplicationStatus")},
        {QStringLiteral("Id"), QStringLiteral("velquarin")},
        {QStringLiteral("Title"), QStringLiteral("Velquarin")},
        {QStringLiteral("Status"), QStringLiteral("Active")},
        {QStringLiteral("WindowId"), 0},
        {QStringLiteral("ItemIsMenu"), false},
        {QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath(DbusMenu::objectPath()))},
        {QStringLiteral("IconThemePath"), iconThemePath},
        {QStringLiteral("IconName"), iconName(appearance, host)},
        {QStringLiteral("IconPixmap"), QVariant::fromValue(iconPixmap(appearance, host))},
        {QStringLiteral("IconAccessibleDesc"), appearance.accessibilityDescription},
        {QStringLiteral("ToolTip"), QVariant::fromValue(toolTip(appearance))},
    };
    if (!appearance.title.isEmpty() && !host.breaksOnLabel) {
        properties.insert(label, appearance.title);
        properties.insert(labelGuide, appearance.title);
    }
    return properties;
}

QVariantMap withoutLabel(QVariantMap properties)
{
    properties.remove(label);
    properties.remove(labelGuide);
    return properties;
}

QList<SniSignal> sniSignals(const QVariantMap &before, const QVariantMap &after)
{
    const auto changed = changedNames(before, after);
    const auto isAnyChanged = [&](std::initializer_list<const char *> names) {
        return std::any_of(names.begin(), names.end(),
                           [&](auto name) { return changed.contains(QLatin1String(name)); });
    };
    QList<SniSignal> signalList;
    if (isAnyChanged({"IconName", "IconPixmap", "IconAccessibleDesc"}))
        signalList.append({QStringLiteral("NewIcon"), {}});
    if (isAnyChanged({"ToolTip"}))
        signalList.append({QStringLiteral("NewToolTip"), {}});
    if (isAnyChanged({"XAyatanaLabel"}))
        signalList.append(
            {QStringLiteral("XAyatanaNewLabel"), {after.value(label).toString(), after.value(labelGuide).toString()}});
    return signalList;
}

SniStatusItem::SniStatusItem(QDBusConnection connection, QString iconThemePath, const StatusHost &host,
                             StatusItemAppearance appearance, QObject *parent)
    : DbusObject(std::move(connection), objectPath(), itemInterface, parent)
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
    setMethods(methods());
}

// What a click sets off waits for the next turn of the loop, so that the host has its answer first.
DbusObject::Methods SniStatusItem::methods()
{
    using React = std::function<void(const QVariantList &arguments)>;
    const auto method = [this](const char *signature, const React &react) {
        return Method{QLatin1String(signature), [this, react](const QDBusMessage &call) {
                          QMetaObject::invokeMethod(
                              this, [react, arguments = call.arguments()] { react(arguments); }, Qt::QueuedConnection);
                          return call.createReply();
                      }};
    };
    const React click = [this](const auto &arguments) { activate(pointIn(arguments)); };
    const React clickSomewhere = [this](const auto & /*time*/) { activate(QCursor::pos()); };
    const React menuClick = [this](const auto &arguments) { Q_EMIT menuRequested(pointIn(arguments)); };
    const React takeToken = [this](const auto &arguments) { m_activationToken = arguments.at(0).toString(); };
    return {
        {QStringLiteral("Activate"), method("ii", click)},
        {QStringLiteral("SecondaryActivate"), method("ii", click)},
        {QStringLiteral("XAyatanaSecondaryActivate"), method("u", clickSomewhere)},
        {QStringLiteral("ContextMenu"), method("ii", menuClick)},
        {QStringLiteral("Scroll"), method("is", [](const auto & /*distance*/) {})},
        {QStringLiteral("ProvideXdgActivationToken"), method("s", takeToken)},
    };
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
    for (const auto &item : news)
        send(item.name, item.arguments);
    sendChangedProperties(before);
}

// By the path: every watcher takes the sender of the call as the other half of the address.
void SniStatusItem::announce()
{
    m_isLabelDue = m_host.display == CountDisplay::Label;
    auto call = QDBusMessage::createMethodCall(watcherName, QStringLiteral("/StatusNotifierWatcher"), watcherName,
                                               QStringLiteral("RegisterStatusNotifierItem"));
    call.setArguments({objectPath()});
    call.setAutoStartService(false);
    connection().asyncCall(call);
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
    if (message.member() == QLatin1String("GetAll"))
        wasReadWhole();
    return DbusObject::handleMessage(message, connection);
}

void SniStatusItem::activate(QPoint position)
{
    Q_EMIT activated(position, takeActivationToken());
}

}  // namespace velquarin
