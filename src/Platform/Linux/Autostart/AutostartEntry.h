// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/LoginItem.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QProcessEnvironment;

namespace velquarin {

//! The keys of the group "Desktop Entry" and their values as they stand in the file, none where that is no UTF-8. Keys
//! are exact: "Name" is not "Name[de]". Of a key that is there twice the last value counts, as it does for GLib.
//! Source: Desktop Entry Specification, "Basic format of the file"
using DesktopEntry = QHash<QByteArray, std::optional<QString>>;

//! Nothing where @p content is damaged: it begins with another group or with none, or a line is neither a comment nor a
//! group nor a key with its value.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(const QByteArray &content);

//! What the value of a key of type string says. Nothing where there is no value, or one with an escape sequence that does
//! not exist. Source: Desktop Entry Specification, "Possible value types"
[[nodiscard]] std::optional<QString> stringIn(const std::optional<QString> &value);

//! The same for a list whose items end with semicolons, the last one's being optional.
[[nodiscard]] std::optional<QStringList> listIn(const std::optional<QString> &value);

//! The program that a command line starts: a path or a name, without quotes. Single quotes and lone backslashes are
//! read as a shell reads them, since desktops do. Nothing where there is none, a quote is not closed, or a field code
//! does not exist: such a line is never run.
//! Source: Desktop Entry Specification, "The Exec key"
[[nodiscard]] std::optional<QString> programOfExec(const QString &command);

//! The value of the key "Exec", as it stands in the file, that starts @p program without arguments.
[[nodiscard]] QByteArray execOfProgram(const QString &program);

//! Whether those who read execOfProgram() agree on what it means. GLib and systemd look for the program before they make
//! one per cent sign of two, and systemd undoes backslashes once more than it should; a control character is
//! nobody's strength.
[[nodiscard]] bool isReadAlikeInExec(const QString &program);

//! Where a session looks for the programs that it starts at login, and what it goes by. All paths are absolute, each
//! list has the most important first.
struct AutostartEnvironment
{
    QString userFolder;         //!< the user's own; empty where there is no home to have it in
    QStringList systemFolders;  //!< those of everybody, the user's not among them
    QStringList currentDesktop;
    QStringList searchPath;
    QString program;  //!< the one that is to be started
};

//! What the variables of a process in the session say of it. Empty ones have their default, relative paths do not count.
//! Source: XDG Base Directory Specification; Desktop Entry Specification, "OnlyShowIn"; environ(7)
[[nodiscard]] AutostartEnvironment autostartEnvironment(const QProcessEnvironment &variables, const QString &program);

//! Whether an absolute path can be executed.
using IsProgram = std::function<bool(const QString &path)>;

//! Whether a session starts what the entry @p content describes. What it says is taken as it is: a program of
//! another name counts as well, since people put wrappers there.
//! Source: Desktop Application Autostart Specification; docs/decisions/0009-start-at-login.md
[[nodiscard]] LoginItemStatus autostartStatus(const QByteArray &content, const AutostartEnvironment &environment,
                                              const IsProgram &isProgram);

//! An entry that starts @p program, an absolute path, on every desktop.
[[nodiscard]] QByteArray autostartEntry(const QString &program);

//! The same, switched off: it stands for no entry at all, and hides any other of its name that counts for less. The
//! rest is in it for the desktops' own settings, where it can be switched on again.
[[nodiscard]] QByteArray hiddenAutostartEntry(const QString &program);

}  // namespace velquarin
