// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/ConsoleApp.h"
#include "App/VelquarinApp.h"
#include "Platform/Linux/Process/StandardStreams.h"
#include "Platform/Linux/Process/SystemClock.h"
#include "Platform/Linux/Process/TerminationSignals.h"
#include "Platform/Linux/Session/SingleInstance.h"
#include "Views/Controls/Accessibility.h"

#include <QApplication>
#include <QLoggingCategory>

#include <csignal>
#include <cstdlib>
#include <utility>

namespace {

bool isDisplayNamed()
{
    return !(qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
             qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"));
}

// Where Qt finds no display it gives up with a core dump and lines for developers, of which the last before the end says
// what is wrong with one that is named.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    static QString reason;
    if (type == QtWarningMsg && isDisplayNamed())
        reason = QStringLiteral(" (") + text.section(u'\n', 0, 0).trimmed() + u')';
    if (type != QtFatalMsg)
        return;
    velquarin::printErrorLine(
        QStringLiteral("There is no display to appear on%1; \"velquarin status\" prints the streak "
                       "without one.")
            .arg(reason));
    std::_Exit(EXIT_FAILURE);
}

// Who looks for the reason sees all that Qt says, and its end.
bool isAskedForDetails()
{
    return qEnvironmentVariableIsSet("QT_DEBUG_PLUGINS") || qEnvironmentVariableIsSet("QT_LOGGING_RULES");
}

}  // namespace

int main(int argc, char **argv)
{
    const bool isOutputOpen = velquarin::openStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);
    velquarin::dropUnknownZone();
    if (argc > 1)
        velquarin::runCommand(argc, argv, isOutputOpen);
    velquarin::blockTerminationSignals();

    // A session that is saved at log-out starts again what was registered with it, whatever "Launch at login" says.
    qunsetenv("SESSION_MANAGER");

    // From 6.10 on Qt complains here where the desktop has no portal, which we do without.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.services.warning=false"));

    auto launchTokens = velquarin::takeLaunchTokens();
    velquarin::installAccessibleApplication();
    const auto handler = qInstallMessageHandler(isAskedForDetails() ? nullptr : &endWithoutDisplay);
    const QApplication application(argc, argv);
    qInstallMessageHandler(handler);
    QApplication::setApplicationName(QStringLiteral("velquarin"));
    QApplication::setApplicationVersion(QStringLiteral(VELQUARIN_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("io.velquarin.Velquarin"));
    QApplication::setQuitOnLastWindowClosed(false);
    // A desktop's own dialogs count their jobs in Qt, and the last one to finish would end the program.
    QApplication::setQuitLockEnabled(false);

    velquarin::VelquarinApp(std::move(launchTokens)).run();
}
