// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/LoginItem.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace velquarin {

//! What an entry is judged by, apart from its own words.
struct AutostartJudge
{
    QStringList currentDesktop;                          //!< the names of the desktop that runs, best first
    QStringList searchPath;                              //!< folders of programs, absolute, best first
    std::function<bool(const QString &path)> isProgram;  //!< whether an absolute path can be executed
};

//! Whether a session starts what the entry @p content describes. What it says is taken as it is: a program of
//! another name counts as well, since people put wrappers there.
//! Source: Desktop Application Autostart Specification; docs/decisions/0009-start-at-login.md
[[nodiscard]] LoginItemStatus autostartStatus(const QByteArray &content, const AutostartJudge &judge);

//! An entry that starts @p program, an absolute path, on every desktop.
[[nodiscard]] QByteArray autostartEntry(const QString &program);

//! The same, switched off: it stands for no entry at all, and hides any other of its name that counts for less. The
//! rest is in it for the desktops' own settings, where it can be switched on again.
[[nodiscard]] QByteArray hiddenAutostartEntry(const QString &program);

}  // namespace velquarin
