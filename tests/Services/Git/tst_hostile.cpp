// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "hostile/Readings.h"
#include "Services/Git/GitEnvironment.h"
#include "support/Extent.h"
#include "support/GitVersion.h"
#include "support/Standstill.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

#include <algorithm>
#include <fcntl.h>
#include <limits>
#include <sys/resource.h>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace velquarin::test {

inline char *toString(const Figures &figures)
{
    return qstrdup(QStringLiteral("%1: %2 this week, %3 in two years, last \"%4\"")
                       .arg(figures.branch)
                       .arg(figures.week)
                       .arg(figures.twoYears)
                       .arg(figures.last)
                       .toUtf8()
                       .constData());
}

}  // namespace velquarin::test

namespace {

QList<Attack> allAttacks()
{
    return referenceAttacks() + configurationAttacks() + fetchAttacks() + fileAttacks() + environmentAttacks();
}

bool areAlike(const Attack &one, const Attack &other)
{
    return one.harm == other.harm && (one.beyondSettings == nullptr) == (other.beyondSettings == nullptr);
}

// The first that does this harm and that settings stop, the first that they do not stop, and so on for each harm.
QList<Attack> oneOfEachKind(const QList<Attack> &attacks)
{
    QList<Attack> sample;
    for (const auto &attack : attacks) {
        if (std::ranges::none_of(sample, [&attack](const Attack &other) { return areAlike(attack, other); }))
            sample << attack;
    }
    return sample;
}

// The program as it ships meets every attack every day. A wall by itself is only there for the day on which the others
// fail, and all attacks of one kind meet it in the same place: one of each is enough to see that it still stands. That
// an attack does harm at all depends on git, and not on what we change.
QList<Attack> fetchSample()
{
    return wholeRun() ? fetchAttacks() : oneOfEachKind(fetchAttacks());
}

QList<Attack> attackSample()
{
    if (wholeRun())
        return allAttacks();
    return oneOfEachKind(referenceAttacks()) + oneOfEachKind(configurationAttacks()) + fetchSample() +
           oneOfEachKind(fileAttacks()) + oneOfEachKind(environmentAttacks());
}

Attack named(const QByteArray &name)
{
    const auto attacks = allAttacks() + idleThreats();
    const auto found = std::ranges::find(attacks, QLatin1String(name),
                                         [](const Attack &attack) { return QLatin1String(attack.name); });
    return found == attacks.end() ? Attack{"", Harm::Hangs, nullptr} : *found;
}

bool isKnown(const Attack &attack)
{
    return gitVersion() >= attack.since;
}

void addRows(const QList<Attack> &attacks)
{
    QTest::addColumn<int>("unused");
    for (const auto &attack : attacks) {
        if (isKnown(attack))
            QTest::newRow(attack.name) << 0;
        else
            qInfo("skipped, since this git is too old for it: %s", attack.name);
    }
}

// Whether the git that is here does harm to whoever takes no precautions.
bool isHarmful(const Attack &attack)
{
    return attack.until.isNull() || gitVersion() < attack.until;
}

bool leavesTraces(Harm harm)
{
    return harm == Harm::ProgramRuns || harm == Harm::FileChanges || harm == Harm::NetworkIsReached;
}

// Whether a reading did that to its surroundings, or that became of it.
bool hasHappened(Harm harm, const HostileRepository &repository, const FileSnapshot &before,
                 const NaiveReading &reading, const NaiveReading &harmless)
{
    switch (harm) {
    case Harm::ProgramRuns:
        return repository.programWasRun();
    case Harm::FileChanges:
        return repository.snapshot() != before;
    case Harm::NetworkIsReached:
        return repository.networkWasReached();
    case Harm::OutputChanges:
        return !reading.hung && !reading.crashed && reading.outputs != harmless.outputs;
    case Harm::Hangs:
        return reading.hung;
    case Harm::Crashes:
        return reading.crashed;
    }
    return false;
}

// What the service read, if it harmed nothing.
std::optional<Figures> harmlessFigures(const Attack &attack, Confinement confinement, CountedCommits counted)
{
    HostileRepository repository;
    attack.prepare(repository);
    writeFile(repository.inRoot("home/.gitconfig"), "[user]\n\temail = developer@example.org\n");
    const auto before = repository.snapshot();
    SystemService service(confinement);
    auto figures = figuresOf(service, repository.path(), counted);
    const auto difference = firstDifference(before, repository.snapshot());
    if (!figures)
        qWarning("git hangs");
    if (repository.programWasRun())
        qWarning("a program was run");
    if (repository.networkWasReached())
        qWarning("the network was reached");
    if (!difference.isEmpty())
        qWarning("%s", difference.constData());
    return figures;
}

void serviceIsNotHarmed(const Attack &attack, Confinement confinement)
{
    QCOMPARE(harmlessFigures(attack, confinement, {}), std::optional(attack.figures));
}

// The environment as it is, and of ours nothing but what begins so.
QProcessEnvironment withOurs(const char *prefix)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    const auto ours = gitEnvironment({}, false);
    for (const auto &name : ours.keys()) {
        if (name.startsWith(QLatin1String(prefix)))
            environment.insert(name, ours.value(name));
    }
    return environment;
}

