// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/Linux/Session/SingleInstance.h"
#include "support/DbusTesting.h"
#include "support/PrivateBus.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QTemporaryDir>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const QString name = QStringLiteral("io.velquarin.Velquarin");
const QString path = QStringLiteral("/io/velquarin/Velquarin");
const QString interface = QStringLiteral("org.freedesktop.Application");
constexpr auto startArgument = "--start";

// What a start by the user would do: its exit status tells which it was.
class AnotherStart
{
public:
    explicit AnotherStart(const QMap<QString, QString> &environment = {})
    {
        auto all = QProcessEnvironment::systemEnvironment();
        for (auto variable = environment.begin(); variable != environment.end(); ++variable)
            all.insert(variable.key(), variable.value());
        m_process.setProcessEnvironment(all);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(),
                        {QStringLiteral("tst_singleinstancebus"), QLatin1String(startArgument)});
    }

    [[nodiscard]] std::optional<SingleInstance::Role> role()
    {
        const auto hasEnded = [this] { return m_process.state() == QProcess::NotRunning; };
        if (!QTest::qWaitFor(hasEnded, 15000) || m_process.exitStatus() != QProcess::NormalExit)
            return std::nullopt;
        return SingleInstance::Role(m_process.exitCode());
    }

private:
    QProcess m_process;
};

// A program that hangs: it takes a call and never answers.
class SilentApplication : public QDBusVirtualObject
{
public:
    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage & /*message*/, const QDBusConnection & /*connection*/) override
    {
        ++calls;
        return true;
    }

    int calls = 0;
};

}  // namespace

class TestSingleInstanceBus : public QObject
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
        m_bus = std::make_unique<SessionBus>();
    }
    void cleanup()
    {
        m_bus.reset();
        m_privateBus.stop();
    }

    void theDesktopActivatesTheProgram_data();
    void theDesktopActivatesTheProgram();
    void ofTwoTokensTheCompositorsCounts();
    void aSecondStartAsksTheFirstToShowItself();
    void aSecondStartHandsItsTokensOver();
    void aSecondStartOnAnotherDisplayOfTheSameBusIsASecondOne();
    void aFirstOneThatDoesNotAnswerIsStillTheFirst();
    void whenTheFirstHasGoneTheNextOneIsTheFirst();
    void aBusThatRestartsFindsTheProgramAgain();
    void aBusThatDiesLeavesTheProgramAlone();

private:
    [[nodiscard]] QString ownerOfName() const { return m_bus->connection().interface()->serviceOwner(name); }

    test::PrivateBus m_privateBus;
    std::unique_ptr<QTemporaryDir> m_runtime;
    std::unique_ptr<SessionBus> m_bus;
};

void TestSingleInstanceBus::theDesktopActivatesTheProgram_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    const QVariantMap token{{QStringLiteral("activation-token"), QStringLiteral("token-7")}};
    const QVariantMap startup{{QStringLiteral("desktop-startup-id"), QStringLiteral("token-7")}};
    const auto file = QStringList(QStringLiteral("file:///tmp"));
    const QVariant noParameters = QVariantList();
    QTest::newRow("by Activate") << QStringLiteral("Activate") << QVariantList{token};
    QTest::newRow("by Activate with a startup id") << QStringLiteral("Activate") << QVariantList{startup};
    QTest::newRow("by Open") << QStringLiteral("Open") << QVariantList{file, token};
    QTest::newRow("by ActivateAction") << QStringLiteral("ActivateAction")
                                       << QVariantList{QStringLiteral("anything"), noParameters, token};
}

void TestSingleInstanceBus::theDesktopActivatesTheProgram()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    SecondConnection desktop("desktop");
    const auto answer = answerOf(*desktop, name, path, interface, qPrintable(method), arguments);
    QCOMPARE(answer.errorMessage(), QString());
    QCOMPARE(answer.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(shown, QList<QVariantList>{{QStringLiteral("token-7")}});
}

