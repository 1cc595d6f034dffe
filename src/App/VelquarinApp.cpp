// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/VelquarinApp.h"

#include "App/AppDelegate.h"
#include "App/FiguresPublisher.h"
#include "App/Shared.h"
#include "App/Translations.h"
#include "Platform/Linux/Autostart/XdgAutostart.h"
#include "Platform/Linux/Files/InotifyWatch.h"
#include "Platform/Linux/Process/TerminationSignals.h"
#include "Platform/Linux/Session/SingleInstance.h"
#include "Platform/Linux/StatusItem/LinuxStatusItem.h"
#include "Platform/Linux/Windows/DesktopAppearance.h"
#include "Platform/Linux/Windows/FolderWindows.h"
#include "Platform/Linux/Windows/LinuxWindowSystem.h"
#include "Platform/Linux/Windows/StartupNotification.h"
#include "Platform/Linux/Windows/X11Display.h"
#include "Views/Controls/GuestStyle.h"
#include "Views/Controls/Symbols.h"

#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QProcessEnvironment>

#include <cstdlib>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

// For each of two: longer than git takes to die and a disk to write, shorter together than a user's patience.
constexpr auto patienceAtTheEnd = 400ms;
constexpr auto patienceWithServers = 100ms;

// Beside the program in a build folder, below the common prefix where it is installed.
QString dataFolder(const QString &name)
{
    const QDir programFolder(QCoreApplication::applicationDirPath());
    for (const auto &folder : {QStringLiteral("share/velquarin/"), QStringLiteral("../share/velquarin/")}) {
        if (programFolder.exists(folder + name))
            return QDir::cleanPath(programFolder.absoluteFilePath(folder + name));
    }
    return {};
}

// What is left to take down holds nothing that the user could lose, and some of it waits for others: for a thread that a
// file system holds, and on Wayland, now and then, Qt's threads for each other.
[[noreturn]] void end(int status)
{
    std::_Exit(status);
}

// A launcher on X11 waits for a window, or to hear that none will come.
auto openingFor(AppDelegate &delegate)
{
    return [&delegate](const QString &token) {
        delegate.openDashboard(token);
        finishStartup(token);
    };
}

}  // namespace

VelquarinApp::VelquarinApp(LaunchTokens launchTokens)
    : m_launchTokens(std::move(launchTokens))
{
}

void VelquarinApp::run()
{
    SingleInstance instance(m_bus, m_launchTokens);
    if (instance.settle() == SingleInstance::Role::Second) {
        finishStartup(m_launchTokens.startupId);
        end(EXIT_SUCCESS);
    }

    const auto translation = translationFor(QLocale().uiLanguages(), dataFolder(QStringLiteral("translations")));
    useTranslation(translation.get());
    // Title bars and switchers on X11 need not look for the desktop file.
    QGuiApplication::setWindowIcon(style::programIcon());
    GuestStyle::install();
    const DesktopAppearance appearance(m_bus);
    QObject::connect(&appearance, &DesktopAppearance::applied,
                     [&appearance] { GuestStyle::setReducedMotion(appearance.isMotionReduced()); });
    JsonPreferencesStore preferences(defaultPreferencesPath());
    FreedesktopNotifications notifications(m_bus);
    const InputTime inputTime;
    FileManagerViewer fileViewer(
        m_bus, [&inputTime] { return startupIdOn(QGuiApplication::platformName(), inputTime.now()); });
    XdgAutostart loginItem(
        autostartEnvironment(QProcessEnvironment::systemEnvironment(), QCoreApplication::applicationFilePath()));
    FolderDialog folderChooser;
    InotifyWatch repositoryWatch;
    Shared shared({m_processes, m_files, m_clock, m_timers, m_output, preferences, notifications, fileViewer, loginItem,
                   folderChooser, repositoryWatch});
    AppDelegate delegate(
        shared, {[this] { return std::make_unique<LinuxStatusItem>(m_bus, dataFolder(QStringLiteral("icons"))); },
                 [] { QCoreApplication::exit(); }, &x11RepeatRightClick, linuxWindowSystem()});
    QObject::connect(&instance, &SingleInstance::showRequested, &delegate, openingFor(delegate));
    QObject::connect(&instance, &SingleInstance::refreshRequested, &delegate.streakManager(), &StreakManager::refresh);
    const FiguresPublisher publisher(delegate.streakManager(), m_clock,
                                     [&instance](const QVariantMap &figures) { instance.publish(figures); });
    QObject::connect(&notifications, &NotificationCenter::openRequested, &delegate, openingFor(delegate));
    // Not quit(), which asks every window first: the dashboard refuses to be closed by anybody but its user.
    const TerminationSignals signals([] { QCoreApplication::exit(); });

    delegate.applicationDidFinishLaunching();
    finishStartup(m_launchTokens.startupId);
    const auto status = QCoreApplication::exec();
    notifications.withdrawAndWait(patienceWithServers);
    shared.gitService().stop(patienceAtTheEnd);
    preferences.flush(patienceAtTheEnd);
    end(status);
}

}  // namespace velquarin
