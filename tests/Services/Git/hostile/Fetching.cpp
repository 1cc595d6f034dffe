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
        repository.promise("main", QString::fromLatin1(url).replace(QLatin1String("PROGRAM"), repository.program()));
        repository.configure(settings);
    };
}

void promiseFurtherDown(HostileRepository &repository)
{
    repository.promise("main~1", QStringLiteral("/"));
    repository.configure("[remote \"origin\"]\nuploadpack = PROGRAM");
}

// Git puts the name behind "git-remote-", so that it becomes a path out of a folder of that name in the work tree.
void promiseByHelperInTheWorkTree(HostileRepository &repository)
{
    repository.promise("main", QStringLiteral("anywhere"));
    repository.configure("[remote \"origin\"]\nvcs = x/../helper");
    QDir().mkpath(repository.file(QStringLiteral("git-remote-x")));
    repository.makeProgram(repository.file(QStringLiteral("helper")));
}

void promiseInAnOldRemotesFile(HostileRepository &repository)
{
    repository.promise("main", {});
    repository.configure("[protocol \"ext\"]\nallow = always");
    repository.write(QStringLiteral(".git/remotes/origin"), "URL: ext::" + repository.program().toUtf8() + " x\n");
}

// The name comes first in the words of the fetch, which then asks "origin".
void promiseByARemoteThatIsAnOption(HostileRepository &repository)
{
    repository.promise("main", QStringLiteral("/"));
    repository.configure("[extensions]\npartialClone = --upload-pack=PROGRAM");
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

// The second repository delivers what is missing, so that everything that git does after a fetch is done, too: with two
// loose objects in the folder that it counts (what they hold puts them there), it tidies up.
void promiseAndDeliver(HostileRepository &repository)
{
    repository.git("read-tree main");
    const auto source = repository.makeSource();
    repository.promise("main", source);
    repository.configure("[gc]\nauto = 1\nautoDetach = false\n[maintenance]\nstrategy = gc");
    for (const char *text : {"263\n", "410\n"})
        repository.git("hash-object -w --stdin", text);
}

void runAHookAfterTheFetch(HostileRepository &repository)
{
    promiseAndDeliver(repository);
    repository.makeProgram(repository.file(QStringLiteral(".git/hooks/pre-auto-gc")));
}

std::function<void(HostileRepository &)> hookAmongTheSettings(const char *event)
{
    return [=](HostileRepository &repository) {
        promiseAndDeliver(repository);
        repository.configure(QByteArray("[hook \"any\"]\ncommand = PROGRAM\nevent = ") + event);
    };
}

// It is asked where packs are made into one, and what is in none of them goes.
void askForRecentObjectsAfterTheFetch(HostileRepository &repository)
{
    promiseAndDeliver(repository);
    for (const char *branch : {"one", "two"})
        repository.git("-c fastimport.unpackLimit=1 fast-import --quiet",
                       QByteArray("commit refs/heads/") + branch +
                           "\ncommitter A <a@example.org> 1709632800 +0000\ndata 1\nx\n");
    repository.configure("[gc]\nautoPackLimit = 1\npruneExpire = now\nrecentObjectsHook = PROGRAM");
}

void askAMonitorAfterTheFetch(HostileRepository &repository)
{
    promiseAndDeliver(repository);
    repository.configure("[core]\nfsmonitor = PROGRAM");
}

void askAlternatesAfterTheFetch(HostileRepository &repository)
{
    promiseAndDeliver(repository);
    for (const char *folder : {"alternate/objects", "alternate/refs"})
        QDir().mkpath(repository.inRoot(folder));
    repository.write(QStringLiteral(".git/objects/info/alternates"),
                     repository.inRoot("alternate/objects").toUtf8() + '\n');
    repository.configure("[core]\nalternateRefsCommand = PROGRAM");
}

// The terminal of whoever runs the tests, and the programs that ask there for passwords, are left alone.
std::function<void(HostileRepository &)> promisedBehindPassword(const char *settings)
{
    return [=](HostileRepository &repository) {
        repository.drop("GIT_ASKPASS");
        repository.inherit("GIT_TERMINAL_PROMPT", QStringLiteral("0"));
        const auto address = repository.listenBehindPassword();
        repository.promise("main", QStringLiteral("http://%1/x").arg(address));
        repository.configure(settings);
    };
}

std::function<void(HostileRepository &)> promisedOverNetwork(const char *scheme)
{
    return [=](HostileRepository &repository) {
        repository.promise("main", QLatin1String(scheme) + repository.listen() + QStringLiteral("/x"));
    };
}

}  // namespace

