// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/ZoneVariable.h"

#include "Platform/Linux/Files/RegularFile.h"
#include "Platform/Linux/Process/ErrorLine.h"
#include "Platform/PathNames.h"

#include <QFile>
#include <QRegularExpression>

namespace velquarin {

namespace {

constexpr qint64 mostBytes = 1 << 20;

bool isZoneFile(const QString &name)
{
    const auto given = qEnvironmentVariable("TZDIR");
    const auto folder = given.isEmpty() ? QStringLiteral("/usr/share/zoneinfo") : given;
    const auto content = readRegularFile(name.startsWith(u'/') ? name : joinPath(folder, name), mostBytes);
    return content && content->startsWith("TZif");
}

// A name and how far its clocks are from Greenwich; what follows may be missing.
bool isRule(const QString &text)
{
    static const QRegularExpression beginning(QStringLiteral("^([A-Za-z]{3,}|<[A-Za-z0-9+-]{3,}>)[+-]?[0-9]"));
    return beginning.match(text).hasMatch();
}

}  // namespace

void dropUnknownZone()
{
    const auto variable = QFile::decodeName(qgetenv("TZ"));
    const auto name = variable.startsWith(u':') ? variable.mid(1) : variable;
    // Nothing, but set: that of Greenwich.
    if (name.isEmpty() || isZoneFile(name) || isRule(name))
        return;
    printErrorLine(QStringLiteral("TZ is \"%1\", which is no time zone: the system's counts").arg(variable));
    qunsetenv("TZ");
}

}  // namespace velquarin