// The environment as it is, and of ours nothing but that setting; all as it is where we have none of that name.
QProcessEnvironment withOurSetting(const QString &setting)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    const auto ours = gitEnvironment({}, false);
    const int count = ours.value(QStringLiteral("GIT_CONFIG_COUNT")).toInt();
    for (int number = 0; number < count; ++number) {
        if (ours.value(QStringLiteral("GIT_CONFIG_KEY_%1").arg(number)) != setting)
            continue;
        environment.insert(QStringLiteral("GIT_CONFIG_COUNT"), QStringLiteral("1"));
        environment.insert(QStringLiteral("GIT_CONFIG_KEY_0"), setting);
        environment.insert(QStringLiteral("GIT_CONFIG_VALUE_0"),
                           ours.value(QStringLiteral("GIT_CONFIG_VALUE_%1").arg(number)));
    }
    return environment;
}

constexpr long dataLimitInKilobytes = 2L * 1024 * 1024;

long largestChildInKilobytes()
{
    rusage usage{};
    if (getrusage(RUSAGE_CHILDREN, &usage) != 0)
        return std::numeric_limits<long>::max();
    return usage.ru_maxrss;  // NOLINT(cppcoreguidelines-pro-type-union-access): the C library's
}

// A compressed file of 19 MB that says, and holds, a commit of 3 GB: a letter, then "the same again" over and over.
// Source: RFC 1950; RFC 1951, section 3.2.6 (fixed codes: 285 with distance 1 repeats 258 bytes in 13 bits)
QByteArray compressedGigabytes()
{
    const auto zlib = [](const QByteArray &raw) { return qCompress(raw, 0).sliced(4); };
    // A stored block is marked as the last one in its first bit: here another block follows.
    auto file = zlib("commit 3000000000" + QByteArray(1, '\0') + "tree ").chopped(4);
    file[2] = '\0';
    // The start of a block of fixed codes and the letter "x"; it fills the byte with zeros, the start of "the same".
    constexpr quint64 sameAgain = 0b00000'10100011;
    quint64 bits = 0b010 | 0b00010101ULL << 3U;
    unsigned count = 11;
    constexpr int repetitions = 3'000'000'000LL / 258;
    file.reserve(20'000'000);
    for (int index = 0; index < repetitions; ++index) {
        bits |= sameAgain << count;
        for (count += 13; count >= 8; count -= 8, bits >>= 8U)
            file.append(char(bits & 0xffU));
    }
    return file;
}

// The other end of a fifo that somebody reads, or wants to; -1 while nobody does.
int otherEnd(const QString &fifo)
{
    return open(QFile::encodeName(fifo).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
}

}  // namespace

