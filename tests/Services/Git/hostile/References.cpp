// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Attack.h"

namespace velquarin::test {

namespace {

QString origin(const QString &name)
{
    return QStringLiteral("refs/remotes/origin/") + name;
}

// Without the commit behind it, some versions of git do not resolve the name.
void makeRemoteBranch(HostileRepository &repository, const QString &name)
{
    repository.write(QStringLiteral(".git/") + origin(name), repository.git("rev-parse main"));
}

void addOutputBranch(HostileRepository &repository)
{
    const auto name = QStringLiteral("--output=") + repository.victim();
    makeRemoteBranch(repository, name);
    repository.nameRemoteHead(origin(name));
}

void addOutputOnceOriginIsGone(HostileRepository &repository)
{
    repository.nameRemoteHead(QStringLiteral("origin/-origin/-output=") + repository.victim());
}

void addOutputOutsideRefs(HostileRepository &repository)
{
    repository.nameRemoteHead(QStringLiteral("--output=") + repository.victim());
}

void addOutputBehindABlank(HostileRepository &repository)
{
    repository.nameRemoteHead(QStringLiteral("\u3000--output=") + repository.victim());
}

void addOutputAsLink(HostileRepository &repository)
{
    QDir().mkpath(repository.file(QStringLiteral(".git/refs/remotes/origin")));
    const auto target = origin(QStringLiteral("--output=") + repository.victim());
    if (!QFile::link(target, repository.file(QStringLiteral(".git/refs/remotes/origin/HEAD"))))
        throw std::runtime_error("cannot make a link");
}

void addOutputBehindAnotherName(HostileRepository &repository)
{
    repository.nameRemoteHead(origin(QStringLiteral("other")));
    repository.write(QStringLiteral(".git/refs/remotes/origin/other"),
                     "ref: refs/remotes/origin/--output=" + repository.victim().toUtf8() + '\n');
}

void addOutputInATable(HostileRepository &repository)
{
    addOutputBranch(repository);
    repository.moveReferencesToTables();
}

void addReflogQuestion(HostileRepository &repository)
{
    repository.git("commit --quiet --allow-empty --message=x --date=2024-03-01T00:00:00Z");
    repository.git("reset --quiet --hard main~1");
    repository.nameRemoteHead(origin(QStringLiteral("@origin/{1}")));
}

std::function<void(HostileRepository &)> option(const QString &text)
{
    return [text](HostileRepository &repository) { repository.nameRemoteHead(origin(text)); };
}

void addAllBranches(HostileRepository &repository)
{
    repository.git("branch other main");
    repository.git("fast-import --quiet", "commit refs/heads/other\ncommitter A <a@example.org> 1709809200 +0000\n"
                                          "data 1\nx\nfrom refs/heads/other^0\n");
    repository.nameRemoteHead(origin(QStringLiteral("--all")));
}

void addPatchWithTextConversion(HostileRepository &repository)
{
    repository.write(QStringLiteral(".gitattributes"), "* diff=evil\n");
    repository.write(QStringLiteral("file"), "text\n");
    repository.git("fast-import --quiet", "commit refs/heads/main\ncommitter A <a@example.org> 1709805600 +0000\n"
                                          "data 1\nx\nfrom refs/heads/main^0\nM 644 inline file\ndata 5\ntext\n");
    repository.configure("[diff \"evil\"]\ntextconv = PROGRAM");
    repository.nameRemoteHead(origin(QStringLiteral("-p")));
}

}  // namespace

QList<Attack> referenceAttacks()
{
    using enum Harm;
    return beyondSettings("what is in the command line outweighs settings",
                          {
                              {"a remote whose branch is an option that writes", FileChanges, addOutputBranch},
                              {"a dash that appears once \"origin/\" is gone", FileChanges, addOutputOnceOriginIsGone},
                              {"a remote's head that names nothing below refs/", FileChanges, addOutputOutsideRefs},
                              {"a dash that appears once blanks are gone", FileChanges, addOutputBehindABlank},
                              {"a symbolic link in place of the remote's head", FileChanges, addOutputAsLink},
                              {"an option behind a second name", FileChanges, addOutputBehindAnotherName},
                              since({2, 46}, {"an option in a table of references", FileChanges, addOutputInATable}),
                              {"an option that reads standard input", Hangs, option(QStringLiteral("--stdin"))},
                              {"an option that shows patches, and a text conversion",
                               ProgramRuns,
                               addPatchWithTextConversion,
                               {.week = 4, .twoYears = 5}},
                              {"an option that adds all branches", OutputChanges, addAllBranches},
                              {"an option that cuts the history short", OutputChanges, option(QStringLiteral("-1"))},
                              {"an option that ends the options", OutputChanges, option(QStringLiteral("--"))},
                              {"a question to the reflog", OutputChanges, addReflogQuestion},
                          });
}

}  // namespace velquarin::test
