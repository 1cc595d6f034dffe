// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Files.h"

#include <QTemporaryDir>

namespace velquarin::test {

//! Where temporary files cost no disk access, if there is such a place; else where they always go.
inline QString quickestFolder()
{
    const auto memory = QStringLiteral("/dev/shm");
    return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
}

//! A folder for one preferences file, which goes away with all that is in it. Nothing is in it at first.
struct PreferencesPlace
{
    explicit PreferencesPlace(const QString &below = quickestFolder())
        : home(below + QStringLiteral("/velquarin-XXXXXX"))
    {
    }

    QTemporaryDir home;
    QString folder = home.filePath(QStringLiteral("config/velquarin"));
    QString path = folder + QStringLiteral("/preferences.json");

    void fill(const QByteArray &content) const { writeFile(path, content); }
    [[nodiscard]] QByteArray content() const { return readFile(path); }

    //! The paths of what was put aside, in the order of their names.
    [[nodiscard]] QStringList aside() const
    {
        const auto pattern = QStringLiteral("preferences.json.damaged-*");
        QStringList paths;
        for (const auto &name : QDir(folder).entryList({pattern}, QDir::Files, QDir::Name))
            paths.append(QDir(folder).filePath(name));
        return paths;
    }

    //! What was put aside, where that is exactly one file; nothing otherwise.
    [[nodiscard]] QByteArray onlyAside() const
    {
        const auto paths = aside();
        return paths.size() == 1 ? readFile(paths.first()) : QByteArray();
    }
};

}  // namespace velquarin::test
