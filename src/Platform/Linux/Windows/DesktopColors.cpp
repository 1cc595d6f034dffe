// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DesktopColors.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/WhileAlive.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QEvent>

#include <array>
#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

struct Shade
{
    QPalette::ColorRole role;
    QRgb color;
};

constexpr QRgb text = 0xfff2f2f2;
constexpr QRgb textOutOfReach = 0xff8c8c8c;

constexpr std::array shades{
    Shade{QPalette::Window, 0xff2d2d2d},
    Shade{QPalette::WindowText, text},
    Shade{QPalette::Base, 0xff202020},
    Shade{QPalette::AlternateBase, 0xff272727},
    Shade{QPalette::Text, text},
    Shade{QPalette::PlaceholderText, 0xffa6a6a6},
    Shade{QPalette::Button, 0xff3a3a3a},
    Shade{QPalette::ButtonText, text},
    Shade{QPalette::BrightText, 0xffffffff},
    Shade{QPalette::ToolTipBase, 0xff3a3a3a},
    Shade{QPalette::ToolTipText, text},
    Shade{QPalette::Light, 0xff545454},
    Shade{QPalette::Midlight, 0xff474747},
    Shade{QPalette::Mid, 0xff272727},
    Shade{QPalette::Dark, 0xff1b1b1b},
    Shade{QPalette::Shadow, 0xff000000},
    Shade{QPalette::Link, 0xff7db8ff},
    Shade{QPalette::LinkVisited, 0xffc7a6ff},
};

QPalette darkened(const QPalette &ofDesktop)
{
    auto palette = ofDesktop;
    for (const auto &shade : shades)
        palette.setColor(QPalette::All, shade.role, QColor(shade.color));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(textOutOfReach));
    return palette;
}

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

bool isDark(const QPalette &palette)
{
    const auto written = palette.color(QPalette::Active, QPalette::WindowText);
    return written.lightness() > palette.color(QPalette::Active, QPalette::Window).lightness();
}

QPalette darkenedWhere(bool shallBeDark, const QPalette &ofDesktop)
{
    return shallBeDark && !isDark(ofDesktop) ? darkened(ofDesktop) : ofDesktop;
}

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
    auto asked = replyTo(question, connection, patience);
    const auto reply = co_await whileAlive(this, std::move(asked));
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
