// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// The engine's refresh, with everything real but the desktop. Takes repositories as arguments; refreshes once for each
// line on standard input and answers with one line: the milliseconds it took, those of processor time of our own and of
// all the gits, how often our threads went to sleep, how many gits ran, and how many commits were counted. To "gap" it
// answers with the longest time for which the main thread did not answer, to "memory" with the bytes that the first
// two refreshes leave behind for each repository.
// bench_refresh --record FILE REPOSITORY... refreshes once, and writes the commands to FILE and their environment beside it.
// With --mine before everything else the user's own commits on all branches count.

#include "Models/AppSettings.h"
#include "Platform/Linux/Files/PosixFileTree.h"
#include "Platform/Linux/Process/ChildProcessRunner.h"
#include "Platform/Linux/Process/StandardStreams.h"
#include "Platform/Linux/Process/SystemClock.h"
#include "Services/Git/GitService.h"
#include "Services/Reminder/NotificationService.h"
#include "Services/Streak/StreakManager.h"
#include "support/Await.h"
#include "support/MemoryPreferences.h"
#include "support/RecordingNotificationCenter.h"
#include "support/Ticker.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <iostream>
#include <malloc.h>
#include <numeric>
#include <sys/resource.h>

using namespace velquarin;

namespace {

class CountingRunner : public ChildProcessRunner
{
public:
    ProcessOutput run(const ProcessRequest &request) override
    {
        ++m_count;
        if (m_record.isOpen())
            record((QStringList{request.directory} + request.arguments).join(u'\t').toUtf8());
        m_environment = request.environment;
        return ChildProcessRunner::run(request);
    }

    // A refresh asks for the settings of a repository once.
    void record(const QByteArray &command)
    {
        if (!command.contains("\tconfig\t") || std::exchange(m_settings, command) != command)
            m_record.write(command + '\n');
    }

    [[nodiscard]] int count() const { return m_count; }

    void recordTo(const QString &path)
    {
        m_record.setFileName(path);
        if (!m_record.open(QIODevice::WriteOnly))
            qFatal("%s cannot be written", qPrintable(path));
    }

