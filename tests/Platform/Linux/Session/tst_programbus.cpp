// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/ProgramClient.h"
#include "Platform/Linux/Session/ProgramObject.h"
#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/Linux/Session/SingleInstance.h"
#include "support/Await.h"
#include "support/DbusTesting.h"
#include "support/PrivateBus.h"
#include "support/SilentServer.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QTemporaryDir>
#include <QXmlStreamReader>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

using State = RunningProgram::State;
using Counts = QMap<QString, qint64>;

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QVariantMap figures(qint64 streak)
{
    const QVariantMap garden{{QStringLiteral("Name"), QStringLiteral("garden")},
                             {QStringLiteral("CommitsToday"), streak}};
    return {{QStringLiteral("CurrentStreak"), streak},
            {QStringLiteral("LongestStreak"), qint64(30)},
            {QStringLiteral("CommittedToday"), true},
            {QStringLiteral("LastSevenDays"), QVariant::fromValue(Counts{{QStringLiteral("2026-11-20"), 3}})},
            {QStringLiteral("CommitsPerDay"), QVariant::fromValue(Counts{{QStringLiteral("2026-11-20"), streak}})},
            {QStringLiteral("Repositories"), QVariant::fromValue(QList<QVariantMap>{garden})},
            {QStringLiteral("RepositoriesWithoutAddress"), QStringList{QStringLiteral("empty")}}};
}

// The signatures of what is described, by name.
QMap<QString, QString> described(const QString &xml, const QString &interface)
{
    QMap<QString, QString> types;
    QString current;
    QString method;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attributes = reader.attributes();
        const auto name = attributes.value(QStringLiteral("name")).toString();
        if (reader.name() == QLatin1String("interface"))
            current = name;
        else if (current == interface && reader.name() == QLatin1String("property"))
            types.insert(name, attributes.value(QStringLiteral("type")).toString());
        else if (current == interface && reader.name() == QLatin1String("method"))
            types.insert(method = name, QStringLiteral("()"));
        else if (current == interface && reader.name() == QLatin1String("arg"))
            types.insert(method, u'(' + attributes.value(QStringLiteral("type")).toString() + u')');
    }
    return reader.hasError() ? QMap<QString, QString>() : types;
}

// A program that hangs: it takes a call and never answers.
class SilentProgram : public QDBusVirtualObject
{
public:
    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage & /*message*/, const QDBusConnection & /*connection*/) override
    {
        return true;
    }
};

}  // namespace

class TestProgramBus : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarning();
        m_runtime = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime->path()));
        qputenv("DISPLAY", ":1");
        m_privateBus.start();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
        m_bus = std::make_unique<SessionBus>();
    }
    void cleanup()
    {
        m_bus.reset();
        m_privateBus.stop();
    }

    void itDescribesItself();
    void itShowsItsFiguresReadOnly();
    void itTellsOfWhatChangedAlone();
    void itTakesTwoCalls();
    void otherCallsAreErrors_data();
    void otherCallsAreErrors();
    void aBusThatRestartsHasTheFiguresAgain();
    void aClientReadsAllOfThem();
    void aClientReadsWhatItAsksFor();
    void tenThousandRepositoriesAreRead();
    void aProgramWithoutFiguresAnswersNone();
    void withoutAProgramThereIsNone();
    void aQuestionStartsNoProgram();
    void withoutABusThereIsNone_data();
    void withoutABusThereIsNone();
    void aProgramThatHangsIsSilent();
    void aBusThatHangsIsSilent();
    void aClientHearsOfChangesAndOfBeginningAndEnd();
    void aClientHearsThatTheBusHasGone();
    void aCallReachesTheProgram();
    void valuesOfOtherTypesAreLeftOut();

private:
    [[nodiscard]] QVariant property(QDBusConnection &connection, const char *name) const
    {
        const auto reply = answerOf(connection, ProgramName::service(), ProgramName::path(), propertiesInterface, "Get",
                                    {ProgramName::interface(), QLatin1String(name)});
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    test::PrivateBus m_privateBus;
    QByteArray m_address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    std::unique_ptr<QTemporaryDir> m_runtime;
    std::unique_ptr<SessionBus> m_bus;
};

