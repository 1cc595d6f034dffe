// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DesktopAppearance.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "support/DbusTesting.h"
#include "support/PrivateBus.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QDBusMetaType>
#include <QProxyStyle>
#include <QScopeGuard>

#include <memory>

using namespace velquarin;

namespace {

constexpr uint noPreference = 0;
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");

// As portals tell a colour: the shares of red, green and blue.
struct Rgb
{
    double red;
    double green;
    double blue;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Rgb &color)
{
    argument.beginStructure();
    argument << color.red << color.green << color.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Rgb &color)
{
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    return argument;
}

QVariant rgb(double red, double green, double blue)
{
    return QVariant::fromValue(Rgb{red, green, blue});
}

//! A portal that knows how the user wants windows to look.
class FakePortal : public QDBusVirtualObject
{
public:
    explicit FakePortal(uint scheme)
        : values{{colorScheme, scheme}}
        , m_connection("portal")
    {
        qDBusRegisterMetaType<Rgb>();
        qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
        m_connection->registerVirtualObject(path(), this);
        m_connection->registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.interface() != interface() || message.member() != QLatin1String("ReadAll"))
            return false;
        asked << message.arguments().at(0).toStringList().join(u'/');
        if (isSilent)
            return true;
        const QMap<QString, QVariantMap> all{{appearance, values}};
        return connection.send(message.createReply(QVariant::fromValue(all)));
    }

    void say(const QString &group, const QString &key, const QVariant &value)
    {
        auto signal = QDBusMessage::createSignal(path(), interface(), QStringLiteral("SettingChanged"));
        signal.setArguments({group, key, QVariant::fromValue(QDBusVariant(value))});
        m_connection->send(signal);
    }

    void become(uint scheme)
    {
        values[colorScheme] = scheme;
        say(appearance, colorScheme, scheme);
    }

    //! Returns when everything said so far has arrived on @p bus and was heard. An answer that is there at once turns no
    //! loop.
    void meet(SessionBus &bus)
    {
        auto theirs = bus.connection();
        for (auto *connection : {&*m_connection, &theirs})
            test::answerOf(*connection, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                           QStringLiteral("org.freedesktop.DBus"), "GetId");
        QCoreApplication::processEvents();
    }

    QVariantMap values;
    QStringList asked;
    bool isSilent = false;

private:
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    static QString interface() { return QStringLiteral("org.freedesktop.portal.Settings"); }

    test::SecondConnection m_connection;
};

const QPalette &darkOfADesktop()
{
    static const QPalette palette(QColor("#3b4045"), QColor("#2a2e32"));
    return palette;
}

//! As a desktop's own palette that turned dark.
class DarkStyle : public QProxyStyle
{
public:
    using QProxyStyle::polish;
    void polish(QPalette &palette) override { palette = darkOfADesktop(); }
};

bool isProgramDark()
{
    return isDark(QApplication::palette());
}

}  // namespace

class TestDesktopAppearance : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        test::failOnAnyWarning();
        m_bus.start();
        m_ofDesktop = QApplication::palette();
        QVERIFY(!isDark(m_ofDesktop));
    }
    void cleanup()
    {
        QApplication::setPalette(QPalette());
        m_bus.stop();
    }

    void aUserWhoWantsDarkWindowsGetsThem();
    void whatTheUserChangesIsFollowedAtOnce();
    void whoWantsLightOrNothingKeepsTheDesktopsPalette_data();
    void whoWantsLightOrNothingKeepsTheDesktopsPalette();
    void aDesktopThatFollowsByItselfKeepsItsOwnDarkness();
    void aDesktopThatTurnsDarkLaterGetsItsOwnDarkness();
    void aDesktopThatTurnsLightWhileTheUserWantsDarkIsDarkened();
    void otherSettingsAreNoneOfOurs();
    void withoutABusOrAPortalNobodyAsksForDark();
    void aBusThatComesLaterIsAsked();
    void aPortalThatComesLaterIsAsked();
    void aPortalThatNeverAnswersIsStillHeard();
    void contrastMotionAndAccentAreHeardToo();
    void whatIsNoColorIsNoAccent_data();
    void whatIsNoColorIsNoAccent();
    void anAnswerOfAnotherShapeChangesNothing();
    void aUserWhoWantsContrastGetsIt();

private:
    test::PrivateBus m_bus;
    QPalette m_ofDesktop;
};

void TestDesktopAppearance::aUserWhoWantsDarkWindowsGetsThem()
{
    FakePortal portal(preferDark);
    SessionBus bus;
    const DesktopAppearance colors(bus);
    QTRY_VERIFY(isProgramDark());
    QCOMPARE(portal.asked, QStringList(appearance));
}

