// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitEnvironment.h"

#include <array>
#include <span>

namespace velquarin {

namespace {

struct Setting
{
    const char *name;
    const char *value;
};

constexpr std::array surroundings{
    // Both keep a lazy fetch away; older versions know only the second.
    Setting{"GIT_NO_LAZY_FETCH", "1"},
    Setting{"GIT_ALLOW_PROTOCOL", "none"},
    Setting{"GIT_TERMINAL_PROMPT", "0"},
    Setting{"GIT_OPTIONAL_LOCKS", "0"},
    Setting{"GIT_ASKPASS", "/bin/false"},
    Setting{"SSH_ASKPASS", "/bin/false"},
    Setting{"GIT_SSH_COMMAND", "/bin/false"},
    Setting{"GIT_PAGER", "cat"},
    // No translated texts to load, and no flush after every line: a fifth faster over long histories.
    Setting{"LC_ALL", "C"},
    Setting{"GIT_FLUSH", "0"},
    // Without a work tree a folder named like the branch is no longer an ambiguous argument. Git insists on an existing
    // parent, so the path has only one component.
    Setting{"GIT_WORK_TREE", "/no-work-tree"},
};

// What nothing else covers: how the output looks, and files that make git hang or crash.
constexpr std::array alwaysSet{
    Setting{"log.showSignature", "false"},      Setting{"log.mailmap", "false"},
    Setting{"core.commitGraph", "false"},       Setting{"core.multiPackIndex", "false"},
    Setting{"i18n.logOutputEncoding", "UTF-8"}, Setting{"color.ui", "false"},
    Setting{"color.branch", "false"},
};

// What confinement makes needless: each of these can start a program or talk to somebody. Two stop nothing in the
// commands and the git of today (column.ui; core.gitProxy, of which the first counts), and are for those that may differ.
constexpr std::array setWhenUnconfined{
    Setting{"mailmap.file", ""},
    Setting{"mailmap.blob", ""},
    Setting{"column.ui", "never"},
    Setting{"gpg.program", "/bin/false"},
    Setting{"gpg.openpgp.program", "/bin/false"},
    Setting{"gpg.ssh.program", "/bin/false"},
    Setting{"gpg.x509.program", "/bin/false"},
    Setting{"core.fsmonitor", "false"},
    Setting{"core.hooksPath", "/dev/null"},
    Setting{"core.alternateRefsCommand", "/bin/false"},
    Setting{"core.sshCommand", "/bin/false"},
    Setting{"core.gitProxy", "/bin/false"},
    Setting{"core.askPass", "/bin/false"},
    Setting{"credential.helper", ""},
    Setting{"protocol.allow", "never"},
    // Git asks for no protocol here.
    Setting{"fetch.bundleURI", ""},
};

void removeGitVariables(QProcessEnvironment &environment)
{
    const auto names = environment.keys();
    for (const auto &name : names) {
        if (name.startsWith(QLatin1String("GIT_")))
            environment.remove(name);
    }
}

// Settings given this way override every configuration file, those of the repository included.
void appendSettings(QProcessEnvironment &environment, int &count, std::span<const Setting> settings)
{
    for (const auto &setting : settings) {
        const auto number = QString::number(count++);
        environment.insert(QStringLiteral("GIT_CONFIG_KEY_") + number, QLatin1String(setting.name));
        environment.insert(QStringLiteral("GIT_CONFIG_VALUE_") + number, QLatin1String(setting.value));
    }
    environment.insert(QStringLiteral("GIT_CONFIG_COUNT"), QString::number(count));
}

}  // namespace

QProcessEnvironment gitEnvironment(const QProcessEnvironment &inherited, bool isConfined)
{
    auto environment = inherited;
    removeGitVariables(environment);
    for (const auto &variable : surroundings)
        environment.insert(QLatin1String(variable.name), QLatin1String(variable.value));
    int count = 0;
    appendSettings(environment, count, alwaysSet);
    if (!isConfined) {
        appendSettings(environment, count, setWhenUnconfined);
        // Git writes a signature to a file before it has it checked.
        environment.insert(QStringLiteral("TMPDIR"), QStringLiteral("/no-temporary-folder"));
    }
    return environment;
}

}  // namespace velquarin
