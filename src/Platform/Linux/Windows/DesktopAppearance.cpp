// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DesktopAppearance.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/WhileAlive.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QEvent>
#include <QStyle>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
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

constexpr uint preferDark = 1;
constexpr uint higherContrast = 1;
constexpr uint reducedMotion = 1;

// As long as the bus itself would wait.
constexpr auto patience = 25s;

// Nothing for what is no colour, as portals answer where the user has chosen none.
std::optional<QColor> colorIn(const QVariant &value)
{
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)"))
        return {};
    std::array<double, 3> shares{};
    argument.beginStructure();
    for (auto &share : shares)
        argument >> share;
    argument.endStructure();
    const bool isColor = std::ranges::all_of(shares, [](double share) { return share >= 0 && share <= 1; });
    return isColor ? std::optional(QColor::fromRgbF(float(shares[0]), float(shares[1]), float(shares[2])))
                   : std::nullopt;
}

// Black about where it is read better than white; near there both are read well.
QColor letteringOn(const QColor &color)
{
    constexpr double evenlyReadBy = 0.179;
    const auto light = [](double share) { return std::pow(share, 2.2); };
    const auto luminance =
        0.2126 * light(color.redF()) + 0.7152 * light(color.greenF()) + 0.0722 * light(color.blueF());
    return luminance > evenlyReadBy ? Qt::black : Qt::white;
}

QPalette withAccent(QPalette palette, const QColor &accent)
{
    palette.setColor(QPalette::All, QPalette::Highlight, accent);
    palette.setColor(QPalette::All, QPalette::HighlightedText, letteringOn(accent));
    return palette;
}

// As far apart as colours can be.
QPalette contrasted(QPalette palette)
{
    const auto [letters, ground] = isDark(palette) ? std::pair(Qt::white, Qt::black) : std::pair(Qt::black, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::All, role, letters);
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(QPalette::All, role, ground);
    return palette;
}

// Desktops whose palette follows by itself tell of it and of the setting in any order.
constexpr auto desktopsTurn = 300ms;

}  // namespace

bool isDark(const QPalette &palette)
{
    const auto written = palette.color(QPalette::Active, QPalette::WindowText);
    return written.lightness() > palette.color(QPalette::Active, QPalette::Window).lightness();
}

void Appearance::take(const QString &key, const QVariant &value)
{
    if (key == QLatin1String("color-scheme"))
        isDark = value.toUInt() == preferDark;
    else if (key == QLatin1String("contrast"))
        isHighContrast = value.toUInt() == higherContrast;
    else if (key == QLatin1String("reduced-motion"))
        isMotionReduced = value.toUInt() == reducedMotion;
    else if (key == QLatin1String("accent-color"))
        accent = colorIn(value);
}

QPalette darkenedWhere(bool shallBeDark, const QPalette &ofDesktop)
{
    return shallBeDark && !isDark(ofDesktop) ? darkened(ofDesktop) : ofDesktop;
}

QPalette paletteFor(const Appearance &wanted, const QPalette &ofDesktop, const QPalette &ofToolkit)
{
    auto palette = darkenedWhere(wanted.isDark, ofDesktop);
    if (wanted.accent && ofDesktop.color(QPalette::Highlight) == ofToolkit.color(QPalette::Highlight))
        palette = withAccent(palette, *wanted.accent);
    return wanted.isHighContrast ? contrasted(palette) : palette;
}

AppearanceSettings::AppearanceSettings(SessionBus &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    const bool stands = m_bus.connection().isConnected();
    connect(&m_bus, &SessionBus::connected, this, &AppearanceSettings::follow);
    if (stands)
        follow();
}

AppearanceSettings::~AppearanceSettings() = default;

// A signal that named its sender would make the connection ask the bus for it, and wait.
void AppearanceSettings::follow()
{
    auto connection = m_bus.connection();
    connection.connect({}, portalPath, settings, QStringLiteral("SettingChanged"), {appearance}, {}, this,
                       SLOT(hear(QString, QString, QDBusVariant)));
    awaitPortals(connection);
    ask(connection);
}

// One that starts slowly has let the first question go unanswered.
void AppearanceSettings::awaitPortals(const QDBusConnection &connection)
{
    m_portals = std::make_unique<QDBusServiceWatcher>(portalName, connection, QDBusServiceWatcher::WatchForOwnerChange);
    connect(m_portals.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this, connection](const QString &, const QString &, const QString &owner) {
                if (!owner.isEmpty())
                    ask(connection);
            });
}

// What has changed since the question was asked is told by a signal that comes after the answer.
QCoro::Task<> AppearanceSettings::ask(QDBusConnection connection)
{
    auto question = QDBusMessage::createMethodCall(portalName, portalPath, settings, QStringLiteral("ReadAll"));
    question.setArguments({QStringList{appearance}});
    auto asked = replyTo(question, connection, patience);
    const auto reply = co_await whileAlive(this, std::move(asked));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sa{sv}}"))
        co_return;
    const auto values = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst()).value(appearance);
    auto wanted = m_wanted;
    for (auto value = values.begin(); value != values.end(); ++value)
        wanted.take(value.key(), value.value());
    want(wanted);
}

void AppearanceSettings::hear(const QString & /*group*/, const QString &key, const QDBusVariant &value)
{
    auto wanted = m_wanted;
    wanted.take(key, value.variant());
    want(wanted);
}

void AppearanceSettings::want(const Appearance &wanted)
{
    if (std::exchange(m_wanted, wanted) != wanted)
        Q_EMIT changed();
}

DesktopAppearance::DesktopAppearance(SessionBus &bus, QObject *parent)
    : QObject(parent)
    , m_settings(bus)
{
    m_desktopsTurn.setSingleShot(true);
    m_desktopsTurn.setInterval(desktopsTurn);
    connect(&m_desktopsTurn, &QTimer::timeout, this, &DesktopAppearance::follow);
    connect(&m_settings, &AppearanceSettings::changed, &m_desktopsTurn, qOverload<>(&QTimer::start));
    qApp->installEventFilter(this);
}

bool DesktopAppearance::eventFilter(QObject *watched, QEvent *event)
{
    const bool isNewPalette = event->type() == QEvent::ApplicationPaletteChange && watched == qApp;
    if (isNewPalette || event->type() == QEvent::ThemeChange)
        m_desktopsTurn.start();
    return false;
}

// The desktop's own palette comes back first: it is the one to judge.
void DesktopAppearance::follow()
{
    if (std::exchange(m_isOurs, false))
        QApplication::setPalette(QPalette());
    const auto ofDesktop = QApplication::palette();
    const auto wanted = paletteFor(m_settings.wanted(), ofDesktop, QApplication::style()->standardPalette());
    m_isOurs = wanted != ofDesktop;
    if (m_isOurs)
        QApplication::setPalette(wanted);
    m_desktopsTurn.stop();  // what we set ourselves is nothing new of the desktop's
    Q_EMIT applied();
}

}  // namespace velquarin
