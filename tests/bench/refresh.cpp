// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// The engine's refresh, with everything real but the desktop. Takes repositories as arguments; refreshes once for each
// line on standard input and answers with the milliseconds it took.

#include "Models/AppSettings.h"
#include "Platform/Linux/System/BootTimeTimers.h"
#include "Platform/Linux/System/ChildProcessRunner.h"
#include "Platform/Linux/System/PosixFileTree.h"
#include "Platform/Linux/System/StandardOutput.h"
#include "Platform/Linux/System/SystemClock.h"
#include "Services/GitService.h"
#include "Services/NotificationService.h"
#include "Services/StreakManager.h"
#include "support/Await.h"
#include "support/MemoryPreferences.h"
#include "support/RecordingNotificationCenter.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <iostream>

using namespace velquarin;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    ChildProcessRunner processes;
    PosixFileTree files;
    SystemClock clock;
    BootTimeTimers timers;
    StandardOutput output;
    test::MemoryPreferences preferences;
    test::RecordingNotificationCenter center;
    GitService git(processes, files, clock);
    AppSettings settings(preferences);
    settings.setNotifyOnStreakRisk(false);
    NotificationService notifications(center, preferences, clock, timers, output);
    StreakManager manager(git, settings, notifications, clock, timers, output);
    const auto paths = QCoreApplication::arguments().mid(1);
    for (const auto &path : paths)
        settings.addRepository(path, false);

    std::string line;
    while (std::getline(std::cin, line)) {
        QElapsedTimer elapsed;
        elapsed.start();
        test::await(manager.refresh());
        std::cout << double(elapsed.nsecsElapsed()) / 1e6 << std::endl;
    }
    return manager.repositoryStats().size() == paths.size() ? 0 : 1;
}