QList<Attack> fetchAttacks()
{
    using enum Harm;
    const char *const narrower = "the repository's own word on this one protocol outweighs ours on all";
    return {
        {"a missing commit, and a program that would send it", ProgramRuns,
         promised("/", "[remote \"origin\"]\nuploadpack = PROGRAM"), nothingBehindMain},
        until({2, 40}, {"a missing commit further down, and a program that would send it", ProgramRuns,
                        promiseFurtherDown, nothingBehindMain}),
        {"a missing commit, and a remote that is a command", ProgramRuns,
         promised("ext::PROGRAM %S", "[protocol \"ext\"]\nallow = always"), nothingBehindMain, narrower},
        {"a missing commit, and an address that is replaced by a command", ProgramRuns,
         promised("https://example.invalid/x",
                  "[url \"ext::PROGRAM \"]\ninsteadOf = https://example.invalid\n[protocol \"ext\"]\nallow = always"),
         nothingBehindMain, narrower},
        {"a missing commit, and a command that stands for ssh", ProgramRuns,
         promised("ssh://example.invalid/x", "[core]\nsshCommand = PROGRAM"), nothingBehindMain},
        {"a missing commit, and a proxy that is a program", ProgramRuns,
         promised("git://example.invalid/x", "[core]\ngitProxy = PROGRAM"), nothingBehindMain},
        {"a missing commit, and a helper in the work tree", ProgramRuns, promiseByHelperInTheWorkTree,
         nothingBehindMain},
        {"a missing commit, and a remote in a file of the old kind", ProgramRuns, promiseInAnOldRemotesFile,
         nothingBehindMain, narrower},
        {"a missing commit, and a remote whose name is an option", ProgramRuns, promiseByARemoteThatIsAnOption,
         nothingBehindMain},
        {"branches sorted by a missing commit", ProgramRuns, sortBranchesByAMissingCommit, nothingAtAll},
        {"a mailmap that is missing", ProgramRuns, nameAMissingMailmap, {.week = 1, .twoYears = 1}},
        {"a missing commit, and a server that speaks git", NetworkIsReached, promisedOverNetwork("git://"),
         nothingBehindMain},
        {"a missing commit, and a server that speaks http", NetworkIsReached, promisedOverNetwork("http://"),
         nothingBehindMain},
        {"a missing commit that arrives, and a hook", ProgramRuns, runAHookAfterTheFetch, nothingBehindMain},
        since({2, 54}, {"a missing commit that arrives, and a hook among the settings", ProgramRuns,
                        hookAmongTheSettings("pre-auto-gc"), nothingBehindMain}),
        since({2, 54}, {"a missing commit that arrives, and a hook that hears of references", ProgramRuns,
                        hookAmongTheSettings("reference-transaction"), nothingBehindMain}),
        since({2, 42}, {"a missing commit that arrives, and a hook that names recent objects", ProgramRuns,
                        askForRecentObjectsAfterTheFetch, nothingBehindMain}),
        {"a missing commit that arrives, and a file system monitor", ProgramRuns, askAMonitorAfterTheFetch,
         nothingBehindMain},
        {"a missing commit that arrives, and a command that lists the refs of alternates", ProgramRuns,
         askAlternatesAfterTheFetch, nothingBehindMain},
        {"a missing commit, and a program that is asked for a password", ProgramRuns,
         promisedBehindPassword("[core]\naskPass = PROGRAM"), nothingBehindMain},
        {"a missing commit, and a program that keeps passwords", ProgramRuns,
         promisedBehindPassword("[credential]\nhelper = PROGRAM"), nothingBehindMain},
    };
}

}  // namespace velquarin::test
