// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/StandardStreams.h"
#include "Platform/Linux/Process/SystemClock.h"
#include "Platform/Linux/Process/TerminationSignals.h"
#include "support/CapturedStandardError.h"
#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

// TZ holds this for as long as it lives.
class ZoneInEnvironment
{
public:
    explicit ZoneInEnvironment(const QByteArray &zone)
        : m_wasSet(qEnvironmentVariableIsSet("TZ"))
        , m_before(qgetenv("TZ"))
    {
        qputenv("TZ", zone);
    }
    ZoneInEnvironment(const ZoneInEnvironment &) = delete;
    ZoneInEnvironment &operator=(const ZoneInEnvironment &) = delete;
    ~ZoneInEnvironment() { m_wasSet ? qputenv("TZ", m_before) : qunsetenv("TZ"); }

private:
    bool m_wasSet;
    QByteArray m_before;
};

QString localTime(Instant moment)
{
    const auto calendar = SystemClock().calendar();
    return calendar.dateOf(moment).toString(Qt::ISODate) + calendar.timeOf(moment).toString(QStringLiteral(" HH:mm"));
}

// Standard output goes into a pipe for as long as this lives.
class CapturedOutput
{
public:
    CapturedOutput()
    {
        if (pipe2(m_pipe.data(), O_CLOEXEC) != 0)
            qFatal("no pipe");
        dup2(m_pipe[1], STDOUT_FILENO);
    }
    ~CapturedOutput()
    {
        dup2(m_before, STDOUT_FILENO);
        for (const auto descriptor : {m_before, m_pipe[0], m_pipe[1]})
            close(descriptor);
    }
    void closeReader()
    {
        close(m_pipe[0]);
        m_pipe[0] = -1;
    }
    [[nodiscard]] QByteArray read() const
    {
        QByteArray bytes(1000, '\0');
        bytes.resize(::read(m_pipe[0], bytes.data(), std::size_t(bytes.size())));
        return bytes;
    }
    void fill() const
    {
        fcntl(m_pipe[1], F_SETFL, O_NONBLOCK);
        const QByteArray much(4096, 'x');
        while (write(m_pipe[1], much.constData(), std::size_t(much.size())) > 0)
            continue;
        fcntl(m_pipe[1], F_SETFL, 0);
    }

private:
    int m_before = dup(STDOUT_FILENO);
    std::array<int, 2> m_pipe = {-1, -1};
};

}  // namespace

class TestSystemAdapters : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aRepeatingTimerTicksAgainAndAgain();
    void aSingleTimerTicksOnce();
    void aTimerThatIsGoneDoesNotTick();
    void aTickMayEndItsOwnTimer();
    void anyPeriodIsTaken_data();
    void anyPeriodIsTaken();
    void aLineIsWrittenAtOnceAsItIs();
    void aReaderThatWentAwayIsNoTrouble();
    void aReaderThatDoesNotReadHoldsNobodyUp();
    void aSignalArrivesInTheMainLoop();
    void theClockIsTheSystems();
    void theZoneIsWhatLibcMakesOfIt_data();
    void theZoneIsWhatLibcMakesOfIt();
    void aFileAnywhereGivesTheZone();
    void aZoneFileThatWasCutShortIsNone();
    void aFolderOfZonesThatIsNamedByNothingIsTheUsualOne();
    void aZoneThatNobodyKnowsIsTheSystems_data();
    void aZoneThatNobodyKnowsIsTheSystems();
    void aCalendarIsAnotherOnceTheZoneHasChanged();
};

void TestSystemAdapters::aRepeatingTimerTicksAgainAndAgain()
{
    int ticks = 0;
    const auto timer = BootTimeTimers().every(1ms, [&ticks] { ++ticks; });
    QTRY_VERIFY(ticks >= 5);
}

void TestSystemAdapters::aSingleTimerTicksOnce()
{
    int once = 0;
    int many = 0;
    BootTimeTimers timers;
    const auto single = timers.after(1ms, [&once] { ++once; });
    const auto repeating = timers.every(1ms, [&many] { ++many; });
    QTRY_VERIFY(many >= 20);
    QCOMPARE(once, 1);
}