void TestDesktopAppearance::whatTheUserChangesIsFollowedAtOnce()
{
    FakePortal portal(noPreference);
    SessionBus bus;
    const DesktopAppearance colors(bus);
    QWidget window;
    window.show();
    QTRY_COMPARE(portal.asked.size(), 1);
    for (int time = 0; time < 2; ++time) {
        portal.become(preferDark);
        QTRY_VERIFY(isDark(window.palette()));
        portal.become(noPreference);
        QTRY_COMPARE(QApplication::palette(), m_ofDesktop);
        QTRY_VERIFY(!isDark(window.palette()));
    }
}

void TestDesktopAppearance::whoWantsLightOrNothingKeepsTheDesktopsPalette_data()
{
    QTest::addColumn<uint>("scheme");
    QTest::newRow("nothing") << noPreference;
    QTest::newRow("light") << preferLight;
    QTest::newRow("what nobody knows yet") << 3U;
}

void TestDesktopAppearance::whoWantsLightOrNothingKeepsTheDesktopsPalette()
{
    QFETCH(uint, scheme);
    FakePortal portal(scheme);
    SessionBus bus;
    AppearanceSettings setting(bus);
    const QSignalSpy changed(&setting, &AppearanceSettings::changed);
    QTRY_COMPARE(portal.asked.size(), 1);
    portal.become(preferDark);
    QTRY_COMPARE(changed.size(), 1);
    portal.become(scheme);
    QTRY_COMPARE(changed.size(), 2);
    QVERIFY(!setting.wanted().isDark);
}

// As Plasma's: its palette is there before we would set one, or soon after the setting is told.
void TestDesktopAppearance::aDesktopThatFollowsByItselfKeepsItsOwnDarkness()
{
    FakePortal portal(noPreference);
    SessionBus bus;
    DesktopAppearance colors(bus);
    const QSignalSpy looked(&colors, &DesktopAppearance::applied);
    QTRY_COMPARE(portal.asked.size(), 1);
    portal.become(preferDark);
    QApplication::setPalette(darkOfADesktop());
    const auto set = QApplication::palette();
    QTRY_COMPARE(looked.size(), 1);
    QCOMPARE(QApplication::palette(), set);
    portal.become(noPreference);
    QTRY_COMPARE(looked.size(), 2);
    QCOMPARE(QApplication::palette(), set);
}

void TestDesktopAppearance::aDesktopThatTurnsDarkLaterGetsItsOwnDarkness()
{
    FakePortal portal(preferDark);
    SessionBus bus;
    DesktopAppearance colors(bus);
    QTRY_VERIFY(isProgramDark());
    const QSignalSpy looked(&colors, &DesktopAppearance::applied);
    const QScopeGuard backToLight([] { QApplication::setStyle(QStringLiteral("Fusion")); });
    QApplication::setStyle(new DarkStyle);
    QTRY_COMPARE(looked.size(), 1);
    const auto ground = QApplication::palette().color(QPalette::Window);
    QCOMPARE(ground.name(), darkOfADesktop().color(QPalette::Window).name());
}

void TestDesktopAppearance::aDesktopThatTurnsLightWhileTheUserWantsDarkIsDarkened()
{
    QApplication::setPalette(darkOfADesktop());
    FakePortal portal(preferDark);
    SessionBus bus;
    DesktopAppearance colors(bus);
    const QSignalSpy looked(&colors, &DesktopAppearance::applied);
    QTRY_COMPARE(looked.size(), 1);
    QApplication::setPalette(m_ofDesktop);
    QVERIFY(!isProgramDark());
    QTRY_COMPARE(looked.size(), 2);
    QVERIFY(isProgramDark());
    QVERIFY2(!colors.findChild<QTimer *>()->isActive(), "our own palette is taken for the desktop's");
}

void TestDesktopAppearance::otherSettingsAreNoneOfOurs()
{
    FakePortal portal(noPreference);
    SessionBus bus;
    AppearanceSettings setting(bus);
    const QSignalSpy changed(&setting, &AppearanceSettings::changed);
    QTRY_COMPARE(portal.asked.size(), 1);
    portal.say(appearance, QStringLiteral("what-nobody-knows-yet"), preferDark);
    portal.say(QStringLiteral("org.gnome.desktop.interface"), colorScheme, preferDark);
    portal.meet(bus);
    QCOMPARE(changed.size(), 0);
    portal.say(appearance, colorScheme, preferDark);
    QTRY_COMPARE(changed.size(), 1);
}

