// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Autostart/XdgAutostart.h"
#include "support/Files.h"

#include <QTemporaryDir>

#include <sys/stat.h>

namespace velquarin::test {

//! A home, a folder of everybody's and a program, in a folder that goes away with all that is in it. No autostart
//! folder is there at first.
struct AutostartPlace
{
    explicit AutostartPlace(const QString &programFolder = QStringLiteral("programs"))
        : program(home.filePath(programFolder + QStringLiteral("/velquarin")))
    {
        addProgram(program);
    }

    QTemporaryDir home;
    QString program;
    QString configuration = home.filePath(QStringLiteral("configuration"));
    QString folder = configuration + QStringLiteral("/autostart");
    QString name = QStringLiteral("io.velquarin.Velquarin.desktop");
    QString entry = folder + u'/' + name;
    QString everybodysConfiguration = home.filePath(QStringLiteral("everybody"));
    QString everybodysEntry = everybodysConfiguration + QStringLiteral("/autostart/") + name;

    static void addProgram(const QString &path)
    {
        writeFile(path, "#!/bin/sh\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    [[nodiscard]] AutostartEnvironment environment() const
    {
        return {folder, {everybodysConfiguration + QStringLiteral("/autostart")}, {}, {}, program};
    }

    [[nodiscard]] XdgAutostart item() const { return XdgAutostart(environment()); }
};

}  // namespace velquarin::test
