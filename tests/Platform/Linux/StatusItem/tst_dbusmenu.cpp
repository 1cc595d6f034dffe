// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/DbusMenu.h"

#include "Platform/Linux/StatusItem/StatusMenu.h"
#include "support/DbusTesting.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <memory>
#include <QApplication>

using namespace velquarin;

namespace {

const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QVariant ids(const QList<int> &list)
{
    return QVariant::fromValue(list);
}

DbusMenuEvent clicked(int id)
{
    return {id, QStringLiteral("clicked"), QDBusVariant(0), 0};
}

}  // namespace

class TestDbusMenu : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void theMenuShowsItsEntriesInOrder();
    void theMenuOfAMenuOnlyHostStartsWithOpen();
    void keyEquivalentsAreShortcutsWithControl();
    void underlinesInLabelsAreNoAccessKeys();
    void aLayoutWithoutDepthHasNoChildren();
    void onlyThePropertiesAskedForAreSent();
    void anEntryIsALayoutOfItsOwn();
    void groupPropertiesNameEveryItemWhenNoneIsAskedFor();
    void groupPropertiesLeaveOutUnknownItems();
    void aSinglePropertyIsReadWithItsDefault();
    void aClickRunsTheAction();
    void aGroupOfClicksRunsEachAction();
    void otherEventsRunNothing();
    void thatTheHostOpensTheMenuIsHeard_data();
    void thatTheHostOpensTheMenuIsHeard();
    void thatTheHostIsAboutToShowTheMenuIsHeard();
    void unknownItemsAnswerWithErrors_data();
    void unknownItemsAnswerWithErrors();
    void unknownItemsInAGroupAreReported();
    void wrongArgumentsAnswerWithAnError();
    void aMethodThatDoesNotExistAnswersWithAnError();
    void nothingHasToBeReadAnewBeforeItIsShown();
    void thePropertiesTellTheVersion();
    void anotherShapeIsAnnouncedAsALayout();
    void anotherTextIsAnnouncedAsALayout();
    void equalEntriesAnnounceNothing();
    void aClickInAMenuDrawnEarlierDoesNothingElse();
    void theMenuDescribesItself();

private:
    QDBusMessage ask(const char *method, const QVariantList &arguments);
    DbusMenuLayoutItem layout(int parent = 0, int depth = -1, const QStringList &names = {});
    QList<MenuEntry> usualEntries();

    std::unique_ptr<test::SecondConnection> m_ours;
    std::unique_ptr<test::SecondConnection> m_host;
    std::unique_ptr<DbusMenu> m_menu;
    int m_refreshed = 0;
    int m_quit = 0;
};

QList<MenuEntry> TestDbusMenu::usualEntries()
{
    return {{QStringLiteral("Refresh"), QStringLiteral("r"), [this] { ++m_refreshed; }},
            {},
            {QStringLiteral("Quit Velquarin"), QStringLiteral("q"), [this] { ++m_quit; }}};
}

void TestDbusMenu::init()
{
    test::failOnAnyWarning();
    m_ours = std::make_unique<test::SecondConnection>("ours");
    m_host = std::make_unique<test::SecondConnection>("host");
    m_menu = std::make_unique<DbusMenu>(**m_ours, QStringLiteral("/icons"));
    m_menu->setEntries(usualEntries());
    m_refreshed = 0;
    m_quit = 0;
    // The answer comes after the signals of setting up: no recorder of a test sees those.
    ask("GetLayout", {0, 0, QStringList()});
}

void TestDbusMenu::cleanup()
{
    m_menu.reset();
    m_host.reset();
    m_ours.reset();
}

QDBusMessage TestDbusMenu::ask(const char *method, const QVariantList &arguments)
{
    return test::answerOf(**m_host, (*m_ours)->baseService(), DbusMenu::objectPath(), menuInterface, method, arguments);
}

DbusMenuLayoutItem TestDbusMenu::layout(int parent, int depth, const QStringList &names)
{
    return qdbus_cast<DbusMenuLayoutItem>(ask("GetLayout", {parent, depth, names}).arguments().value(1));
}

void TestDbusMenu::theMenuShowsItsEntriesInOrder()
{
    const auto root = layout();
    QCOMPARE(root.id, 0);
    QCOMPARE(root.properties.value(QStringLiteral("children-display")).toString(), QStringLiteral("submenu"));
    QCOMPARE(root.children.size(), 3U);
    QCOMPARE(root.children.at(0).properties.value(QStringLiteral("label")).toString(), QStringLiteral("Refresh"));
    QCOMPARE(root.children.at(1).properties.value(QStringLiteral("type")).toString(), QStringLiteral("separator"));
    QCOMPARE(root.children.at(2).properties.value(QStringLiteral("label")).toString(),
             QStringLiteral("Quit Velquarin"));
}