void TestProgramBus::itDescribesItself()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    SecondConnection other("other");
    const auto reply = answerOf(*other, ProgramName::service(), ProgramName::path(),
                                QStringLiteral("org.freedesktop.DBus.Introspectable"), "Introspect");
    const auto xml = reply.arguments().constFirst().toString();
    QCOMPARE(described(xml, ProgramName::interface()),
             (QMap<QString, QString>{{QStringLiteral("CurrentStreak"), QStringLiteral("x")},
                                     {QStringLiteral("LongestStreak"), QStringLiteral("x")},
                                     {QStringLiteral("CommittedToday"), QStringLiteral("b")},
                                     {QStringLiteral("CommitsThisWeek"), QStringLiteral("x")},
                                     {QStringLiteral("LastSevenDays"), QStringLiteral("a{sx}")},
                                     {QStringLiteral("CommitsPerDay"), QStringLiteral("a{sx}")},
                                     {QStringLiteral("Repositories"), QStringLiteral("aa{sv}")},
                                     {QStringLiteral("RepositoriesWithoutAddress"), QStringLiteral("as")},
                                     {QStringLiteral("Refreshing"), QStringLiteral("b")},
                                     {QStringLiteral("LastRefresh"), QStringLiteral("s")},
                                     {QStringLiteral("Refresh"), QStringLiteral("()")},
                                     {QStringLiteral("ShowDashboard"), QStringLiteral("(s)")}}));
    QCOMPARE(described(xml, QStringLiteral("org.freedesktop.Application")).size(), 3);
}

void TestProgramBus::itShowsItsFiguresReadOnly()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    instance.publish(figures(12));
    SecondConnection other("other");
    QCOMPARE(property(*other, "CurrentStreak"), QVariant(qint64(12)));
    QCOMPARE(property(*other, "CommittedToday"), QVariant(true));
    const auto set = answerOf(
        *other, ProgramName::service(), ProgramName::path(), propertiesInterface, "Set",
        {ProgramName::interface(), QStringLiteral("CurrentStreak"), QVariant::fromValue(QDBusVariant(qint64(1000)))});
    QCOMPARE(set.errorName(), QStringLiteral("org.freedesktop.DBus.Error.PropertyReadOnly"));
    QCOMPARE(property(*other, "CurrentStreak"), QVariant(qint64(12)));
}

void TestProgramBus::itTellsOfWhatChangedAlone()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    SecondConnection other("other");
    const SignalRecorder recorder(*other, ProgramName::service(), ProgramName::path(), propertiesInterface,
                                  {QStringLiteral("PropertiesChanged")});
    instance.publish(figures(12));
    instance.publish(figures(12));
    instance.publish(figures(13));
    QTRY_COMPARE(recorder.messages.size(), 2);
    const auto changed = qdbus_cast<QVariantMap>(recorder.messages.at(1).arguments().at(1));
    QCOMPARE(changed, (QVariantMap{{QStringLiteral("CurrentStreak"), qint64(13)}}));
    QCOMPARE(recorder.messages.at(1).arguments().at(2).toStringList(),
             (QStringList{QStringLiteral("CommitsPerDay"), QStringLiteral("Repositories")}));
    QCOMPARE(recorder.messages.at(0).arguments().at(0).toString(), ProgramName::interface());
}

void TestProgramBus::itTakesTwoCalls()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy refreshes(&instance, &SingleInstance::refreshRequested);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    SecondConnection other("other");
    const auto call = [&other](const char *method, const QVariantList &arguments) {
        return answerOf(*other, ProgramName::service(), ProgramName::path(), ProgramName::interface(), method,
                        arguments)
            .type();
    };
    QCOMPARE(call("Refresh", {}), QDBusMessage::ReplyMessage);
    QCOMPARE(refreshes.size(), 1);
    QCOMPARE(call("ShowDashboard", {QStringLiteral("token-7")}), QDBusMessage::ReplyMessage);
    QCOMPARE(shown, QList<QVariantList>{{QStringLiteral("token-7")}});
}

