// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/VelquarinApp.h"
#include "Platform/Linux/Process/StandardStreams.h"
#include "Platform/Linux/Process/SystemClock.h"
#include "Platform/Linux/Process/TerminationSignals.h"
#include "Platform/Linux/Session/SingleInstance.h"
#include "Views/Controls/Accessibility.h"

#include <QApplication>
#include <QLoggingCategory>

#include <csignal>
#include <utility>

int main(int argc, char **argv)
{
    velquarin::openStandardDescriptors();
    velquarin::blockTerminationSignals();
    std::signal(SIGPIPE, SIG_IGN);

    // A session that is saved at log-out starts again what was registered with it, whatever "Launch at login" says.
    qunsetenv("SESSION_MANAGER");

    velquarin::dropUnknownZone();

    // From 6.10 on Qt complains here where the desktop has no portal, which we do without.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.services.warning=false"));

    auto launchTokens = velquarin::takeLaunchTokens();
    velquarin::installAccessibleApplication();
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("velquarin"));
    QApplication::setApplicationVersion(QStringLiteral(VELQUARIN_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("io.velquarin.Velquarin"));
    QApplication::setQuitOnLastWindowClosed(false);
    // A desktop's own dialogs count their jobs in Qt, and the last one to finish would end the program.
    QApplication::setQuitLockEnabled(false);

    velquarin::VelquarinApp(std::move(launchTokens)).run();
}
