// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/AutostartEntry.h"

#include "Platform/Linux/Autostart/DesktopEntry.h"
#include "Platform/Linux/Autostart/ExecCommand.h"
#include "Platform/PathNames.h"

#include <algorithm>

namespace velquarin {

namespace {

// The first name of the desktop that one of the lists has decides.
bool isForDesktop(const DesktopEntry &entry, const QStringList &currentDesktop)
{
    const auto only = entry.strings("OnlyShowIn");
    const auto anyBut = entry.strings("NotShowIn");
    for (const auto &name : currentDesktop) {
        if (only && only->contains(name))
            return true;
        if (anyBut && anyBut->contains(name))
            return false;
    }
    return !only;
}

// What the settings of GNOME and Cinnamon, and of MATE, write when their user takes a program off the list.
bool isSwitchedOff(const DesktopEntry &entry)
{
    return entry.boolean("X-GNOME-Autostart-enabled") == false || entry.boolean("X-MATE-Autostart-enabled") == false;
}

// A relative path is none: nobody knows from where a session would look.
bool isFound(const QString &program, const AutostartJudge &judge)
{
    if (program.startsWith(u'/'))
        return judge.isProgram(program);
    return !program.isEmpty() && !program.contains(u'/') &&
           std::any_of(judge.searchPath.begin(), judge.searchPath.end(),
                       [&](const QString &folder) { return judge.isProgram(joinPath(folder, program)); });
}

bool hasProgram(const DesktopEntry &entry, const AutostartJudge &judge)
{
    const auto condition = entry.string("TryExec");
    const auto command = entry.string("Exec");
    const auto program = command ? programOfExec(*command) : std::nullopt;
    return program && isFound(*program, judge) && (!condition || condition->isEmpty() || isFound(*condition, judge));
}

QByteArray entryText(const QString &program, const QByteArray &state)
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Velquarin\n"
           "Comment=Your commit streak in the status bar\n"
           "Exec=" +
           desktopEntryString(execOfProgram(program)) +
           "\n"
           "Icon=io.velquarin.Velquarin\n"
           "Terminal=false\n" +
           state + '\n';
}

}  // namespace

LoginItemStatus autostartStatus(const QByteArray &content, const AutostartJudge &judge)
{
    const auto entry = DesktopEntry::parse(content);
    if (!entry || entry->string("Type") != QStringLiteral("Application"))
        return LoginItemStatus::NotFound;
    if (entry->boolean("Hidden") == true || !isForDesktop(*entry, judge.currentDesktop))
        return LoginItemStatus::NotRegistered;
    if (isSwitchedOff(*entry))
        return LoginItemStatus::RequiresApproval;
    return hasProgram(*entry, judge) ? LoginItemStatus::Enabled : LoginItemStatus::NotFound;
}

QByteArray autostartEntry(const QString &program)
{
    return entryText(program, "X-GNOME-Autostart-enabled=true");
}

QByteArray hiddenAutostartEntry(const QString &program)
{
    return entryText(program, "Hidden=true");
}

}  // namespace velquarin
