// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Attack.h"

namespace velquarin::test {

namespace {

// A second repository beside the first, with a commit of another day.
QString makeDecoy(HostileRepository &repository)
{
    auto path = repository.inRoot("decoy");
    QDir().mkpath(path);
    const RealGit git(path);
    git.run({QStringLiteral("init"), QStringLiteral("--quiet"), QStringLiteral("--initial-branch=main")});
    git.run({QStringLiteral("fast-import"), QStringLiteral("--quiet")},
            "commit refs/heads/main\ncommitter A <a@example.org> 1709546400 +0000\ndata 1\nx\n");
    return path;
}

std::function<void(HostileRepository &)> decoyIn(const char *variable, const char *below)
{
    return [=](HostileRepository &repository) {
        repository.inherit(variable, makeDecoy(repository) + QLatin1String(below));
    };
}

// The objects are those of the repository itself.
void otherReferences(HostileRepository &repository)
{
    repository.git("clone --quiet . ../other");
    repository.git("-C ../other update-ref refs/heads/main main~1");
    repository.inherit("GIT_REFERENCE_BACKEND", QStringLiteral("files://") + repository.inRoot("other/.git"));
}

std::function<void(HostileRepository &)> traceBy(const char *variable)
{
    return [=](HostileRepository &repository) { repository.inherit(variable, repository.victim()); };
}

void inheritParameters(HostileRepository &repository)
{
    repository.addSignedCommit("PGP SIGNATURE");
    repository.inherit("GIT_CONFIG_PARAMETERS",
                       QStringLiteral("'log.showsignature'='true' 'gpg.program'='%1'").arg(repository.program()));
}

void inheritSettings(HostileRepository &repository)
{
    repository.addSignedCommit("PGP SIGNATURE");
    repository.inherit("GIT_CONFIG_COUNT", QStringLiteral("2"));
    repository.inherit("GIT_CONFIG_KEY_0", QStringLiteral("log.showSignature"));
    repository.inherit("GIT_CONFIG_VALUE_0", QStringLiteral("true"));
    repository.inherit("GIT_CONFIG_KEY_1", QStringLiteral("gpg.program"));
    repository.inherit("GIT_CONFIG_VALUE_1", repository.program());
}

void inheritUserSettings(HostileRepository &repository)
{
    repository.addSignedCommit("PGP SIGNATURE");
    writeFile(repository.inRoot("settings"),
              "[log]\nshowSignature = true\n[gpg]\nprogram = " + repository.program().toUtf8() + '\n');
    repository.inherit("GIT_CONFIG_GLOBAL", repository.inRoot("settings"));
}

void inheritOtherCommands(HostileRepository &repository)
{
    repository.promise("main", QStringLiteral("/"));
    repository.makeProgram(repository.inRoot("git"));
    repository.inherit("GIT_EXEC_PATH", repository.root());
}

void inheritPagerInUse(HostileRepository &repository)
{
    repository.inherit("TERM", QStringLiteral("xterm"));
    repository.inherit("GIT_PAGER_IN_USE", QStringLiteral("true"));
}

void inheritGrafts(HostileRepository &repository)
{
    const auto tip = repository.git("rev-parse main");
    writeFile(repository.inRoot("grafts"), tip);
    repository.inherit("GIT_GRAFT_FILE", repository.inRoot("grafts"));
}

}  // namespace

QList<Attack> environmentAttacks()
{
    using enum Harm;
    const Figures withSignedCommit{.week = 4, .twoYears = 5, .last = QStringLiteral("2024-03-07T11:00:00Z")};
    const QList<Attack> likeSettings{
        {"GIT_CONFIG_COUNT with a program", ProgramRuns, inheritSettings, withSignedCommit},
        {"GIT_CONFIG_GLOBAL with a program", ProgramRuns, inheritUserSettings, withSignedCommit},
        {"GIT_PAGER_IN_USE from a pager", OutputChanges, inheritPagerInUse},
    };
    return likeSettings +
           beyondSettings(
               "these variables outweigh settings",
               {
                   {"GIT_DIR from a hook", OutputChanges, decoyIn("GIT_DIR", "/.git")},
                   {"GIT_COMMON_DIR from a hook", OutputChanges, decoyIn("GIT_COMMON_DIR", "/.git")},
                   {"GIT_OBJECT_DIRECTORY from a hook", OutputChanges,
                    decoyIn("GIT_OBJECT_DIRECTORY", "/.git/objects")},
                   since({2, 54}, {"GIT_REFERENCE_BACKEND from a hook", OutputChanges, otherReferences}),
                   {"GIT_TRACE with a file", FileChanges, traceBy("GIT_TRACE")},
                   {"GIT_TRACE_SETUP with a file", FileChanges, traceBy("GIT_TRACE_SETUP")},
                   {"GIT_TRACE2_EVENT with a file", FileChanges, traceBy("GIT_TRACE2_EVENT")},
                   {"GIT_CONFIG_PARAMETERS with a program", ProgramRuns, inheritParameters, withSignedCommit},
                   {"GIT_EXEC_PATH with other commands",
                    ProgramRuns,
                    inheritOtherCommands,
                    {.week = 0, .twoYears = 0, .last = {}}},
                   {"GIT_GRAFT_FILE with a shorter history", OutputChanges, inheritGrafts},
               });
}

}  // namespace velquarin::test
