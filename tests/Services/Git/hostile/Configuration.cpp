// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Attack.h"

namespace velquarin::test {

namespace {

const Figures withSignedCommit{QStringLiteral("main"), 4, 5, QStringLiteral("2024-03-07T11:00:00Z")};
const QByteArray showSignatures = "[log]\nshowSignature = true\n[gpg]\nprogram = PROGRAM";

std::function<void(HostileRepository &)> signature(const char *kind, const char *settings)
{
    return [=](HostileRepository &repository) {
        repository.addSignedCommit(kind);
        repository.configure(QByteArray("[log]\nshowSignature = true\n") + settings);
    };
}

void hideInInclude(HostileRepository &repository)
{
    repository.addSignedCommit("PGP SIGNATURE");
    repository.configure("[include]\npath = extra");
    repository.configure(showSignatures, QStringLiteral(".git/extra"));
}

void hideInConditionalInclude(HostileRepository &repository)
{
    repository.addSignedCommit("PGP SIGNATURE");
    repository.configure("[includeIf \"onbranch:main\"]\npath = extra");
    repository.configure(showSignatures, QStringLiteral(".git/extra"));
}

void hideInWorktreeConfiguration(HostileRepository &repository)
{
    repository.addSignedCommit("PGP SIGNATURE");
    repository.configure("[core]\nrepositoryFormatVersion = 1\n[extensions]\nworktreeConfig = true");
    repository.configure(showSignatures, QStringLiteral(".git/config.worktree"));
}

void moveRepository(HostileRepository &repository)
{
    repository.addSignedCommit("PGP SIGNATURE");
    repository.configure(showSignatures);
    if (!QDir(repository.path()).rename(QStringLiteral(".git"), QStringLiteral("elsewhere")))
        throw std::runtime_error("cannot move the repository");
}

void hideInCommonFolder(HostileRepository &repository)
{
    moveRepository(repository);
    repository.write(QStringLiteral(".git/HEAD"), "ref: refs/heads/main\n");
    repository.write(QStringLiteral(".git/commondir"), "../elsewhere\n");
}

void hideBehindGitFile(HostileRepository &repository)
{
    moveRepository(repository);
    repository.write(QStringLiteral(".git"), "gitdir: elsewhere\n");
}

// The files of a repository among those of a plain folder, as a clone can deliver them.
void beABareRepository(HostileRepository &repository)
{
    moveRepository(repository);
    const QDir from(repository.file(QStringLiteral("elsewhere")));
    const auto names = from.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const auto &name : names) {
        if (!QFile::rename(from.filePath(name), repository.file(name)))
            throw std::runtime_error("cannot move a file");
    }
}

// To sort them git asks that program of each.
void sortBranchesBySignature(HostileRepository &repository)
{
    repository.addSignedCommit("PGP SIGNATURE");
    repository.git("branch other main~1");
    repository.configure("[branch]\nsort = signature:grade\n[gpg]\nprogram = PROGRAM");
}

// They are fetched before what is missing, whatever protocols are allowed.
void promiseWithBundles(HostileRepository &repository)
{
    repository.promise("main", QStringLiteral("/"));
    repository.configure("[fetch]\nbundleURI = http://" + repository.listen().toUtf8() + "/x");
}

std::function<void(HostileRepository &)> setting(const char *text)
{
    return [=](HostileRepository &repository) { repository.configure(text); };
}

// Each more than an address.
void nameOddAddresses(HostileRepository &repository)
{
    const auto victim = repository.victim().toUtf8();
    for (const auto &address : {"--output=" + victim, "x> --output=" + victim, QByteArray(R"(\\(a*\\)*b)"),
                                QByteArray(R"(a\\E(a*)*)"), "a\\n--output=" + victim, QByteArray(5000, 'a')})
        repository.configure("[user]\nemail = \"" + address + '"');
}

void nameManyAddresses(HostileRepository &repository)
{
    QByteArray settings = "[velquarin]\n";
    for (int number = 0; number < 100'000; ++number)
        settings += "email = " + QByteArray(20, 'a') + QByteArray::number(number) + '\n';
    repository.configure(settings);
}

void nameBranchesLikeOptions(HostileRepository &repository)
{
    const auto tip = repository.git("rev-parse main");
    for (const auto &name : {QStringLiteral("--output=") + repository.victim(), QStringLiteral("--all"),
                             QStringLiteral("-1"), QStringLiteral("--author=nobody"), QStringLiteral("HEAD")})
        repository.write(QStringLiteral(".git/refs/heads/") + name, tip);
}

}  // namespace

QList<Attack> configurationAttacks()
{
    using enum Harm;
    return {
        {"a program that checks signatures", ProgramRuns, signature("PGP SIGNATURE", "[gpg]\nprogram = PROGRAM"),
         withSignedCommit},
        {"a program that checks signatures of OpenPGP", ProgramRuns,
         signature("PGP SIGNATURE", "[gpg \"openpgp\"]\nprogram = PROGRAM"), withSignedCommit},
        {"a program that checks signatures of X.509", ProgramRuns,
         signature("SIGNED MESSAGE", "[gpg \"x509\"]\nprogram = PROGRAM"), withSignedCommit},
        {"a program that checks signatures of SSH", ProgramRuns,
         signature("SSH SIGNATURE", "[gpg \"ssh\"]\nprogram = PROGRAM\nallowedSignersFile = PROGRAM"),
         withSignedCommit},
        {"a program named in an included file", ProgramRuns, hideInInclude, withSignedCommit},
        {"a program named in a file included for one branch", ProgramRuns, hideInConditionalInclude, withSignedCommit},
        {"a program named in the work tree's own configuration", ProgramRuns, hideInWorktreeConfiguration,
         withSignedCommit},
        {"a program named in a common folder elsewhere", ProgramRuns, hideInCommonFolder, withSignedCommit},
        {"a program named behind a .git file", ProgramRuns, hideBehindGitFile, withSignedCommit},
        {"a program named in a bare repository", ProgramRuns, beABareRepository, withSignedCommit},
        since({2, 42}, {"branches sorted by their signatures", ProgramRuns, sortBranchesBySignature, withSignedCommit}),
        since({2, 40}, {"a missing commit, and bundles at an address",
                        NetworkIsReached,
                        promiseWithBundles,
                        {.week = 0, .twoYears = 0, .last = {}}}),
        {"output in UTF-16", OutputChanges, setting("[i18n]\nlogOutputEncoding = UTF-16")},
        {"colours everywhere", OutputChanges, setting("[color]\nui = always")},
        {"colours in the list of branches", OutputChanges, setting("[color]\nbranch = always")},
    };
}

QList<Attack> idleThreats()
{
    using enum Harm;
    return {
        {"aliases named like the commands", ProgramRuns,
         setting("[alias]\nlog = !PROGRAM\nbranch = !PROGRAM\nsymbolic-ref = !PROGRAM\nrev-parse = !PROGRAM")},
        {"aliases of the new kind", ProgramRuns,
         setting("[alias \"log\"]\ncommand = !PROGRAM\n[alias \"branch\"]\ncommand = !PROGRAM")},
        {"pagers", ProgramRuns, setting("[core]\npager = PROGRAM\n[pager]\nlog = PROGRAM\nbranch = PROGRAM")},
        {"hooks", ProgramRuns,
         [](HostileRepository &repository) {
             for (const char *name : {"reference-transaction", "post-index-change", "post-checkout", "pre-auto-gc"})
                 repository.makeProgram(repository.file(QStringLiteral(".git/hooks/") + QLatin1String(name)));
         }},
        {"hooks among the settings", ProgramRuns,
         setting("[hook \"any\"]\ncommand = PROGRAM\nevent = reference-transaction\nevent = post-index-change\n"
                 "event = post-checkout\nevent = pre-auto-gc")},
        {"files beside locks", FileChanges, setting("[core]\nlockfilePid = true")},
        {"attributes from a missing tree", ProgramRuns,
         setting("[attr]\ntree = 1111111111111111111111111111111111111111")},
        {"a file system monitor", ProgramRuns, setting("[core]\nfsmonitor = PROGRAM")},
        {"a command that lists the refs of alternates", ProgramRuns, setting("[core]\nalternateRefsCommand = PROGRAM")},
        {"an external diff and an editor", ProgramRuns,
         setting("[diff]\nexternal = PROGRAM\n[core]\neditor = PROGRAM")},
        {"a format and a style of dates", OutputChanges, setting("[format]\npretty = %H\n[log]\ndate = relative")},
        {"decorations and notes", OutputChanges,
         setting("[log]\ndecorate = full\n[notes]\ndisplayRef = refs/heads/main")},
        {"addresses that are options, patterns and quotations", FileChanges, nameOddAddresses},
        {"a hundred thousand addresses", Hangs, nameManyAddresses},
        {"branches named like options", FileChanges, nameBranchesLikeOptions},
    };
}

}  // namespace velquarin::test