void TestDesktopAppearance::withoutABusOrAPortalNobodyAsksForDark()
{
    SessionBus bus;
    AppearanceSettings setting(bus);
    auto connection = bus.connection();
    test::answerOf(connection, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                   QStringLiteral("org.freedesktop.DBus"), "GetId");
    QVERIFY(!setting.wanted().isDark);
    m_bus.stop();
    SessionBus noBus;
    const AppearanceSettings without(noBus);
    QVERIFY(!without.wanted().isDark);
}

void TestDesktopAppearance::aBusThatComesLaterIsAsked()
{
    m_bus.stop();
    SessionBus bus;
    const AppearanceSettings setting(bus);
    m_bus.start();
    const FakePortal portal(preferDark);
    QVERIFY(bus.connection().isConnected());
    QTRY_VERIFY(setting.wanted().isDark);
}

void TestDesktopAppearance::aPortalThatComesLaterIsAsked()
{
    SessionBus bus;
    const AppearanceSettings setting(bus);
    auto connection = bus.connection();
    test::answerOf(connection, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                   QStringLiteral("org.freedesktop.DBus"), "GetId");
    QVERIFY(!setting.wanted().isDark);
    const FakePortal portal(preferDark);
    QTRY_VERIFY(setting.wanted().isDark);
}

void TestDesktopAppearance::aPortalThatNeverAnswersIsStillHeard()
{
    FakePortal portal(preferDark);
    portal.isSilent = true;
    SessionBus bus;
    const AppearanceSettings setting(bus);
    QTRY_COMPARE(portal.asked.size(), 1);
    QVERIFY(!setting.wanted().isDark);
    portal.become(preferDark);
    QTRY_VERIFY(setting.wanted().isDark);
}

void TestDesktopAppearance::contrastMotionAndAccentAreHeardToo()
{
    FakePortal portal(noPreference);
    portal.values[QStringLiteral("contrast")] = 1U;
    portal.values[QStringLiteral("accent-color")] = rgb(1, 0.5, 0);
    SessionBus bus;
    const AppearanceSettings settings(bus);
    QTRY_VERIFY(settings.wanted().isHighContrast);
    QCOMPARE(settings.wanted().accent.value().name(), QColor(255, 128, 0).name());
    QVERIFY(!settings.wanted().isMotionReduced);
    portal.say(appearance, QStringLiteral("reduced-motion"), 1U);
    QTRY_VERIFY(settings.wanted().isMotionReduced);
    portal.say(appearance, QStringLiteral("accent-color"), rgb(0, 0, 1));
    QTRY_COMPARE(settings.wanted().accent.value(), QColor(Qt::blue));
    portal.say(appearance, QStringLiteral("reduced-motion"), 0U);
    QTRY_VERIFY(!settings.wanted().isMotionReduced);
}

void TestDesktopAppearance::whatIsNoColorIsNoAccent_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("what portals say for none") << rgb(-1, -1, -1);
    QTest::newRow("too much") << rgb(0, 0, 1.5);
    QTest::newRow("not a number") << rgb(0, qQNaN(), 0);
    QTest::newRow("a number") << QVariant(1U);
    QTest::newRow("a name") << QVariant(QStringLiteral("red"));
}

void TestDesktopAppearance::whatIsNoColorIsNoAccent()
{
    QFETCH(QVariant, value);
    FakePortal portal(noPreference);
    portal.values[QStringLiteral("accent-color")] = rgb(0, 0, 1);
    SessionBus bus;
    const AppearanceSettings settings(bus);
    QTRY_VERIFY(settings.wanted().accent.has_value());
    portal.say(appearance, QStringLiteral("accent-color"), value);
    QTRY_VERIFY(!settings.wanted().accent.has_value());
}

void TestDesktopAppearance::anAnswerOfAnotherShapeChangesNothing()
{
    Appearance wanted;
    wanted.take(colorScheme, QVariant(QStringLiteral("dark")));
    wanted.take(QStringLiteral("contrast"), QVariant());
    QCOMPARE(wanted, Appearance());
    wanted.take(colorScheme, preferDark);
    QVERIFY(wanted.isDark);
}

void TestDesktopAppearance::aUserWhoWantsContrastGetsIt()
{
    FakePortal portal(noPreference);
    SessionBus bus;
    const DesktopAppearance appears(bus);
    QTRY_COMPARE(portal.asked.size(), 1);
    portal.say(appearance, QStringLiteral("contrast"), 1U);
    QTRY_COMPARE(QApplication::palette().color(QPalette::Window), QColor(Qt::white));
    QCOMPARE(QApplication::palette().color(QPalette::WindowText), QColor(Qt::black));
    portal.say(appearance, QStringLiteral("contrast"), 0U);
    QTRY_COMPARE(QApplication::palette(), m_ofDesktop);
}

VELQUARIN_WINDOW_TEST(TestDesktopAppearance)
#include "tst_desktopappearance.moc"
