// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DesktopColors.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "support/DbusTesting.h"
#include "support/PrivateBus.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QApplication>
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

//! A portal that knows the user's colour scheme.
class FakePortal : public QDBusVirtualObject
{
public:
    explicit FakePortal(uint scheme)
        : m_scheme(scheme)
        , m_connection("portal")
    {
        m_connection->registerVirtualObject(path(), this);
        m_connection->registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.interface() != interface() || message.member() != QLatin1String("Read"))
            return false;
        asked << message.arguments().at(0).toString() + u'/' + message.arguments().at(1).toString();
        if (isSilent)
            return true;
        const QDBusVariant inner(m_scheme);
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    }

    void say(const QString &group, const QString &key, uint value)
    {
        auto signal = QDBusMessage::createSignal(path(), interface(), QStringLiteral("SettingChanged"));
        signal.setArguments({group, key, QVariant::fromValue(QDBusVariant(value))});
        m_connection->send(signal);
    }

    void become(uint scheme)
    {
        m_scheme = scheme;
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

    QStringList asked;
    bool isSilent = false;

private:
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    static QString interface() { return QStringLiteral("org.freedesktop.portal.Settings"); }

    uint m_scheme;
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

class TestDesktopColors : public QObject
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

private:
    test::PrivateBus m_bus;
    QPalette m_ofDesktop;
};

void TestDesktopColors::aUserWhoWantsDarkWindowsGetsThem()
{
    FakePortal portal(preferDark);
    SessionBus bus;
    const DesktopColors colors(bus);
    QTRY_VERIFY(isProgramDark());
    QCOMPARE(portal.asked, QStringList(appearance + u'/' + colorScheme));
}

void TestDesktopColors::whatTheUserChangesIsFollowedAtOnce()
{
    FakePortal portal(noPreference);
    SessionBus bus;
    const DesktopColors colors(bus);
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

void TestDesktopColors::whoWantsLightOrNothingKeepsTheDesktopsPalette_data()
{
    QTest::addColumn<uint>("scheme");
    QTest::newRow("nothing") << noPreference;
    QTest::newRow("light") << preferLight;
    QTest::newRow("what nobody knows yet") << 3U;
}

void TestDesktopColors::whoWantsLightOrNothingKeepsTheDesktopsPalette()
{
    QFETCH(uint, scheme);
    FakePortal portal(scheme);
    SessionBus bus;
    ColorSchemeSetting setting(bus);
    const QSignalSpy changed(&setting, &ColorSchemeSetting::changed);
    QTRY_COMPARE(portal.asked.size(), 1);
    portal.become(preferDark);
    QTRY_COMPARE(changed.size(), 1);
    portal.become(scheme);
    QTRY_COMPARE(changed.size(), 2);
    QVERIFY(!setting.asksForDark());
}

// As Plasma's: its palette is there before we would set one, or soon after the setting is told.
void TestDesktopColors::aDesktopThatFollowsByItselfKeepsItsOwnDarkness()
{
    FakePortal portal(noPreference);
    SessionBus bus;
    DesktopColors colors(bus);
    const QSignalSpy looked(&colors, &DesktopColors::applied);
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

void TestDesktopColors::aDesktopThatTurnsDarkLaterGetsItsOwnDarkness()
{
    FakePortal portal(preferDark);
    SessionBus bus;
    DesktopColors colors(bus);
    QTRY_VERIFY(isProgramDark());
    const QSignalSpy looked(&colors, &DesktopColors::applied);
    const QScopeGuard backToLight([] { QApplication::setStyle(QStringLiteral("Fusion")); });
    QApplication::setStyle(new DarkStyle);
    QTRY_COMPARE(looked.size(), 1);
    const auto ground = QApplication::palette().color(QPalette::Window);
    QCOMPARE(ground.name(), darkOfADesktop().color(QPalette::Window).name());
}

void TestDesktopColors::aDesktopThatTurnsLightWhileTheUserWantsDarkIsDarkened()
{
    QApplication::setPalette(darkOfADesktop());
    FakePortal portal(preferDark);
    SessionBus bus;
    DesktopColors colors(bus);
    const QSignalSpy looked(&colors, &DesktopColors::applied);
    QTRY_COMPARE(looked.size(), 1);
    QApplication::setPalette(m_ofDesktop);
    QVERIFY(!isProgramDark());
    QTRY_COMPARE(looked.size(), 2);
    QVERIFY(isProgramDark());
    QVERIFY2(!colors.findChild<QTimer *>()->isActive(), "our own palette is taken for the desktop's");
}

void TestDesktopColors::otherSettingsAreNoneOfOurs()
{
    FakePortal portal(noPreference);
    SessionBus bus;
    ColorSchemeSetting setting(bus);
    const QSignalSpy changed(&setting, &ColorSchemeSetting::changed);
    QTRY_COMPARE(portal.asked.size(), 1);
    portal.say(appearance, QStringLiteral("contrast"), preferDark);
    portal.say(QStringLiteral("org.gnome.desktop.interface"), colorScheme, preferDark);
    portal.meet(bus);
    QCOMPARE(changed.size(), 0);
    portal.say(appearance, colorScheme, preferDark);
    QTRY_COMPARE(changed.size(), 1);
}

void TestDesktopColors::withoutABusOrAPortalNobodyAsksForDark()
{
    SessionBus bus;
    ColorSchemeSetting setting(bus);
    auto connection = bus.connection();
    test::answerOf(connection, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                   QStringLiteral("org.freedesktop.DBus"), "GetId");
    QVERIFY(!setting.asksForDark());
    m_bus.stop();
    SessionBus noBus;
    const ColorSchemeSetting without(noBus);
    QVERIFY(!without.asksForDark());
}

void TestDesktopColors::aBusThatComesLaterIsAsked()
{
    m_bus.stop();
    SessionBus bus;
    const ColorSchemeSetting setting(bus);
    m_bus.start();
    const FakePortal portal(preferDark);
    QVERIFY(bus.connection().isConnected());
    QTRY_VERIFY(setting.asksForDark());
}

void TestDesktopColors::aPortalThatComesLaterIsAsked()
{
    SessionBus bus;
    const ColorSchemeSetting setting(bus);
    auto connection = bus.connection();
    test::answerOf(connection, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                   QStringLiteral("org.freedesktop.DBus"), "GetId");
    QVERIFY(!setting.asksForDark());
    const FakePortal portal(preferDark);
    QTRY_VERIFY(setting.asksForDark());
}

void TestDesktopColors::aPortalThatNeverAnswersIsStillHeard()
{
    FakePortal portal(preferDark);
    portal.isSilent = true;
    SessionBus bus;
    const ColorSchemeSetting setting(bus);
    QTRY_COMPARE(portal.asked.size(), 1);
    QVERIFY(!setting.asksForDark());
    portal.become(preferDark);
    QTRY_VERIFY(setting.asksForDark());
}

VELQUARIN_WINDOW_TEST(TestDesktopColors)
#include "tst_desktopcolors.moc"
