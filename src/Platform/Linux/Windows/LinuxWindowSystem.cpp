// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/LinuxWindowSystem.h"

#include "Platform/Linux/Windows/LayerShell.h"
#include "Platform/Linux/Windows/X11Display.h"

#include <QGuiApplication>

namespace velquarin {

WindowSystem linuxWindowSystem()
{
    WindowSystem system{
        .placesWindows = canPlaceWindows(), .knowsPointer = isAllX11(), .blendsWindows = &x11HasCompositor};
    if (!system.placesWindows) {
        system.anchorWindow = layerShellAnchoring();
        system.showWithToken = &showWithToken;
    }
    return system;
}

bool canPlaceWindows()
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool isAllX11()
{
    return canPlaceWindows() && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void showWithToken(const QString &activationToken, const std::function<void()> &show)
{
    constexpr auto variable = "XDG_ACTIVATION_TOKEN";
    if (!activationToken.isEmpty())
        qputenv(variable, activationToken.toUtf8());
    show();
    qunsetenv(variable);
}

}  // namespace velquarin