void TestDbusMenu::theMenuOfAMenuOnlyHostStartsWithOpen()
{
    int opened = 0;
    m_menu->setEntries(withOpenEntry(usualEntries(), [&] { ++opened; }));
    const auto root = layout();
    QCOMPARE(root.children.size(), 5U);
    QCOMPARE(root.children.at(0).properties.value(QStringLiteral("label")).toString(),
             QStringLiteral("Open Velquarin"));
    QCOMPARE(root.children.at(1).properties.value(QStringLiteral("type")).toString(), QStringLiteral("separator"));
    QCOMPARE(root.children.at(2).properties.value(QStringLiteral("label")).toString(), QStringLiteral("Refresh"));
    ask("Event", {root.children.at(0).id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    QTRY_COMPARE(opened, 1);
}

void TestDbusMenu::keyEquivalentsAreShortcutsWithControl()
{
    const auto root = layout();
    const auto shortcut = [&](std::size_t i) {
        return qdbus_cast<QList<QStringList>>(root.children.at(i).properties.value(QStringLiteral("shortcut")));
    };
    QCOMPARE(shortcut(0), (QList<QStringList>{{QStringLiteral("Control"), QStringLiteral("r")}}));
    QCOMPARE(shortcut(2), (QList<QStringList>{{QStringLiteral("Control"), QStringLiteral("q")}}));
}

void TestDbusMenu::underlinesInLabelsAreNoAccessKeys()
{
    m_menu->setEntries({{QStringLiteral("snake_case"), {}, {}}});
    QCOMPARE(layout().children.at(0).properties.value(QStringLiteral("label")).toString(),
             QStringLiteral("snake__case"));
}

void TestDbusMenu::aLayoutWithoutDepthHasNoChildren()
{
    QVERIFY(layout(0, 0).children.empty());
    QCOMPARE(layout(0, 1).children.size(), 3U);
}

void TestDbusMenu::onlyThePropertiesAskedForAreSent()
{
    const auto first = layout(0, -1, {QStringLiteral("label")}).children.at(0);
    QCOMPARE(first.properties.keys(), QStringList{QStringLiteral("label")});
}

void TestDbusMenu::anEntryIsALayoutOfItsOwn()
{
    const auto first = layout().children.at(0);
    const auto alone = layout(first.id);
    QCOMPARE(alone.id, first.id);
    QCOMPARE(alone.properties.value(QStringLiteral("label")), first.properties.value(QStringLiteral("label")));
    QVERIFY(alone.children.empty());
}

void TestDbusMenu::groupPropertiesNameEveryItemWhenNoneIsAskedFor()
{
    const auto reply = ask("GetGroupProperties", {ids({}), QStringList()});
    const auto items = qdbus_cast<QList<DbusMenuItem>>(reply.arguments().value(0));
    QCOMPARE(items.size(), 4);
    QCOMPARE(items.at(0).id, 0);
    QCOMPARE(items.at(3).properties.value(QStringLiteral("label")).toString(), QStringLiteral("Quit Velquarin"));
}

void TestDbusMenu::groupPropertiesLeaveOutUnknownItems()
{
    const auto first = layout().children.at(0).id;
    const auto reply = ask("GetGroupProperties", {ids({first, 4711}), QStringList()});
    const auto items = qdbus_cast<QList<DbusMenuItem>>(reply.arguments().value(0));
    QCOMPARE(items.size(), 1);
    QCOMPARE(items.at(0).id, first);
}

void TestDbusMenu::aSinglePropertyIsReadWithItsDefault()
{
    const auto first = layout().children.at(0).id;
    const auto value = [&](const char *name) {
        const auto reply = ask("GetProperty", {first, QString::fromLatin1(name)});
        return qvariant_cast<QDBusVariant>(reply.arguments().value(0)).variant();
    };
    QCOMPARE(value("label").toString(), QStringLiteral("Refresh"));
    QCOMPARE(value("enabled"), QVariant(true));
    QCOMPARE(value("visible"), QVariant(true));
    QCOMPARE(value("type").toString(), QStringLiteral("standard"));
    QCOMPARE(ask("GetProperty", {first, QStringLiteral("taste")}).type(), QDBusMessage::ErrorMessage);
}

void TestDbusMenu::aClickRunsTheAction()
{
    const auto root = layout();
    const auto data = QVariant::fromValue(QDBusVariant(QString()));
    const auto reply = ask("Event", {root.children.at(0).id, QStringLiteral("clicked"), data, 12345U});
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(m_refreshed, 1);
    QCOMPARE(m_quit, 0);
}

void TestDbusMenu::aGroupOfClicksRunsEachAction()
{
    const auto root = layout();
    const QList<DbusMenuEvent> events{clicked(root.children.at(0).id), clicked(root.children.at(2).id)};
    const auto reply = ask("EventGroup", {QVariant::fromValue(events)});
    QVERIFY(qdbus_cast<QList<int>>(reply.arguments().value(0)).isEmpty());
    QTRY_COMPARE(m_quit, 1);
    QCOMPARE(m_refreshed, 1);
}

void TestDbusMenu::otherEventsRunNothing()
{
    const auto root = layout();
    const auto data = QVariant::fromValue(QDBusVariant(0));
    for (const auto *kind : {"opened", "closed", "hovered"})
        ask("Event", {root.children.at(0).id, QString::fromLatin1(kind), data, 0U});
    ask("Event", {0, QStringLiteral("clicked"), data, 0U});
    ask("Event", {root.children.at(1).id, QStringLiteral("clicked"), data, 0U});
    // A later click has been served, so the earlier events have been as well.
    ask("Event", {root.children.at(2).id, QStringLiteral("clicked"), data, 0U});
    QTRY_COMPARE(m_quit, 1);
    QCOMPARE(m_refreshed, 0);
}

void TestDbusMenu::thatTheHostOpensTheMenuIsHeard_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::newRow("by an event") << QByteArray("Event");
    QTest::newRow("by a group of events") << QByteArray("EventGroup");
}

void TestDbusMenu::thatTheHostOpensTheMenuIsHeard()
{
    QFETCH(QByteArray, method);
    const QSignalSpy heard(m_menu.get(), &DbusMenu::opened);
    const auto tell = [&](int id, const QString &kind) {
        const DbusMenuEvent event{id, kind, QDBusVariant(0), 0};
        if (method == QByteArray("Event"))
            ask("Event", {event.id, event.kind, QVariant::fromValue(event.data), event.timestamp});
        else
            ask("EventGroup", {QVariant::fromValue(QList<DbusMenuEvent>{event})});
    };
    const auto first = layout().children.at(0).id;
    tell(0, QStringLiteral("closed"));
    tell(0, QStringLiteral("clicked"));
    tell(first, QStringLiteral("opened"));
    QCOMPARE(heard.size(), 0);
    tell(0, QStringLiteral("opened"));
    QCOMPARE(heard.size(), 1);
}

void TestDbusMenu::thatTheHostIsAboutToShowTheMenuIsHeard()
{
    const QSignalSpy heard(m_menu.get(), &DbusMenu::opened);
    const auto first = layout().children.at(0).id;
    ask("AboutToShow", {first});
    ask("AboutToShowGroup", {ids({first})});
    QCOMPARE(heard.size(), 0);
    ask("AboutToShow", {0});
    QCOMPARE(heard.size(), 1);
    ask("AboutToShowGroup", {ids({0, first})});
    QCOMPARE(heard.size(), 2);
}

void TestDbusMenu::unknownItemsAnswerWithErrors_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QVariantList>("arguments");
    const auto data = QVariant::fromValue(QDBusVariant(0));
    const auto row = [](const char *method, const QVariantList &arguments) {
        QTest::newRow(method) << QByteArray(method) << arguments;
    };
    row("GetLayout", {4711, -1, QStringList()});
    row("GetProperty", {-1, QStringLiteral("label")});
    row("Event", {4711, QStringLiteral("clicked"), data, 0U});
    row("AboutToShow", {4711});
    row("EventGroup", {QVariant::fromValue(QList<DbusMenuEvent>{clicked(4711), clicked(-2)})});
    row("AboutToShowGroup", {ids({4711, -2})});
}