void TestProgramBus::otherCallsAreErrors_data()
{
    QTest::addColumn<QString>("interface");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    const auto own = ProgramName::interface();
    QTest::newRow("no token") << own << QStringLiteral("ShowDashboard") << QVariantList();
    QTest::newRow("a number for a token") << own << QStringLiteral("ShowDashboard") << QVariantList{7};
    QTest::newRow("too much") << own << QStringLiteral("Refresh") << QVariantList{QStringLiteral("now")};
    QTest::newRow("unknown") << own << QStringLiteral("Quit") << QVariantList();
    QTest::newRow("that of another interface") << own << QStringLiteral("Activate") << QVariantList{QVariantMap()};
    QTest::newRow("of no interface of ours")
        << QStringLiteral("org.example.Other") << QStringLiteral("Refresh") << QVariantList();
    QTest::newRow("a property that is none")
        << propertiesInterface << QStringLiteral("Get") << QVariantList{own, QStringLiteral("Secret")};
}

void TestProgramBus::otherCallsAreErrors()
{
    QFETCH(QString, interface);
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy refreshes(&instance, &SingleInstance::refreshRequested);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    SecondConnection other("other");
    const auto reply =
        answerOf(*other, ProgramName::service(), ProgramName::path(), interface, qPrintable(method), arguments);
    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    QCOMPARE(refreshes.size() + shown.size(), 0);
}

void TestProgramBus::aBusThatRestartsHasTheFiguresAgain()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    instance.publish(figures(12));
    QSignalSpy lost(m_bus.get(), &SessionBus::disconnected);
    m_privateBus.stop();
    QTRY_COMPARE(lost.size(), 1);
    m_privateBus.start();
    const auto owner = [this] { return m_bus->connection().interface()->serviceOwner(ProgramName::service()).value(); };
    QTRY_COMPARE(owner(), m_bus->connection().baseService());
    SecondConnection other("other");
    QCOMPARE(property(*other, "CurrentStreak"), QVariant(qint64(12)));
}

void TestProgramBus::aClientReadsAllOfThem()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    instance.publish(figures(12));
    ProgramClient client(atOnce);
    const auto answer = QCoro::waitFor(client.properties({}));
    QCOMPARE(answer.state, State::Answered);
    QCOMPARE(answer.properties, figures(12));
}

void TestProgramBus::aClientReadsWhatItAsksFor()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    instance.publish(figures(12));
    ProgramClient client(atOnce);
    const auto answer = QCoro::waitFor(client.properties(
        {QStringLiteral("CurrentStreak"), QStringLiteral("CommitsPerDay"), QStringLiteral("Secret")}));
    QCOMPARE(answer.state, State::Answered);
    QCOMPARE(answer.properties,
             (QVariantMap{{QStringLiteral("CurrentStreak"), qint64(12)},
                          {QStringLiteral("CommitsPerDay"), figures(12).value(QStringLiteral("CommitsPerDay"))}}));
}

void TestProgramBus::tenThousandRepositoriesAreRead()
{
    QList<QVariantMap> many;
    for (qint64 number = 0; number < 10'000; ++number)
        many << QVariantMap{{QStringLiteral("Name"), QStringLiteral("repository %1").arg(number)},
                            {QStringLiteral("Path"), QStringLiteral("/src/").repeated(20)},
                            {QStringLiteral("CommitsToday"), number}};
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    auto properties = figures(12);
    properties.insert(QStringLiteral("Repositories"), QVariant::fromValue(many));
    instance.publish(properties);
    ProgramClient client(atOnce);
    QCOMPARE(QCoro::waitFor(client.properties({})).properties, properties);
}

void TestProgramBus::aProgramWithoutFiguresAnswersNone()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    ProgramClient client(atOnce);
    for (const auto &names : {QStringList(), QStringList(QStringLiteral("CurrentStreak"))}) {
        const auto answer = QCoro::waitFor(client.properties(names));
        QCOMPARE(answer.state, State::Answered);
        QCOMPARE(answer.properties, QVariantMap());
    }
}

void TestProgramBus::withoutAProgramThereIsNone()
{
    ProgramClient client(atOnce);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Absent);
    QCOMPARE(QCoro::waitFor(client.call(QStringLiteral("Refresh"), {})), State::Absent);
}

