// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/AutostartEnvironment.h"

#include "Platform/Linux/Files/ConfigHome.h"
#include "Platform/PathNames.h"

#include <QProcessEnvironment>

namespace velquarin {

namespace {

const QString autostart = QStringLiteral("autostart");

QStringList partsOf(const QString &value)
{
    return value.split(u':', Qt::SkipEmptyParts);
}

QStringList absolutePartsOf(const QString &value, const QString &otherwise)
{
    auto parts = partsOf(value.isEmpty() ? otherwise : value);
    parts.removeIf([](const QString &part) { return !part.startsWith(u'/'); });
    return parts;
}

QString userFolderOf(const QProcessEnvironment &variables)
{
    const auto configuration =
        configHome(variables.value(QStringLiteral("XDG_CONFIG_HOME")), variables.value(QStringLiteral("HOME")));
    return configuration.startsWith(u'/') ? joinPath(configuration, autostart) : QString();
}

}  // namespace

AutostartEnvironment autostartEnvironment(const QProcessEnvironment &variables, const QString &program)
{
    AutostartEnvironment environment;
    environment.userFolder = userFolderOf(variables);
    for (const auto &folder :
         absolutePartsOf(variables.value(QStringLiteral("XDG_CONFIG_DIRS")), QStringLiteral("/etc/xdg")))
        environment.systemFolders << joinPath(folder, autostart);
    environment.systemFolders.removeAll(environment.userFolder);
    environment.currentDesktop = partsOf(variables.value(QStringLiteral("XDG_CURRENT_DESKTOP")));
    environment.searchPath =
        absolutePartsOf(variables.value(QStringLiteral("PATH")), QStringLiteral("/usr/local/bin:/usr/bin:/bin"));
    environment.program = program;
    return environment;
}

}  // namespace velquarin
