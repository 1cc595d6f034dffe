// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Session/LaunchTokens.h"

namespace velquarin {

namespace {

QString take(const char *variable)
{
    auto value = qEnvironmentVariable(variable);
    qunsetenv(variable);
    return value;
}

}  // namespace

LaunchTokens takeLaunchTokens()
{
    return {.activationToken = take("XDG_ACTIVATION_TOKEN"), .startupId = take("DESKTOP_STARTUP_ID")};
}

}  // namespace velquarin
