// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Attack.h"

#include <QtEndian>

namespace velquarin::test {

namespace {

std::function<void(HostileRepository &)> fifo(const char *name)
{
    return [=](HostileRepository &repository) { repository.makeFifo(QLatin1String(name)); };
}

void nameAFifoAsMailmap(HostileRepository &repository)
{
    repository.makeFifo(QStringLiteral(".git/pipe"));
    repository.configure("[mailmap]\nfile = " + repository.file(QStringLiteral(".git/pipe")).toUtf8());
}

void packWithFifoAsIndex(HostileRepository &repository)
{
    repository.git("repack -adq");
    repository.makeFifo(QStringLiteral(".git/objects/pack/multi-pack-index"));
}

// The place of a chunk in a file that begins with a table of them.
// Source: gitformat-chunk(5)
qsizetype chunk(const QByteArray &file, const char *name, qsizetype tableStart)
{
    const auto entry = file.indexOf(name, tableStart);
    return static_cast<qsizetype>(qFromBigEndian<quint64>(file.constData() + entry + 4));
}

void overwrite(QByteArray &file, qsizetype place, quint32 value)
{
    qToBigEndian(value, file.data() + place);
}

using Damage = void (*)(QByteArray &);

void damage(const QString &path, Damage change)
{
    auto content = readFile(path);
    change(content);
    QFile::remove(path);
    writeFile(path, content);
}

// Source: gitformat-commit-graph(5): the second parent of each commit becomes one beyond the list of edges.
void pointBeyondTheEdges(QByteArray &graph)
{
    for (qsizetype commit = 0; commit < 4; ++commit)
        overwrite(graph, chunk(graph, "CDAT", 8) + 36 * commit + 24, 0xffffffff);
}

void forgetAllParents(QByteArray &graph)
{
    for (qsizetype commit = 0; commit < 4; ++commit)
        overwrite(graph, chunk(graph, "CDAT", 8) + 36 * commit + 20, 0x70000000);
}

// Source: gitformat-pack(5), multi-pack-index files
void nameAPackThatIsNotThere(QByteArray &index)
{
    for (qsizetype object = 0; object < 5; ++object)
        overwrite(index, chunk(index, "OOFF", 12) + 8 * object, 0x7ffffff0);
}

std::function<void(HostileRepository &)> damagedGraph(Damage change)
{
    return [=](HostileRepository &repository) {
        repository.git("commit-graph write --reachable");
        damage(repository.file(QStringLiteral(".git/objects/info/commit-graph")), change);
    };
}

void damagePackIndex(HostileRepository &repository)
{
    repository.git("repack -adq");
    repository.git("multi-pack-index write");
    damage(repository.file(QStringLiteral(".git/objects/pack/multi-pack-index")), nameAPackThatIsNotThere);
}

void nameAFolderLikeTheBranch(HostileRepository &repository)
{
    repository.write(QStringLiteral("main/file"), "text");
}

void nameAFileLikeTheHead(HostileRepository &repository)
{
    repository.git("branch -m trunk");
    repository.write(QStringLiteral("HEAD"), "text");
}

}  // namespace

QList<Attack> fileAttacks()
{
    using enum Harm;
    const char *const ambiguous = "no setting says whether a word is a branch or a file";
    return {
        {"a mailmap that is a fifo", Hangs, nameAFifoAsMailmap},
        {"a mailmap in the work tree that is a fifo", Hangs, fifo(".mailmap")},
        {"a commit graph that is a fifo", Hangs, fifo(".git/objects/info/commit-graph")},
        {"a chain of commit graphs that is a fifo", Hangs, fifo(".git/objects/info/commit-graphs/commit-graph-chain")},
        {"an index of packs that is a fifo", Hangs, packWithFifoAsIndex},
        until({2, 43}, {"a commit graph that points beyond its end", Crashes, damagedGraph(pointBeyondTheEdges)}),
        {"a commit graph that tells a shorter history", OutputChanges, damagedGraph(forgetAllParents)},
        {"an index of packs that names none of them", OutputChanges, damagePackIndex},
        {"a folder named like the branch", OutputChanges, nameAFolderLikeTheBranch, {}, ambiguous},
        {"a file named HEAD", OutputChanges, nameAFileLikeTheHead, {.branch = QStringLiteral("HEAD")}, ambiguous},
    };
}

}  // namespace velquarin::test