void TestSystemAdapters::aTimerThatIsGoneDoesNotTick()
{
    int gone = 0;
    int other = 0;
    BootTimeTimers timers;
    auto timer = timers.every(1ms, [&gone] { ++gone; });
    // Both are due before the loop looks: the first one's tick is pending when it goes.
    const auto late = timers.after(30ms, [&other] { ++other; });
    const auto start = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - start < 40ms)
        continue;
    timer.reset();
    QTRY_COMPARE(other, 1);
    QCOMPARE(gone, 0);
}

void TestSystemAdapters::aTickMayEndItsOwnTimer()
{
    int ticks = 0;
    std::unique_ptr<Timer> timer;
    timer = BootTimeTimers().every(1ms, [&] {
        timer.reset();
        ++ticks;
    });
    QTRY_COMPARE(ticks, 1);
    QVERIFY(!timer);
}

void TestSystemAdapters::anyPeriodIsTaken_data()
{
    QTest::addColumn<double>("seconds");
    QTest::newRow("a hundred years") << 3.2e9;
    QTest::newRow("beyond all numbers") << 1e300;
    QTest::newRow("no end") << std::numeric_limits<double>::infinity();
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
}

void TestSystemAdapters::anyPeriodIsTaken()
{
    QFETCH(double, seconds);
    int ticks = 0;
    int other = 0;
    BootTimeTimers timers;
    const auto longOne = timers.every(Timers::Seconds(seconds), [&ticks] { ++ticks; });
    const auto tiny = timers.every(Timers::Seconds(1e-300), [&other] { ++other; });
    QTRY_VERIFY(other >= 10);
    QCOMPARE(ticks, 0);
}

void TestSystemAdapters::aLineIsWrittenAtOnceAsItIs()
{
    const CapturedOutput captured;
    StandardOutput().printLine(QStringLiteral("Error processing repo /a\nb \U0001F525: why"));
    QCOMPARE(captured.read(), QByteArray("Error processing repo /a\nb \U0001F525: why\n"));
}

void TestSystemAdapters::aReaderThatWentAwayIsNoTrouble()
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    {
        CapturedOutput captured;
        captured.closeReader();
        StandardOutput().printLine(QStringLiteral("nobody reads this"));
    }
    std::signal(SIGPIPE, before);
}

void TestSystemAdapters::aReaderThatDoesNotReadHoldsNobodyUp()
{
    const CapturedOutput captured;
    captured.fill();
    StandardOutput().printLine(QStringLiteral("nobody reads this"));
}

void TestSystemAdapters::aSignalArrivesInTheMainLoop()
{
    int signals = 0;
    const TerminationSignals termination([&signals] { ++signals; });
    for (const auto number : {SIGTERM, SIGINT, SIGHUP}) {
        const auto expected = signals + 1;
        kill(getpid(), number);
        QTRY_COMPARE(signals, expected);
    }
}

void TestSystemAdapters::theClockIsTheSystems()
{
    // Qt's own idea of it rounds in newer versions.
    const auto milliseconds = [] {
        timespec time{};
        return clock_gettime(CLOCK_REALTIME, &time) == 0 ? time.tv_sec * 1000LL + time.tv_nsec / 1'000'000 : -1;
    };
    const auto before = milliseconds();
    const auto now = SystemClock().now().time_since_epoch().count();
    QVERIFY(now >= before && now <= milliseconds());
}

void TestSystemAdapters::theZoneIsWhatLibcMakesOfIt_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("winter");
    QTest::addColumn<QString>("summer");
    const auto row = [](const char *name, const char *zone, const char *winter, const char *summer) {
        QTest::newRow(name) << QByteArray(zone) << QString::fromLatin1(winter) << QString::fromLatin1(summer);
    };
    row("a name", "America/Havana", "2025-12-31 19:00", "2026-06-30 20:00");
    row("a name after a colon", ":Europe/Berlin", "2026-01-01 01:00", "2026-07-01 02:00");
    row("a path", "/usr/share/zoneinfo/Europe/Berlin", "2026-01-01 01:00", "2026-07-01 02:00");
    row("a path after a colon", ":/usr/share/zoneinfo/Asia/Kolkata", "2026-01-01 05:30", "2026-07-01 05:30");
    row("a rule without dates", "CET-1CEST", "2026-01-01 01:00", "2026-07-01 02:00");
    row("a rule with dates", "XYZ3XYD,M9.5.0,M4.1.0", "2025-12-31 22:00", "2026-06-30 21:00");
    row("a rule without summer time", "<+0545>-5:45", "2026-01-01 05:45", "2026-07-01 05:45");
    row("nothing, which is Greenwich", "", "2026-01-01 00:00", "2026-07-01 00:00");
}