void TestSingleInstanceBus::ofTwoTokensTheCompositorsCounts()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    SecondConnection desktop("desktop");
    const QVariantMap both{{QStringLiteral("activation-token"), QStringLiteral("token-7")},
                           {QStringLiteral("desktop-startup-id"), QStringLiteral("id-8")}};
    QCOMPARE(answerOf(*desktop, name, path, interface, "Activate", {both}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(shown, QList<QVariantList>{{QStringLiteral("token-7")}});
}

void TestSingleInstanceBus::aSecondStartAsksTheFirstToShowItself()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    QCOMPARE(AnotherStart().role(), SingleInstance::Role::Second);
    QCOMPARE(shown, QList<QVariantList>{{QString()}});
}

void TestSingleInstanceBus::aSecondStartHandsItsTokensOver()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    QCOMPARE(AnotherStart({{QStringLiteral("XDG_ACTIVATION_TOKEN"), QStringLiteral("token-7")}}).role(),
             SingleInstance::Role::Second);
    QCOMPARE(AnotherStart({{QStringLiteral("DESKTOP_STARTUP_ID"), QStringLiteral("menu_TIME8")}}).role(),
             SingleInstance::Role::Second);
    QCOMPARE(shown, (QList<QVariantList>{{QStringLiteral("token-7")}, {QStringLiteral("menu_TIME8")}}));
}

void TestSingleInstanceBus::aSecondStartOnAnotherDisplayOfTheSameBusIsASecondOne()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    QCOMPARE(AnotherStart({{QStringLiteral("DISPLAY"), QStringLiteral(":2")}}).role(), SingleInstance::Role::Second);
    QCOMPARE(shown.size(), 1);
}

void TestSingleInstanceBus::aFirstOneThatDoesNotAnswerIsStillTheFirst()
{
    SecondConnection frozen("frozen");
    SilentApplication silent;
    QVERIFY(frozen->registerVirtualObject(path, &silent));
    QVERIFY(frozen->registerService(name));
    QCOMPARE(AnotherStart().role(), SingleInstance::Role::Second);
    QCOMPARE(silent.calls, 1);
}

void TestSingleInstanceBus::whenTheFirstHasGoneTheNextOneIsTheFirst()
{
    {
        SessionBus bus;
        SingleInstance first(bus);
        QCOMPARE(first.settle(), SingleInstance::Role::First);
        QCOMPARE(AnotherStart().role(), SingleInstance::Role::Second);
    }
    QCOMPARE(AnotherStart().role(), SingleInstance::Role::First);
}

void TestSingleInstanceBus::aBusThatRestartsFindsTheProgramAgain()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy lost(m_bus.get(), &SessionBus::disconnected);
    QSignalSpy shown(&instance, &SingleInstance::showRequested);
    m_privateBus.stop();
    QTRY_COMPARE(lost.size(), 1);
    m_privateBus.start();
    QTRY_COMPARE(ownerOfName(), m_bus->connection().baseService());
    QCOMPARE(AnotherStart().role(), SingleInstance::Role::Second);
    QCOMPARE(shown.size(), 1);
}

void TestSingleInstanceBus::aBusThatDiesLeavesTheProgramAlone()
{
    SingleInstance instance(*m_bus);
    QCOMPARE(instance.settle(), SingleInstance::Role::First);
    QSignalSpy lost(m_bus.get(), &SessionBus::disconnected);
    m_privateBus.stop();
    QTRY_COMPARE(lost.size(), 1);
    QCOMPARE(AnotherStart().role(), SingleInstance::Role::Second);
}

namespace {

int startOrTest(int argc, char **argv)
{
    auto tokens = takeLaunchTokens();
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(QLatin1String(startArgument))) {
        SessionBus bus;
        return int(SingleInstance(bus, std::move(tokens)).settle());
    }
    return runAlone<TestSingleInstanceBus>(argc, argv);
}

}  // namespace

VELQUARIN_TEST_RUN(startOrTest)
#include "tst_singleinstancebus.moc"
