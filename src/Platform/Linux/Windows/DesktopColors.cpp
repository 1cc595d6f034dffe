// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DesktopColors.h"

#include "Platform/Linux/Session/AsyncBus.h"
#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/Linux/Windows/DarkPalette.h"
#include "Platform/WhileAlive.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QEvent>

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");

constexpr uint preferDark = 1;

// As long as the bus itself would wait.
constexpr auto patience = 25s;

// The answer to the question is wrapped once more than the value of the signal.
QVariant unwrapped(const QVariant &value)
{
    auto inner = value;
    while (inner.userType() == qMetaTypeId<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    return inner;
}

// Desktops whose palette follows by itself tell of it and of the setting in any order.
constexpr auto desktopsTurn = 300ms;

}  // namespace

ColorSchemeSetting::ColorSchemeSetting(SessionBus &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    const bool stands = m_bus.connection().isConnected();
    connect(&m_bus, &SessionBus::connected, this, &ColorSchemeSetting::follow);
    if (stands)
        follow();
}

ColorSchemeSetting::~ColorSchemeSetting() = default;

// A signal that named its sender would make the connection ask the bus for it, and wait.
void ColorSchemeSetting::follow()
{
    auto connection = m_bus.connection();
    connection.connect({}, portalPath, settings, QStringLiteral("SettingChanged"), {appearance, colorScheme}, {}, this,
                       SLOT(hear(QString, QString, QDBusVariant)));
    awaitPortals(connection);
    ask(connection);
}

// One that starts slowly has let the first question go unanswered.
void ColorSchemeSetting::awaitPortals(const QDBusConnection &connection)
{
    m_portals = std::make_unique<QDBusServiceWatcher>(portalName, connection, QDBusServiceWatcher::WatchForOwnerChange);
    connect(m_portals.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this, connection](const QString &, const QString &, const QString &owner) {
                if (!owner.isEmpty())
                    ask(connection);
            });
}

// What has changed since the question was asked is told by a signal that comes after the answer.
QCoro::Task<> ColorSchemeSetting::ask(QDBusConnection connection)
{
    auto question = QDBusMessage::createMethodCall(portalName, portalPath, settings, QStringLiteral("Read"));
    question.setArguments({appearance, colorScheme});
    const auto reply = co_await whileAlive(this, replyTo(question, connection, patience));
    if (reply.type() == QDBusMessage::ReplyMessage)
        take(reply.arguments().value(0));
}

void ColorSchemeSetting::hear(const QString & /*group*/, const QString & /*key*/, const QDBusVariant &value)
{
    take(value.variant());
}

void ColorSchemeSetting::take(const QVariant &value)
{
    const bool asksForDark = unwrapped(value).toUInt() == preferDark;
    if (std::exchange(m_asksForDark, asksForDark) != asksForDark)
        Q_EMIT changed(asksForDark);
}

DesktopColors::DesktopColors(SessionBus &bus, QObject *parent)
    : QObject(parent)
    , m_setting(bus)
{
    m_desktopsTurn.setSingleShot(true);
    m_desktopsTurn.setInterval(desktopsTurn);
    connect(&m_desktopsTurn, &QTimer::timeout, this, &DesktopColors::follow);
    connect(&m_setting, &ColorSchemeSetting::changed, &m_desktopsTurn, qOverload<>(&QTimer::start));
    qApp->installEventFilter(this);
}

bool DesktopColors::eventFilter(QObject *watched, QEvent *event)
{
    const bool isNewPalette = event->type() == QEvent::ApplicationPaletteChange && watched == qApp;
    if (isNewPalette || event->type() == QEvent::ThemeChange)
        m_desktopsTurn.start();
    return false;
}

// The desktop's own palette comes back first: it is the one to judge.
void DesktopColors::follow()
{
    if (std::exchange(m_isOurs, false))
        QApplication::setPalette(QPalette());
    const auto ofDesktop = QApplication::palette();
    const auto wanted = darkenedWhere(m_setting.asksForDark(), ofDesktop);
    m_isOurs = wanted != ofDesktop;
    if (m_isOurs)
        QApplication::setPalette(wanted);
    m_desktopsTurn.stop();  // what we set ourselves is nothing new of the desktop's
    Q_EMIT applied();
}

}  // namespace velquarin
