// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// Refreshes the real engine over real repositories. Each line of standard input is a task,
//     {"zone": "Europe/Berlin", "now": <ms>, "gitTime": <s>, "repositories": ["/path", ...], "mine": <bool>, "all": <bool>}
// and is answered with a line of all the figures that the refresh published. Moments and days are milliseconds. "gitTime"
// is what git takes for the present: it reads the bounds of a period as of that time of day. "mine" says whether only the
// user's commits count, "all" whether those on all branches do.

#include "Models/AppSettings.h"
#include "Platform/Linux/Files/PosixFileTree.h"
#include "Platform/Linux/Process/ChildProcessRunner.h"
#include "Services/Git/GitService.h"
#include "Services/Reminder/NotificationService.h"
#include "Services/Streak/StreakManager.h"
#include "support/Await.h"
#include "support/FakeClock.h"
#include "support/FakeTimers.h"
#include "support/MemoryPreferences.h"
#include "support/RecordingNotificationCenter.h"
#include "support/RecordingOutput.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <iostream>
#include <string>

using namespace velquarin;
using namespace velquarin::test;

namespace {

class RunnerAt : public ChildProcessRunner
{
public:
    explicit RunnerAt(qint64 seconds)
        : m_seconds(seconds)
    {
    }

    ProcessOutput run(const ProcessRequest &request) override
    {
        auto changed = request;
        changed.environment.insert(QStringLiteral("GIT_TEST_DATE_NOW"), QString::number(m_seconds));
        return ChildProcessRunner::run(changed);
    }

private:
    qint64 m_seconds;
};

struct World
{
    explicit World(Instant now, const char *zone, qint64 gitTime)
        : runner(gitTime)
        , clock(now, zone)
    {
    }

    RunnerAt runner;
    PosixFileTree files;
    FakeClock clock;
    FakeTimers timers;
    MemoryPreferences preferences;
    RecordingOutput output;
    RecordingNotificationCenter center;
    GitService git{runner, files, clock};
    AppSettings settings{preferences};
    NotificationService notifications{center, preferences, clock, timers, output};
    StreakManager manager{git, settings, notifications, clock, timers, output};
};

QJsonValue milliseconds(std::optional<Instant> moment)
{
    return moment ? QJsonValue(qint64(moment->time_since_epoch().count())) : QJsonValue();
}

QJsonArray week(const QList<CommitDay> &days)
{
    QJsonArray array;
    for (const auto &day : days)
        array.append(QJsonArray{milliseconds(day.date), day.commitCount});
    return array;
}

QJsonArray year(const DayCounts &history)
{
    QJsonArray array;
    for (const auto &[day, count] : history.asKeyValueRange())
        array.append(QJsonArray{milliseconds(day), count});
    return array;
}

QJsonArray repositories(const QList<RepositoryStats> &stats)
{
    QJsonArray array;
    for (const auto &repository : stats)
        array.append(QJsonArray{repository.path, repository.todayCommits, repository.weekCommits,
                                milliseconds(repository.lastCommitDate)});
    return array;
}

QJsonObject figuresOf(const StreakManager &manager)
{
    return {
        {QStringLiteral("currentStreak"), manager.currentStreak()},
        {QStringLiteral("longestStreak"), manager.longestStreak()},
        {QStringLiteral("hasCommittedToday"), manager.hasCommittedToday()},
        {QStringLiteral("totalCommitsThisWeek"), manager.totalCommitsThisWeek()},
        {QStringLiteral("commitHistory"), week(manager.commitHistory())},
        {QStringLiteral("yearHistory"), year(manager.yearHistory())},
        {QStringLiteral("repositoryStats"), repositories(manager.repositoryStats())},
        {QStringLiteral("withoutAddress"), QJsonArray::fromStringList(manager.repositoriesWithoutAddress())},
    };
}

QJsonObject answer(const QJsonObject &task)
{
    const auto zone = task.value(QStringLiteral("zone")).toString().toLatin1();
    qputenv("TZ", zone);  // git's zone is that of the process
    World world(Instant(std::chrono::milliseconds(task.value(QStringLiteral("now")).toInteger())), zone.constData(),
                task.value(QStringLiteral("gitTime")).toInteger());
    const auto paths = task.value(QStringLiteral("repositories")).toArray();
    for (const auto &path : paths)
        world.settings.addRepository(path.toString(), false);
    const bool isMine = task.value(QStringLiteral("mine")).toBool();
    const bool isAll = task.value(QStringLiteral("all")).toBool();
    world.settings.setCountedAuthors(isMine ? CountedAuthors::Me : CountedAuthors::Everyone);
    world.settings.setCountedBranches(isAll ? CountedBranches::All : CountedBranches::Default);
    await(world.manager.refresh());
    return figuresOf(world.manager);
}

}  // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    for (std::string line; std::getline(std::cin, line);) {
        const auto task = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        std::cout << QJsonDocument(answer(task)).toJson(QJsonDocument::Compact).constData() << std::endl;
    }
}
