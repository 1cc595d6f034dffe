// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/AppSettings.h"
#include "Platform/Linux/Files/PosixFileTree.h"
#include "Services/Git/GitService.h"
#include "Services/Reminder/NotificationService.h"
#include "Services/Streak/StreakManager.h"
#include "support/Await.h"
#include "support/FakeClock.h"
#include "support/FakeProcessRunner.h"
#include "support/FakeTimers.h"
#include "support/MemoryPreferences.h"
#include "support/RecordingNotificationCenter.h"
#include "support/RecordingOutput.h"

namespace velquarin::test {

//! The whole engine in a world of its own: a clock that stands, a store in memory, real folders, and git as given.
template <typename Runner, typename Files = PosixFileTree>
struct EngineWith
{
    Runner runner;
    Files files;
    FakeClock clock{instant("2026-11-20T12:00:00Z")};
    FakeTimers timers;
    MemoryPreferences preferences;
    RecordingOutput output;
    RecordingNotificationCenter center;
    GitService git{runner, files, clock};
    AppSettings settings{preferences};
    NotificationService notifications{center, preferences, clock, timers, output};
    StreakManager manager{git, settings, notifications, clock, timers, output};

    //! Tracks a repository at that path, in which git prints these author days and this last date.
    void track(const QString &path, const QByteArray &weekLog, const QByteArray &yearLog, const QByteArray &lastDate)
    {
        settings.addRepository(path, false);
        script(path, weekLog, yearLog, lastDate);
    }

    void script(const QString &path, const QByteArray &weekLog, const QByteArray &yearLog, const QByteArray &lastDate)
    {
        runner.answerIn(path, QStringLiteral("rev-parse --git-dir"), ".git\n");
        runner.answerIn(path, logSince(-6), weekLog);
        runner.answerIn(path, logSince(-730), yearLog);
        runner.answerIn(path, QStringLiteral("log HEAD -1 --format=%aI"), lastDate);
    }

    //! The log command of a period that starts so many days from today and ends today.
    [[nodiscard]] QString logSince(int days) const
    {
        const auto today = clock.calendar().dateOf(clock.now());
        return QStringLiteral("log HEAD --format=%ad --date=short --since=%1 --until=%2")
            .arg(today.addDays(days).toString(Qt::ISODate), today.addDays(1).toString(Qt::ISODate));
    }

    void refresh() { await(manager.refresh()); }
};

//! The same with scripted git.
using Engine = EngineWith<FakeProcessRunner>;

}  // namespace velquarin::test