class TestHostile : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_harmless = NaiveReader::read(HostileRepository().path()); }
    void init() { failOnAnyWarning(); }
    void whoeverTakesNoPrecautionsIsHarmedBy_data() { addRows(attackSample()); }
    void whoeverTakesNoPrecautionsIsHarmedBy();
    void theConfinedServiceIsNotHarmedBy_data() { addRows(allAttacks()); }
    void theConfinedServiceIsNotHarmedBy();
    void theServiceThatCannotBeConfinedIsNotHarmedBy_data() { addRows(allAttacks()); }
    void theServiceThatCannotBeConfinedIsNotHarmedBy();
    void whateverCountsTheServiceIsNotHarmedBy_data();
    void whateverCountsTheServiceIsNotHarmedBy();
    void confinementAloneIsEnoughAgainst_data();
    void confinementAloneIsEnoughAgainst();
    void settingsAloneAreEnoughAgainst_data() { addRows(attackSample()); }
    void settingsAloneAreEnoughAgainst();
    void eachSettingByItselfIsEnoughAgainst_data();
    void eachSettingByItselfIsEnoughAgainst();
    void forbiddenProtocolsAloneAreEnoughAgainst_data() { addRows(fetchSample()); }
    void forbiddenProtocolsAloneAreEnoughAgainst();
    void nobodyIsHarmedBy_data() { addRows(wholeRun() ? idleThreats() : oneOfEachKind(idleThreats())); }
    void nobodyIsHarmedBy() const;
    void anEndlessBranchEndsAtTheLimitOfMemory();
    void aSmallFileThatHoldsGigabytesEndsAtTheLimitOfMemory();
    void whereGitCannotButHangTheServiceEndsAtOnce_data();
    void whereGitCannotButHangTheServiceEndsAtOnce();

private:
    NaiveReading m_harmless;  // of a repository that attacks nobody
};

void TestHostile::whoeverTakesNoPrecautionsIsHarmedBy()
{
    const auto attack = named(QTest::currentDataTag());
    HostileRepository repository;
    attack.prepare(repository);
    const auto before = repository.snapshot();
    const auto reading = NaiveReader::read(repository.path());
    QCOMPARE(hasHappened(attack.harm, repository, before, reading, m_harmless), isHarmful(attack));
}

void TestHostile::theConfinedServiceIsNotHarmedBy()
{
    if (!canConfine())
        QSKIP("This system cannot confine a child.");
    serviceIsNotHarmed(named(QTest::currentDataTag()), Confinement::Wanted);
}

void TestHostile::theServiceThatCannotBeConfinedIsNotHarmedBy()
{
    serviceIsNotHarmed(named(QTest::currentDataTag()), Confinement::Missing);
}

void TestHostile::whateverCountsTheServiceIsNotHarmedBy_data()
{
    QTest::addColumn<QString>("attack");
    QTest::addColumn<CountedCommits>("counted");
    const auto attacks = (wholeRun() ? allAttacks() : attackSample()) + idleThreats();
    for (const auto &attack : attacks) {
        const auto row = [&](const char *choice, CountedCommits counted) {
            if (isKnown(attack))
                QTest::addRow("%s: %s", choice, attack.name) << QString::fromLatin1(attack.name) << counted;
        };
        row("mine", {CountedAuthors::Me, CountedBranches::Default});
        row("all branches", {CountedAuthors::Everyone, CountedBranches::All});
        row("mine on all branches", {CountedAuthors::Me, CountedBranches::All});
    }
}

// What it shows may well be something else; whoever harms makes a warning, and fails.
void TestHostile::whateverCountsTheServiceIsNotHarmedBy()
{
    QFETCH(const QString, attack);
    QFETCH(const CountedCommits, counted);
    const auto confinement = canConfine() ? Confinement::Wanted : Confinement::Missing;
    QVERIFY(harmlessFigures(named(attack.toLatin1()), confinement, counted));
    if (wholeRun())
        QVERIFY(harmlessFigures(named(attack.toLatin1()), Confinement::Missing, counted));
}

