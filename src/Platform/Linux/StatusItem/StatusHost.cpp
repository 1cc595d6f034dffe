// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusHost.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace velquarin {

namespace {

constexpr StatusHost unknownHost{};
constexpr StatusHost menuWithLabel{CountDisplay::Label, true, false};
constexpr StatusHost wide{CountDisplay::Wide, false, false};
constexpr StatusHost swaybar{CountDisplay::Square, false, false, true};
// Later panels of MATE would write a label, but nothing tells the panel's version: the desktop's file is another package's.
constexpr StatusHost mate{CountDisplay::Square, false, true};

struct KnownHost
{
    QByteArrayView name;
    StatusHost host;
};

// The kernel keeps 15 characters of a process's name: "indicator-application-service" reads as below.
constexpr std::array processes{
    KnownHost{"gnome-shell", menuWithLabel},     KnownHost{"ayatana-indicat", menuWithLabel},
    KnownHost{"indicator-appli", menuWithLabel}, KnownHost{"waybar", wide},
    KnownHost{"xapp-sn-watcher", wide},          KnownHost{"swaybar", swaybar},
    KnownHost{"notification-ar", mate},
};

// A desktop names itself first and what it resembles after that ("Budgie:GNOME"), so those that look like
// another one but show items in their own way are listed as well.
constexpr std::array desktops{
    KnownHost{"Budgie", unknownHost},  KnownHost{"GNOME-Flashback", unknownHost},
    KnownHost{"GNOME", menuWithLabel}, KnownHost{"Unity", menuWithLabel},
    KnownHost{"X-Cinnamon", wide},     KnownHost{"MATE", mate},
};

template <std::size_t count>
const KnownHost *find(const std::array<KnownHost, count> &hosts, QByteArrayView name)
{
    const auto *found = std::find_if(hosts.begin(), hosts.end(), [&](const auto &known) { return known.name == name; });
    return found == hosts.end() ? nullptr : found;
}

StatusHost hostOfDesktop(const QString &currentDesktop)
{
    const auto names = currentDesktop.split(u':');
    for (const auto &name : names) {
        if (const auto *known = find(desktops, name.toUtf8()))
            return known->host;
    }
    return unknownHost;
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

StatusHost statusHost(QByteArrayView processName, const QString &currentDesktop)
{
    if (processName.isEmpty())
        return hostOfDesktop(currentDesktop);
    const auto *known = find(processes, processName);
    return known ? known->host : unknownHost;
}

StatusHost statusHostOfProcess(uint processId)
{
    const auto processName = contentsOf(QStringLiteral("/proc/%1/comm").arg(processId)).trimmed();
    return statusHost(processName, qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

}  // namespace velquarin