void TestDbusMenu::unknownItemsAnswerWithErrors()
{
    QFETCH(QByteArray, method);
    QFETCH(QVariantList, arguments);
    const auto reply = ask(method.constData(), arguments);
    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    QCOMPARE(reply.errorName(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
}

void TestDbusMenu::unknownItemsInAGroupAreReported()
{
    const auto first = layout().children.at(0).id;
    const QList<DbusMenuEvent> events{clicked(4711), clicked(first)};
    const auto reply = ask("EventGroup", {QVariant::fromValue(events)});
    QCOMPARE(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{4711});
    QTRY_COMPARE(m_refreshed, 1);

    const auto shown = ask("AboutToShowGroup", {ids({0, 4711})});
    QVERIFY(qdbus_cast<QList<int>>(shown.arguments().value(0)).isEmpty());
    QCOMPARE(qdbus_cast<QList<int>>(shown.arguments().value(1)), QList<int>{4711});
}

void TestDbusMenu::wrongArgumentsAnswerWithAnError()
{
    const auto reply = ask("GetLayout", {QStringLiteral("zero")});
    QCOMPARE(reply.errorName(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
}

void TestDbusMenu::aMethodThatDoesNotExistAnswersWithAnError()
{
    QCOMPARE(ask("Explode", {}).errorName(), QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"));
}

void TestDbusMenu::nothingHasToBeReadAnewBeforeItIsShown()
{
    QCOMPARE(ask("AboutToShow", {0}).arguments(), QVariantList{false});
}

void TestDbusMenu::thePropertiesTellTheVersion()
{
    const auto reply = test::answerOf(**m_host, (*m_ours)->baseService(), DbusMenu::objectPath(), propertiesInterface,
                                      "GetAll", {menuInterface});
    const auto properties = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    const QVariantMap expected{{QStringLiteral("Version"), 3U},
                               {QStringLiteral("Status"), QStringLiteral("normal")},
                               {QStringLiteral("TextDirection"), QStringLiteral("ltr")},
                               {QStringLiteral("IconThemePath"), QStringList{QStringLiteral("/icons")}}};
    QCOMPARE(properties, expected);
}

void TestDbusMenu::anotherShapeIsAnnouncedAsALayout()
{
    test::SignalRecorder recorder(**m_host, (*m_ours)->baseService(), DbusMenu::objectPath(), menuInterface,
                                  {QStringLiteral("LayoutUpdated"), QStringLiteral("ItemsPropertiesUpdated")});
    const auto revision = ask("GetLayout", {0, 0, QStringList()}).arguments().at(0).toUInt();
    m_menu->setEntries(withOpenEntry(usualEntries(), {}));
    QTRY_COMPARE(recorder.names(), QStringList{QStringLiteral("LayoutUpdated")});
    QCOMPARE(recorder.argumentsOf("LayoutUpdated"), (QVariantList{revision + 1, 0}));
    QCOMPARE(ask("GetLayout", {0, 0, QStringList()}).arguments().at(0).toUInt(), revision + 1);
}

void TestDbusMenu::anotherTextIsAnnouncedAsALayout()
{
    test::SignalRecorder recorder(**m_host, (*m_ours)->baseService(), DbusMenu::objectPath(), menuInterface,
                                  {QStringLiteral("LayoutUpdated"), QStringLiteral("ItemsPropertiesUpdated")});
    const auto revision = ask("GetLayout", {0, 0, QStringList()}).arguments().at(0).toUInt();
    auto entries = usualEntries();
    entries[0].text = QStringLiteral("Refresh now");
    m_menu->setEntries(entries);
    QTRY_COMPARE(recorder.names(), QStringList{QStringLiteral("LayoutUpdated")});
    entries[0].keyEquivalent.clear();
    m_menu->setEntries(entries);
    QTRY_COMPARE(recorder.names().size(), 2);
    QCOMPARE(ask("GetLayout", {0, 0, QStringList()}).arguments().at(0).toUInt(), revision + 2);
    const auto first = layout().children.at(0).properties;
    QCOMPARE(first, (QVariantMap{{QStringLiteral("label"), QStringLiteral("Refresh now")}}));
}

void TestDbusMenu::equalEntriesAnnounceNothing()
{
    test::SignalRecorder recorder(**m_host, (*m_ours)->baseService(), DbusMenu::objectPath(), menuInterface,
                                  {QStringLiteral("LayoutUpdated"), QStringLiteral("ItemsPropertiesUpdated")});
    ask("AboutToShow", {0});  // the recorder is listening once this is answered
    m_menu->setEntries(usualEntries());
    ask("AboutToShow", {0});  // whatever was sent before this answer has arrived
    QCOMPARE(recorder.names(), QStringList());
}

void TestDbusMenu::aClickInAMenuDrawnEarlierDoesNothingElse()
{
    const auto before = layout().children.at(0).id;
    m_menu->setEntries(withOpenEntry(usualEntries(), [] { QFAIL("opened by a click on something else"); }));
    const auto data = QVariant::fromValue(QDBusVariant(0));
    QCOMPARE(ask("Event", {before, QStringLiteral("clicked"), data, 0U}).type(), QDBusMessage::ErrorMessage);
    QCOMPARE(m_refreshed, 0);
}

void TestDbusMenu::theMenuDescribesItself()
{
    const auto reply = test::answerOf(**m_host, (*m_ours)->baseService(), DbusMenu::objectPath(),
                                      QStringLiteral("org.freedesktop.DBus.Introspectable"), "Introspect");
    const auto description = reply.arguments().value(0).toString();
    QVERIFY(description.contains(QLatin1String("com.canonical.dbusmenu")));
    QVERIFY(description.contains(QLatin1String("AboutToShowGroup")));
}

VELQUARIN_WINDOW_TEST(TestDbusMenu)
#include "tst_dbusmenu.moc"
