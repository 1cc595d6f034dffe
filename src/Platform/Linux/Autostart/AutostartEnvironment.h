// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

class QProcessEnvironment;

namespace velquarin {

//! Where a session looks for the programs that it starts at login, and what it goes by. All paths are absolute, each
//! list has the most important first.
struct AutostartEnvironment
{
    QString userFolder;         //!< the user's own; empty where there is no home to have it in
    QStringList systemFolders;  //!< those of everybody, the user's not among them
    QStringList currentDesktop;
    QStringList searchPath;
    QString program;  //!< the one that is to be started
    friend bool operator==(const AutostartEnvironment &, const AutostartEnvironment &) = default;
};

//! What the variables of a process in the session say of it. Empty ones have their default, relative paths do not count.
//! Source: XDG Base Directory Specification; Desktop Entry Specification, "OnlyShowIn"; environ(7)
[[nodiscard]] AutostartEnvironment autostartEnvironment(const QProcessEnvironment &variables, const QString &program);

}  // namespace velquarin