void TestHostile::confinementAloneIsEnoughAgainst_data()
{
    QList<Attack> attacks;
    for (const auto &attack : attackSample()) {
        if (leavesTraces(attack.harm))
            attacks << attack;
    }
    addRows(attacks);
}

// The clean environment is the second wall; this is the first one by itself.
void TestHostile::confinementAloneIsEnoughAgainst()
{
    if (!canConfine())
        QSKIP("This system cannot confine a child.");
    const auto attack = named(QTest::currentDataTag());
    HostileRepository repository;
    attack.prepare(repository);
    const auto before = repository.snapshot();
    const auto reading = confinedNaiveReading(repository.path());
    QVERIFY(!reading.outputs.isEmpty());
    QVERIFY(!hasHappened(attack.harm, repository, before, reading, m_harmless));
    const auto difference = firstDifference(before, repository.snapshot());
    QVERIFY2(difference.isEmpty(), difference.constData());
}

// Nothing else of what the service sets up; what no setting stops says why, and is seen to go through.
void TestHostile::settingsAloneAreEnoughAgainst()
{
    const auto attack = named(QTest::currentDataTag());
    HostileRepository repository;
    attack.prepare(repository);
    const auto before = repository.snapshot();
    const auto reading = NaiveReader::read(repository.path(), withOurs("GIT_CONFIG_"));
    const bool isHarmed = hasHappened(attack.harm, repository, before, reading, m_harmless);
    QVERIFY2(isHarmed == (attack.beyondSettings != nullptr && isHarmful(attack)), attack.beyondSettings);
    QVERIFY(isHarmed || !repository.networkWasReached());
}

void TestHostile::eachSettingByItselfIsEnoughAgainst_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("attack");
    QList<Harm> harms;
    const auto row = [&harms](const char *setting, const char *attack) {
        const auto harm = named(attack).harm;
        if (isKnown(named(attack)) && (wholeRun() || !harms.contains(harm)))
            QTest::addRow("%s: %s", setting, attack) << QString::fromLatin1(setting) << QString::fromLatin1(attack);
        harms << harm;
    };
    row("log.showSignature", "a program that checks signatures");
    row("log.mailmap", "a mailmap in the work tree that is a fifo");
    row("core.commitGraph", "a commit graph that is a fifo");
    row("core.multiPackIndex", "an index of packs that is a fifo");
    row("i18n.logOutputEncoding", "output in UTF-16");
    row("color.ui", "colours everywhere");
    row("color.branch", "colours in the list of branches");
    row("mailmap.file", "a mailmap that is a fifo");
    row("mailmap.blob", "a mailmap that is missing");
    row("gpg.program", "a program that checks signatures");
    row("gpg.openpgp.program", "a program that checks signatures of OpenPGP");
    row("gpg.ssh.program", "a program that checks signatures of SSH");
    row("gpg.x509.program", "a program that checks signatures of X.509");
    row("core.fsmonitor", "a missing commit that arrives, and a file system monitor");
    row("core.hooksPath", "a missing commit that arrives, and a hook");
    row("core.alternateRefsCommand", "a missing commit that arrives, and a command that lists the refs of alternates");
    row("core.sshCommand", "a missing commit, and a command that stands for ssh");
    row("core.askPass", "a missing commit, and a program that is asked for a password");
    row("credential.helper", "a missing commit, and a program that keeps passwords");
    row("protocol.allow", "a missing commit, and a server that speaks git");
    row("fetch.bundleURI", "a missing commit, and bundles at an address");
}

void TestHostile::eachSettingByItselfIsEnoughAgainst()
{
    QFETCH(QString, setting);
    QFETCH(QString, attack);
    const auto found = named(attack.toLatin1());
    HostileRepository repository;
    found.prepare(repository);
    const auto before = repository.snapshot();
    const auto reading = NaiveReader::read(repository.path(), withOurSetting(setting));
    QVERIFY(!hasHappened(found.harm, repository, before, reading, m_harmless));
}

