// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace velquarin {

//! How an answer is written.
enum class AnswerFormat { Text, Json, Waybar, Svg };

//! What the words behind the program's name ask for.
struct Command
{
    enum class Kind { Help, Version, Status, Year, Refresh, Show };
    Kind kind = Kind::Help;
    AnswerFormat format = AnswerFormat::Text;
    bool isFollowed = false;  //!< answered anew whenever the answer changes
    friend bool operator==(const Command &, const Command &) = default;
};

//! The command, or why there is none.
struct CommandLine
{
    std::optional<Command> command;
    QString refusal;  //!< one line without an end, where there is no command
    friend bool operator==(const CommandLine &, const CommandLine &) = default;
};

//! Reads the words of a command line, the program's name first; at least one other.
//! Source: POSIX Utility Conventions; GNU Coding Standards, "Command-Line Interfaces"
[[nodiscard]] CommandLine readCommandLine(const QStringList &arguments);

//! What --help says: lines of at most 79 characters. Needs the application object.
[[nodiscard]] QString helpText();

}  // namespace velquarin
