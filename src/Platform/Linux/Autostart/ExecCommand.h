// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace velquarin {

//! The program that a command line starts: a path or a name, without quotes. Single quotes and lone backslashes are
//! read as a shell reads them, since desktops do. Nothing where there is none, a quote is not closed, or a field code
//! does not exist: such a line is never run.
//! Source: Desktop Entry Specification, "The Exec key"
[[nodiscard]] std::optional<QString> programOfExec(const QString &command);

//! The command line that starts @p program without arguments, quoted where it has to be.
//! Source: Desktop Entry Specification, "The Exec key"
[[nodiscard]] QString execOfProgram(const QString &program);

//! Whether those who read execOfProgram() agree on what it means. GLib and systemd look for the program before they make
//! one per cent sign of two, and systemd undoes backslashes once more than it should; a control character is
//! nobody's strength.
[[nodiscard]] bool isReadAlikeInExec(const QString &program);

}  // namespace velquarin
