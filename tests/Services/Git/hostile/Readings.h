// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Attack.h"

#include "Platform/Calendar.h"
#include "Platform/Linux/Files/PosixFileTree.h"
#include "Platform/Linux/Process/ChildProcessRunner.h"
#include "Platform/Linux/Process/ProgramConfinement.h"
#include "Services/Git/GitService.h"
#include "support/Await.h"
#include "support/FakeClock.h"
#include "support/GitQuestions.h"
#include "support/NaiveReader.h"
#include "support/Standstill.h"

#include <QEventLoop>
#include <QTimer>

#include <optional>
#include <thread>

namespace velquarin::test {

enum class Confinement { Wanted, Missing };

//! The real runner, on a system that has, or has not, the means to confine its children.
class SystemRunner : public ChildProcessRunner
{
public:
    explicit SystemRunner(Confinement confinement)
        : m_confinement(confinement)
    {
    }

    bool confine(const QString &program) override
    {
        return m_confinement == Confinement::Wanted && ChildProcessRunner::confine(program);
    }

private:
    Confinement m_confinement;
};

//! The service over real git at noon of 2024-03-07, at Greenwich.
struct SystemService
{
    explicit SystemService(Confinement confinement)
        : runner(confinement)
    {
    }

    void count(CountedCommits counted)
    {
        await(git.ask(QDir::tempPath(), [counted](GitQueries &queries) {
            queries.count(counted);
            return true;
        }));
    }

    SystemRunner runner;
    PosixFileTree files;
    FakeClock clock{instant("2024-03-07T12:00:00Z")};
    GitService git{runner, files, clock};
};

//! Whether this system can confine a child at all.
inline bool canConfine()
{
    return ChildProcessRunner().confine(QStringLiteral("/usr/bin/git"));
}

//! The answer, or nothing and a warning where none has come after a while that is much longer than git takes.
template <typename Result>
std::optional<Result> answerOf(QFuture<Result> future)
{
    bool isOverdue = false;
    QTimer alarm;
    alarm.callOnTimeout([&isOverdue] { isOverdue = true; });
    alarm.start(waitLimit);
    while (!future.isFinished() && !isOverdue)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (!future.isFinished())
        qWarning("no answer after %d ms: %s", waitLimitMs, sightOfChildren().constData());
    return future.isFinished() ? std::optional(future.result()) : std::nullopt;
}

inline QString isoText(std::optional<Instant> moment)
{
    return moment
               ? QDateTime::fromMSecsSinceEpoch(moment->time_since_epoch().count(), universalTime).toString(Qt::ISODate)
               : QString();
}

//! What a refresh asks of a repository; nothing where git hangs.
inline std::optional<Figures> figuresOf(SystemService &service, const QString &path, CountedCommits counted = {})
{
    Figures figures{{}, 0, 0, {}};
    service.count(counted);
    const auto branch = answerOf(getDefaultBranch(service.git, path));
    if (!branch || !answerOf(service.git.isGitRepository(path)))
        return std::nullopt;
    figures.branch = *branch;
    const auto last = answerOf(getLastCommitDate(service.git, path));
    if (!last)
        return std::nullopt;
    figures.last = isoText(*last);
    const auto week = answerOf(getCommitHistory(service.git, path, 7));
    const auto commits = answerOf(getCommits(service.git, path, instant("2022-03-08T00:00:00Z"), service.clock.now()));
    if (!week || !commits)
        return std::nullopt;
    for (const auto &[day, count] : week->asKeyValueRange())
        figures.week += count;
    figures.twoYears = commits->size();
    return figures;
}

//! A reading without precautions, on a thread that is confined all the same.
inline NaiveReading confinedNaiveReading(const QString &path)
{
    NaiveReading reading;
    std::thread([&] {
        ProgramConfinement confinement;
        if (confinement.prepare("/usr/bin/git") && confinement.enforce())
            reading = NaiveReader::read(path);
    }).join();
    return reading;
}

}  // namespace velquarin::test
