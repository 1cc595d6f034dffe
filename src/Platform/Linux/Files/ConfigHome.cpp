// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/ConfigHome.h"

#include "Platform/PathNames.h"

#include <QDir>

namespace velquarin {

QString configHome(const QString &xdgConfigHome, const QString &home)
{
    return xdgConfigHome.startsWith(u'/') ? xdgConfigHome : joinPath(home, QStringLiteral(".config"));
}

QString configHome()
{
    return configHome(qEnvironmentVariable("XDG_CONFIG_HOME"), QDir::homePath());
}

}  // namespace velquarin
