// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Desktop/StatusHost.h"

#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>

namespace velquarin {

namespace {

constexpr StatusHost unknownHost{};
constexpr StatusHost menuWithLabel{CountDisplay::Label, true, false};
constexpr StatusHost wide{CountDisplay::Wide, false, false};
constexpr StatusHost swaybar{CountDisplay::Square, false, false, true};

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
};

// A desktop names itself first and what it resembles after that ("Budgie:GNOME"), so those that look like
// another one but show items in their own way are listed as well.
constexpr std::array desktops{
    KnownHost{"Budgie", unknownHost},  KnownHost{"GNOME-Flashback", unknownHost},
    KnownHost{"GNOME", menuWithLabel}, KnownHost{"Unity", menuWithLabel},
    KnownHost{"X-Cinnamon", wide},
};

const QVersionNumber mateThatShowsLabels(1, 27, 2);
constexpr StatusHost mateWithLabel{CountDisplay::Label, false, false};
constexpr StatusHost mateWithoutLabel{CountDisplay::Square, false, true};

template <std::size_t count>
const KnownHost *find(const std::array<KnownHost, count> &hosts, QByteArrayView name)
{
    const auto *found = std::find_if(hosts.begin(), hosts.end(), [&](const auto &known) { return known.name == name; });
    return found == hosts.end() ? nullptr : found;
}

StatusHost mateHost(const QVersionNumber &version)
{
    return version >= mateThatShowsLabels ? mateWithLabel : mateWithoutLabel;
}

StatusHost hostOfDesktop(const QString &currentDesktop, const QVersionNumber &mateVersion)
{
    const auto names = currentDesktop.split(u':');
    for (const auto &name : names) {
        if (name == QLatin1String("MATE"))
            return mateHost(mateVersion);
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

StatusHost statusHost(QByteArrayView processName, const QString &currentDesktop, const QVersionNumber &mateVersion)
{
    if (processName.isEmpty())
        return hostOfDesktop(currentDesktop, mateVersion);
    if (processName == QByteArrayView("notification-ar"))
        return mateHost(mateVersion);
    const auto *known = find(processes, processName);
    return known ? known->host : unknownHost;
}

QVersionNumber mateVersionIn(const QByteArray &versionFile)
{
    QXmlStreamReader reader(versionFile);
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("mate-version"))
        return {};
    int platform = 0;
    int minor = 0;
    int micro = 0;
    while (reader.readNextStartElement()) {
        const auto name = reader.name().toString();
        const auto text = reader.readElementText(QXmlStreamReader::SkipChildElements);
        if (name == QLatin1String("platform"))
            platform = text.toInt();
        else if (name == QLatin1String("minor"))
            minor = text.toInt();
        else if (name == QLatin1String("micro"))
            micro = text.toInt();
    }
    return reader.hasError() ? QVersionNumber() : QVersionNumber(platform, minor, micro);
}

StatusHost statusHostOfProcess(uint processId)
{
    const auto processName = contentsOf(QStringLiteral("/proc/%1/comm").arg(processId)).trimmed();
    const auto mateVersion = mateVersionIn(contentsOf(QStringLiteral("/usr/share/mate-about/mate-version.xml")));
    return statusHost(processName, qEnvironmentVariable("XDG_CURRENT_DESKTOP"), mateVersion);
}

}  // namespace velquarin
