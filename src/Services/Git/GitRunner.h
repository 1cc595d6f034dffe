// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProcessRunner.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace velquarin {

//! Runs git in a folder, in the surroundings that we give it. Blocks; belongs on the git thread.
class GitRunner
{
public:
    //! @p inherited is the program's own environment, from which git's is made.
    GitRunner(ProcessRunner &runner, const QProcessEnvironment &inherited);

    //! What git printed. Output that is no UTF-8 is none, and a failure; but of a list with NULs between ("-z") each entry
    //! is for the caller to judge. Errors: LaunchError where git cannot be started.
    [[nodiscard]] ProcessOutput run(const QStringList &arguments, const QString &path);

private:
    ProcessRunner &m_runner;
    QProcessEnvironment m_confinedEnvironment;
    QProcessEnvironment m_unconfinedEnvironment;
};

}  // namespace velquarin
