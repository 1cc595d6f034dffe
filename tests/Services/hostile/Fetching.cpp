// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Attack.h"

namespace velquarin::test {

namespace {

// A history that cannot be walked has no figures; git itself says so, and asks nobody.
const Figures nothingBehindMain{QStringLiteral("main"), 0, 0, {}};
const Figures nothingAtAll{QStringLiteral("HEAD"), 0, 0, {}};

std::function<void(HostileRepository &)> promised(const char *url, const char *settings)
{
    return [=](HostileRepository &repository) {
        repository.promise("main~1", QString::fromLatin1(url).replace(QLatin1String("PROGRAM"), repository.program()));
        repository.configure(settings);
    };
}

// Git puts the name behind "git-remote-", so that it becomes a path out of a folder of that name in the work tree.
void promiseByHelperInTheWorkTree(HostileRepository &repository)
{
    repository.promise("main~1", QStringLiteral("anywhere"));
    repository.configure("[remote \"origin\"]\nvcs = x/../helper");
    QDir().mkpath(repository.file(QStringLiteral("git-remote-x")));
    repository.makeProgram(repository.file(QStringLiteral("helper")));
}

void promiseInAnOldRemotesFile(HostileRepository &repository)
{
    repository.promise("main~1", {});
    repository.configure("[protocol \"ext\"]\nallow = always");
    repository.write(QStringLiteral(".git/remotes/origin"), "URL: ext::" + repository.program().toUtf8() + " x\n");
}

void sortBranchesByAMissingCommit(HostileRepository &repository)
{
    repository.promise("main", repository.path());
    repository.configure("[remote \"origin\"]\nuploadpack = PROGRAM\n[branch]\nsort = -committerdate");
}

void nameAMissingMailmap(HostileRepository &repository)
{
    repository.promise("main", repository.path());
    repository.git("update-ref -d refs/heads/main");
    repository.git("fast-import --quiet", "commit refs/heads/main\ncommitter A <a@example.org> 1709805600 +0000\n"
                                          "data 1\nx\n");
    repository.configure("[remote \"origin\"]\nuploadpack = PROGRAM\n"
                         "[mailmap]\nblob = 1111111111111111111111111111111111111111");
}

std::function<void(HostileRepository &)> promisedOverNetwork(const char *scheme)
{
    return [=](HostileRepository &repository) {
        repository.promise("main~1", QLatin1String(scheme) + repository.listen() + QStringLiteral("/x"));
    };
}

}  // namespace

QList<Attack> fetchAttacks()
{
    using enum Harm;
    return {
        {"a missing commit, and a program that would send it", ProgramRuns,
         promised("/", "[remote \"origin\"]\nuploadpack = PROGRAM"), nothingBehindMain},
        {"a missing commit, and a remote that is a command", ProgramRuns,
         promised("ext::PROGRAM %S", "[protocol \"ext\"]\nallow = always"), nothingBehindMain},
        {"a missing commit, and an address that is replaced by a command", ProgramRuns,
         promised("https://example.invalid/x",
                  "[url \"ext::PROGRAM \"]\ninsteadOf = https://example.invalid\n[protocol \"ext\"]\nallow = always"),
         nothingBehindMain},
        {"a missing commit, and a command that stands for ssh", ProgramRuns,
         promised("ssh://example.invalid/x", "[core]\nsshCommand = PROGRAM"), nothingBehindMain},
        {"a missing commit, and a proxy that is a program", ProgramRuns,
         promised("git://example.invalid/x", "[core]\ngitProxy = PROGRAM"), nothingBehindMain},
        {"a missing commit, and a helper in the work tree", ProgramRuns, promiseByHelperInTheWorkTree,
         nothingBehindMain},
        {"a missing commit, and a remote in a file of the old kind", ProgramRuns, promiseInAnOldRemotesFile,
         nothingBehindMain},
        {"branches sorted by a missing commit", ProgramRuns, sortBranchesByAMissingCommit, nothingAtAll},
        {"a mailmap that is missing", ProgramRuns, nameAMissingMailmap, {.week = 1, .twoYears = 1}},
        {"a missing commit, and a server that speaks git", NetworkIsReached, promisedOverNetwork("git://"),
         nothingBehindMain},
        {"a missing commit, and a server that speaks http", NetworkIsReached, promisedOverNetwork("http://"),
         nothingBehindMain},
    };
}

}  // namespace velquarin::test