void TestSystemAdapters::theZoneIsWhatLibcMakesOfIt()
{
    QFETCH(QByteArray, zone);
    const CapturedStandardError errors;
    const ZoneInEnvironment environment(zone);
    dropUnknownZone();
    QTEST(localTime(instant("2026-01-01T00:00:00Z")), "winter");
    QTEST(localTime(instant("2026-07-01T00:00:00Z")), "summer");
    QCOMPARE(errors.lines(), QStringList());
}

void TestSystemAdapters::aFileAnywhereGivesTheZone()
{
    const QTemporaryDir folder;
    const auto path = folder.filePath(QStringLiteral("localtime"));
    QVERIFY(QFile::copy(QStringLiteral("/usr/share/zoneinfo/Asia/Kolkata"), path));
    const ZoneInEnvironment environment(QFile::encodeName(path));
    dropUnknownZone();
    QCOMPARE(localTime(instant("2026-01-01T00:00:00Z")), QStringLiteral("2026-01-01 05:30"));
}

void TestSystemAdapters::aZoneFileThatWasCutShortIsNone()
{
    const QTemporaryDir folder;
    const auto path = folder.filePath(QStringLiteral("zone"));
    QVERIFY(QFile::copy(QStringLiteral("/usr/share/zoneinfo/Europe/Berlin"), path));
    const ZoneInEnvironment environment(QFile::encodeName(path));
    const auto whole = QFile(path).size();
    for (const auto size : {whole - whole / 4, whole / 4, qint64(44), qint64(10)}) {
        QFile file(path);
        QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(file.resize(size));
        qputenv("TZ", QFile::encodeName(path));
        const CapturedStandardError said;
        dropUnknownZone();
        QVERIFY2(!qEnvironmentVariableIsSet("TZ"), qPrintable(QString::number(size)));
        QCOMPARE(said.lines().size(), 1);
    }
}

void TestSystemAdapters::aFolderOfZonesThatIsNamedByNothingIsTheUsualOne()
{
    const CapturedStandardError errors;
    const ZoneInEnvironment environment("Asia/Kolkata");
    qputenv("TZDIR", "");
    dropUnknownZone();
    qunsetenv("TZDIR");
    QCOMPARE(localTime(instant("2026-01-01T00:00:00Z")), QStringLiteral("2026-01-01 05:30"));
    QCOMPARE(errors.lines(), QStringList());
}

void TestSystemAdapters::aZoneThatNobodyKnowsIsTheSystems_data()
{
    QTest::addColumn<QByteArray>("zone");
    const auto row = [](const char *name, const char *zone) { QTest::newRow(name) << QByteArray(zone); };
    row("no such name", "Nowhere/Land");
    row("a colon and no such name", ":Nowhere");
    row("a folder of zones", "Europe");
    row("another file", "/etc/passwd");
    row("a device", "/dev/zero");
    row("neither name nor rule", "12:34");
    row("a rule with too short a name", "AB3");
}

void TestSystemAdapters::aZoneThatNobodyKnowsIsTheSystems()
{
    QFETCH(QByteArray, zone);
    const CapturedStandardError errors;
    const ZoneInEnvironment environment(zone);
    dropUnknownZone();
    QVERIFY(!qEnvironmentVariableIsSet("TZ"));
    QCOMPARE(errors.lines(),
             QStringList(QStringLiteral("velquarin: TZ is \"%1\", which is no time zone: the system's counts")
                             .arg(QString::fromLatin1(zone))));
}

void TestSystemAdapters::aCalendarIsAnotherOnceTheZoneHasChanged()
{
    const SystemClock clock;
    const ZoneInEnvironment havana("America/Havana");
    const auto calendar = clock.calendar();
    QCOMPARE(clock.calendar(), calendar);
    const ZoneInEnvironment berlin("Europe/Berlin");
    QVERIFY(clock.calendar() != calendar);
}

#include "tst_systemadapters.moc"

namespace {

// Like the program, the test blocks the signals before its first thread starts.
int runWithBlockedSignals(int argc, char **argv)
{
    blockTerminationSignals();
    return runIn<TestSystemAdapters, QCoreApplication>(argc, argv);
}

}  // namespace

VELQUARIN_TEST_RUN(runWithBlockedSignals)