void TestProgramBus::aQuestionStartsNoProgram()
{
    QTemporaryDir folder;
    m_privateBus.stop();
    const auto trace = folder.filePath(QStringLiteral("started"));
    m_privateBus.activate(ProgramName::service(), QStringLiteral("/usr/bin/touch ") + trace);
    m_privateBus.start();
    ProgramClient client(atOnce);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Absent);
    QCOMPARE(QCoro::waitFor(client.call(QStringLiteral("ShowDashboard"), {QString()})), State::Absent);
    m_privateBus.deactivate(ProgramName::service());
    QVERIFY(!QFile::exists(trace));
}

void TestProgramBus::withoutABusThereIsNone_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("no address") << QByteArray();
    QTest::newRow("nobody there") << QByteArray("unix:path=/nonexistent/bus");
}

void TestProgramBus::withoutABusThereIsNone()
{
    QFETCH(QByteArray, address);
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    ProgramClient client(atOnce);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Absent);
}

void TestProgramBus::aProgramThatHangsIsSilent()
{
    SecondConnection frozen("frozen");
    SilentProgram silent;
    QVERIFY(frozen->registerVirtualObject(ProgramName::path(), &silent));
    QVERIFY(frozen->registerService(ProgramName::service()));
    ProgramClient client(50ms);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Silent);
    QCOMPARE(QCoro::waitFor(client.call(QStringLiteral("Refresh"), {})), State::Silent);
}

void TestProgramBus::aBusThatHangsIsSilent()
{
    const auto path = m_runtime->filePath(QStringLiteral("silent"));
    const SilentServer server(path);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(path));
    ProgramClient client(50ms);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Silent);
}

void TestProgramBus::aClientHearsOfChangesAndOfBeginningAndEnd()
{
    ProgramClient client(atOnce);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Absent);
    QSignalSpy changes(&client, &RunningProgram::changed);
    {
        SessionBus bus;
        SingleInstance instance(bus);
        QCOMPARE(instance.settle(), SingleInstance::Role::First);
        QTRY_COMPARE(changes.size(), 1);
        instance.publish(figures(12));
        QTRY_COMPARE(changes.size(), 2);
        auto refreshing = figures(12);
        refreshing.insert(QStringLiteral("Refreshing"), true);
        refreshing.insert(QStringLiteral("LastRefresh"), QStringLiteral("2026-11-20T11:02:03Z"));
        instance.publish(refreshing);
        instance.publish(figures(13));
        QTRY_COMPARE(changes.size(), 3);
        QCOMPARE(QCoro::waitFor(client.properties({})).properties, figures(13));
    }
    QTRY_COMPARE(changes.size(), 4);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Absent);
}

void TestProgramBus::aClientHearsThatTheBusHasGone()
{
    ProgramClient client(atOnce);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Absent);
    QSignalSpy changes(&client, &RunningProgram::changed);
    m_privateBus.stop();
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(QCoro::waitFor(client.properties({})).state, State::Absent);
    m_privateBus.start();
    SessionBus bus;
    SingleInstance instance(bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    instance.publish(figures(12));
    QCOMPARE(QCoro::waitFor(client.properties({})).properties, figures(12));
}

void TestProgramBus::aCallReachesTheProgram()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    ProgramClient client(atOnce);
    QCOMPARE(QCoro::waitFor(client.call(QStringLiteral("ShowDashboard"), {QStringLiteral("token-7")})),
             State::Answered);
    QCOMPARE(shown, QList<QVariantList>{{QStringLiteral("token-7")}});
}

void TestProgramBus::valuesOfOtherTypesAreLeftOut()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    instance.publish({{QStringLiteral("CurrentStreak"), qint64(3)},
                      {QStringLiteral("CommitsPerDay"), QVariant::fromValue(QMap<QString, QVariant>{
                                                            {QStringLiteral("2026-11-20"), QStringLiteral("many")}})}});
    ProgramClient client(atOnce);
    const auto answer = QCoro::waitFor(client.properties({}));
    QCOMPARE(answer.properties.value(QStringLiteral("CurrentStreak")), QVariant(qint64(3)));
    QVERIFY(!answer.properties.value(QStringLiteral("CommitsPerDay")).isValid());
}

VELQUARIN_TEST(TestProgramBus)
#include "tst_programbus.moc"