void TestHostile::forbiddenProtocolsAloneAreEnoughAgainst()
{
    const auto attack = named(QTest::currentDataTag());
    HostileRepository repository;
    attack.prepare(repository);
    NaiveReader::read(repository.path(), withOurs("GIT_ALLOW_PROTOCOL"));
    QVERIFY(!repository.programWasRun());
    QVERIFY(!repository.networkWasReached());
}

void TestHostile::nobodyIsHarmedBy() const
{
    const auto threat = named(QTest::currentDataTag());
    HostileRepository repository;
    threat.prepare(repository);
    const auto before = repository.snapshot();
    const auto reading = NaiveReader::read(repository.path());
    QVERIFY(!repository.programWasRun());
    QCOMPARE(reading.outputs, m_harmless.outputs);
    QVERIFY(repository.snapshot() == before);
    serviceIsNotHarmed(threat, Confinement::Missing);
}

void TestHostile::anEndlessBranchEndsAtTheLimitOfMemory()
{
    if (!wholeRun())
        QSKIP("Only in the whole run: a small file that holds gigabytes meets the same limit every day.");
    HostileRepository repository;
    const auto branch = repository.file(QStringLiteral(".git/refs/heads/main"));
    QVERIFY(QFile::remove(branch) && QFile::link(QStringLiteral("/dev/zero"), branch));
    QVERIFY(NaiveReader::read(repository.path()).ateMemory);
    SystemService service(Confinement::Wanted);
    QCOMPARE(answerOf(getDefaultBranch(service.git, repository.path())), std::optional(QStringLiteral("HEAD")));
    QVERIFY(largestChildInKilobytes() <= dataLimitInKilobytes + 64L * 1024);
}

void TestHostile::aSmallFileThatHoldsGigabytesEndsAtTheLimitOfMemory()
{
    HostileRepository repository;
    const QString id = QStringLiteral("1234567890123456789012345678901234567890");
    repository.write(QStringLiteral(".git/objects/") + id.left(2) + u'/' + id.mid(2), compressedGigabytes());
    repository.write(QStringLiteral(".git/refs/heads/main"), id.toLatin1() + '\n');
    QVERIFY(NaiveReader::read(repository.path()).ateMemory);
    SystemService service(Confinement::Wanted);
    const auto last = answerOf(getLastCommitDate(service.git, repository.path()));
    QVERIFY(last && !*last);
    QVERIFY(largestChildInKilobytes() <= dataLimitInKilobytes + 64L * 1024);
}

void TestHostile::whereGitCannotButHangTheServiceEndsAtOnce_data()
{
    QTest::addColumn<QString>("fifo");
    for (const char *name : {".git/HEAD", ".git/config", ".git/packed-refs", ".git/refs/heads/main",
                             ".git/objects/info/alternates", ".git/info/grafts", ".git/shallow", ".git/commondir"})
        QTest::newRow(name) << QString::fromLatin1(name);
    if (gitVersion() >= QVersionNumber(2, 46))
        QTest::newRow("tables of references") << QStringLiteral(".git/reftable/tables.list");
}

// No setting keeps git from reading these, and there is no limit on time.
void TestHostile::whereGitCannotButHangTheServiceEndsAtOnce()
{
    QFETCH(QString, fifo);
    HostileRepository repository;
    if (fifo.contains(QStringLiteral("reftable")))
        repository.moveReferencesToTables();
    repository.makeFifo(fifo);
    SystemService service(Confinement::Wanted);
    const auto hanging = getLastCommitDate(service.git, repository.path());
    int end = -1;
    // Opened once: git may go on where all it waited for was somebody at the other end.
    QTRY_VERIFY2(end >= 0 || (end = otherEnd(repository.file(fifo))) >= 0,
                 "nobody reads the fifo: " + sightOfChildren());
    QVERIFY(!hanging.isFinished());
    // The other end is still open and silent: git cannot have ended by itself.
    QVERIFY2(service.git.stop(atOnce), sightOfChildren());
    QVERIFY2(childrenOfThisProgram().isEmpty(), sightOfChildren());
    close(end);
}

VELQUARIN_TEST(TestHostile)
#include "tst_hostile.moc"
