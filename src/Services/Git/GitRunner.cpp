// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitRunner.h"

#include "Services/Git/GitEnvironment.h"

#include <QUtf8StringView>

namespace velquarin {

namespace {

const QString git = QStringLiteral("/usr/bin/git");

}  // namespace

GitRunner::GitRunner(ProcessRunner &runner, const QProcessEnvironment &inherited)
    : m_runner(runner)
    , m_confinedEnvironment(gitEnvironment(inherited, true))
    , m_unconfinedEnvironment(gitEnvironment(inherited, false))
{
}

ProcessOutput GitRunner::run(const QStringList &arguments, const QString &path)
{
    const auto &environment = m_runner.confine(git) ? m_confinedEnvironment : m_unconfinedEnvironment;
    auto output = m_runner.run({git, arguments, path, environment});
    const bool isList = arguments.contains(QLatin1String("-z"));
    return isList || QUtf8StringView(output.text).isValidUtf8() ? output : ProcessOutput();
}

}  // namespace velquarin