    void writeEnvironment()
    {
        QFile file(m_record.fileName() + QStringLiteral(".environment"));
        if (file.open(QIODevice::WriteOnly))
            file.write(m_environment.toStringList().join(u'\n').toUtf8() + '\n');
        m_record.close();
    }

private:
    std::atomic<int> m_count = 0;
    QFile m_record;
    QByteArray m_settings;  // the last question for them
    QProcessEnvironment m_environment;
};

double processorTime(__rusage_who who)
{
    rusage usage{};
    getrusage(who, &usage);
    const auto milliseconds = [](const timeval &time) {
        return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

// Source: proc(5), voluntary_ctxt_switches
long sleeps()
{
    long total = 0;
    const auto threads = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto &thread : threads) {
        QFile status(QStringLiteral("/proc/self/task/%1/status").arg(thread));
        if (!status.open(QIODevice::ReadOnly))
            continue;
        const auto text = status.readAll();
        const QByteArray name("\nvoluntary_ctxt_switches:");
        const auto begin = text.indexOf(name) + name.size();
        total += text.mid(begin, text.indexOf('\n', begin) - begin).trimmed().toLong();
    }
    return total;
}

struct Engine
{
    CountingRunner processes;
    PosixFileTree files;
    SystemClock clock;
    BootTimeTimers timers;
    StandardOutput output;
    test::MemoryPreferences preferences;
    test::RecordingNotificationCenter center;
    GitService git{processes, files, clock};
    AppSettings settings{preferences};
    NotificationService notifications{center, preferences, clock, timers, output};
    StreakManager manager{git, settings, notifications, clock, timers, output};
};

qint64 commitsCounted(const StreakManager &manager)
{
    const auto &year = manager.yearHistory();
    return std::accumulate(year.begin(), year.end(), qint64(0));
}

void answer(Engine &engine)
{
    const auto own = processorTime(RUSAGE_SELF);
    const auto gits = processorTime(RUSAGE_CHILDREN);
    const auto asleep = sleeps();
    const auto count = engine.processes.count();
    QElapsedTimer elapsed;
    elapsed.start();
    test::await(engine.manager.refresh());
    std::cout << double(elapsed.nsecsElapsed()) / 1e6 << ' ' << processorTime(RUSAGE_SELF) - own << ' '
              << processorTime(RUSAGE_CHILDREN) - gits << ' ' << sleeps() - asleep << ' '
              << engine.processes.count() - count << ' ' << commitsCounted(engine.manager) << std::endl;
}

// A refresh of its own: the ticker wakes the main thread a thousand times a second.
void answerWithGap(Engine &engine)
{
    QElapsedTimer taken;
    taken.start();
    const auto busy = test::longestGapDuring([&engine] { test::await(engine.manager.refresh()); });
    const QDeadlineTimer end(taken.elapsed());
    const auto idle = test::longestGapDuring([&end] { test::awaitThat([&end] { return end.hasExpired(); }); });
    std::cout << std::max<qint64>(0, busy - idle) << std::endl;
}

// Source: mallinfo(3); of all threads
void answerWithMemory(Engine &engine)
{
    const auto before = mallinfo2().uordblks;
    for (int refresh = 0; refresh < 2; ++refresh)
        test::await(engine.manager.refresh());
    std::cout << (mallinfo2().uordblks - before) / std::size_t(engine.manager.repositoryStats().size()) << std::endl;
}

// The questions of a refresh, each with all that belongs to it and none remembered.
void record(const QStringList &paths, const QString &file, CountedCommits counted)
{
    CountingRunner processes;
    const PosixFileTree files;
    const SystemClock clock;
    processes.recordTo(file);
    GitQueries git(processes, files, clock, QProcessEnvironment::systemEnvironment());
    git.count(counted);
    const auto calendar = clock.calendar();
    const auto start = calendar.addDays(calendar.startOfDay(clock.now()), -730);
    for (const auto &path : paths) {
        if (!git.isGitRepository(path) || git.getCommitHistory(path, 7).isEmpty())
            qFatal("%s is no repository with commits", qPrintable(path));
        if (git.getCommits(path, *start, clock.now()).isEmpty() || !git.getLastCommitDate(path))
            qFatal("%s has no commits", qPrintable(path));
    }
    processes.writeEnvironment();
}

std::unique_ptr<Engine> engineWith(const QStringList &paths, CountedCommits counted)
{
    auto engine = std::make_unique<Engine>();
    engine->settings.setCountedAuthors(counted.authors);
    engine->settings.setCountedBranches(counted.branches);
    engine->settings.setNotifyOnStreakRisk(false);
    engine->settings.addRepositories(paths, false);
    return engine;
}

void commitIn(const QString &path)
{
    QProcess git;
    git.setWorkingDirectory(path);
    git.start(QStringLiteral("git"),
              {QStringLiteral("-c"), QStringLiteral("user.name=A"), QStringLiteral("-c"),
               QStringLiteral("user.email=a@example.org"), QStringLiteral("commit"), QStringLiteral("--quiet"),
               QStringLiteral("--allow-empty"), QStringLiteral("-m"), QStringLiteral("x")});
    if (!git.waitForFinished(-1) || git.exitCode() != 0)
        qFatal("no commit in %s", qPrintable(path));
}

}  // namespace

// Each line of the input is one refresh: the first of an engine, or of one that has read everything before ("again"), or has
// and one repository of all has a new commit ("changed"), or the longest stall of one ("gap"), or its memory.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    auto paths = QCoreApplication::arguments().mid(1);
    const bool isMine = paths.removeOne(QStringLiteral("--mine"));
    const auto counted = isMine ? CountedCommits{CountedAuthors::Me, CountedBranches::All} : CountedCommits();
    if (paths.value(0) == QLatin1String("--record")) {
        record(paths.mid(2), paths.value(1), counted);
        return 0;
    }
    auto kept = engineWith(paths, counted);
    test::await(kept->manager.refresh());
    std::string line;
    for (qsizetype turn = 0; std::getline(std::cin, line); ++turn) {
        if (line == "changed")
            commitIn(paths.at(turn % paths.size()));
        if (line == "changed" || line == "again")
            answer(*kept);
        else if (auto engine = engineWith(paths, counted); line == "gap")
            answerWithGap(*engine);
        else if (line == "memory")
            answerWithMemory(*engine);
        else
            answer(*engine);
    }
    return kept->manager.repositoryStats().size() == paths.size() ? 0 : 1;
}
