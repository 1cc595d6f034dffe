// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/RepositoryState.h"

#include "Services/Git/StateReader.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <string_view>
#include <sys/stat.h>

namespace velquarin {

namespace {

constexpr int deepest = 5;
constexpr std::size_t mostObjectStores = 32;
constexpr std::size_t mostReplacements = 64;
constexpr std::size_t mostBranches = 256;
constexpr std::string_view blanks = " \t\r\n";

// The path that a file of one line holds, unless git and we might read it differently.
std::string onlyPath(const FileContent &pointer, std::string_view keyword)
{
    if (pointer.outcome != FileContent::Outcome::Read || !pointer.bytes.starts_with(keyword))
        throw NotUnderstood();
    auto path = pointer.bytes.substr(keyword.size());
    if (path.ends_with('\n'))
        path.pop_back();
    const bool isPlain = !path.empty() && blanks.find(path.front()) == std::string_view::npos &&
                         blanks.find(path.back()) == std::string_view::npos && path.find('\n') == std::string::npos &&
                         path.find('\0') == std::string::npos;
    if (!isPlain)
        throw NotUnderstood();
    return path;
}

std::optional<std::string> symbolicTarget(const std::string &reference)
{
    constexpr std::string_view keyword = "ref:";
    if (!reference.starts_with(keyword))
        return std::nullopt;
    const auto begin = std::min(reference.find_first_not_of(blanks, keyword.size()), reference.size());
    const auto end = std::max(reference.find_last_not_of(blanks) + 1, begin);
    return reference.substr(begin, end - begin);
}

bool isObjectId(const std::string &reference, const GitConfig &config)
{
    const auto id = reference.substr(0, reference.find('\n'));
    return id.size() == (config.isSha256 ? 64 : 40) && id.find_first_not_of("0123456789abcdef") == std::string::npos;
}

bool startsWithAny(std::string_view text, std::initializer_list<std::string_view> beginnings)
{
    return std::ranges::any_of(beginnings, [&](std::string_view beginning) { return text.starts_with(beginning); });
}

bool isHexadecimal(std::string_view text)
{
    return text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

// Names that git may take for something else than a branch are none.
bool isOrdinaryBranch(const std::string &name)
{
    if (name == "HEAD")
        return true;
    const auto described = name.rfind("-g");
    const bool mayBeObject = (name.size() >= 4 && name.size() <= 64 && isHexadecimal(name)) ||
                             (described != std::string::npos && isHexadecimal(name.substr(described + 2)));
    const bool isAllCapitals = name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_-") == std::string::npos;
    return !name.empty() && name != "@" && !mayBeObject && !isAllCapitals &&
           !startsWithAny(name, {"refs/", "worktree/", "worktrees/", "main-worktree/", "bisect/", "rewritten/", "/"});
}

// No name leads out of the folder of the references.
std::string referencePath(const std::string &common, const std::string &name)
{
    const bool isWithin = startsWithAny(name, {"refs/heads/", "refs/tags/", "refs/remotes/"}) &&
                          name.find("..") == std::string::npos && name.find('\0') == std::string::npos;
    if (!isWithin)
        throw NotUnderstood();
    return common + '/' + name;
}

// The two folders of a repository: the one of the working tree, and the one that linked working trees share.
struct GitFolders
{
    std::string own;
    std::string common;
};

// Neither a folder inside a working tree has them, nor one that is none. Source: gitrepository-layout(5)
GitFolders foldersOf(StateReader &reader, const std::string &folder)
{
    auto own = folder + "/.git";
    const auto entry = reader.status(own);
    if (!entry)
        own = folder;
    else if (!S_ISDIR(entry->mode))
        own = joined(folder, onlyPath(reader.unnoted(own), "gitdir: "));
    const auto &shared = reader.unnoted(own + "/commondir");
    const bool isShared = shared.outcome != FileContent::Outcome::Absent;
    if (!reader.status(own + "/HEAD"))
        throw NotUnderstood();
    return {own, isShared ? joined(own, onlyPath(shared, "")) : own};
}

// The settings that git reads of itself.
void readSettings(StateReader &reader, const GitFolders &git, const ConfigPlaces &places)
{
    if (!places.xdgConfigFolder.starts_with('/'))
        throw NotUnderstood();
    reader.content(git.common + "/config");
    reader.content(git.own + "/config.worktree");
    reader.content(places.home + "/.gitconfig");
    reader.content(places.xdgConfigFolder + "/git/config");
    reader.content("/etc/gitconfig");
}

// Git takes the format of a repository from its own file alone.
void readExtensions(StateReader &reader, const FileTree &files, const GitFolders &git, const GitConfig &config)
{
    const auto own = files.status(git.common + "/config", Links::Follow).value_or(FileStatus());
    for (const auto &origin : config.extensionOrigins) {
        const auto status = files.status(origin, Links::Follow);
        if (!status || status->device != own.device || status->number != own.number)
            throw NotUnderstood();
    }
    for (const auto &path : config.files)
        reader.content(path);
}

// Objects may lie in other repositories, and in others of those.
void readObjects(StateReader &reader, const std::string &objects, std::set<std::string> &seen)
{
    if (!seen.insert(objects).second)
        return;
    if (seen.size() > mostObjectStores)
        throw NotUnderstood();
    reader.folder(objects);
    const std::string &alternates = reader.content(objects + "/info/alternates");
    for (std::size_t begin = 0, end = 0; begin < alternates.size(); begin = end + 1) {
        end = std::min(alternates.find('\n', begin), alternates.size());
        const auto line = alternates.substr(begin, end - begin);
        if (line.starts_with('"'))
            throw NotUnderstood();
        if (!line.empty() && !line.starts_with('#'))
            readObjects(reader, joined(objects, line), seen);
    }
}

// What takes the place of commits, or cuts the history off.
void readDetours(StateReader &reader, const std::string &common, const GitConfig &config)
{
    reader.content(common + "/shallow");
    reader.content(common + "/info/grafts");
    const auto folder = common + "/refs/replace";
    const auto isReplacement = [&](const std::string &name) {
        return isObjectId(reader.reference(joined(folder, name)), config);
    };
    if (!std::ranges::all_of(reader.names(folder, mostReplacements), isReplacement))
        throw NotUnderstood();
}

// Follows a reference to the object that it stands for. False where there is none in a file of its own.
bool follow(StateReader &reader, const std::string &common, const GitConfig &config, const std::string &path,
            int depth = 0)
{
    const auto &reference = reader.reference(path);
    const auto target = symbolicTarget(reference);
    if (!target)
        return isObjectId(reference, config);
    if (depth == deepest)
        throw NotUnderstood();
    return follow(reader, common, config, referencePath(common, *target), depth + 1);
}

// Everything that git tries for a name, in its order. Source: gitrevisions(7)
void readBranch(StateReader &reader, const GitFolders &git, const GitConfig &config, const std::string &branch)
{
    const std::array places{(branch == "HEAD" ? git.own : git.common) + '/' + branch,
                            git.common + "/refs/" + branch,
                            git.common + "/refs/tags/" + branch,
                            git.common + "/refs/heads/" + branch,
                            git.common + "/refs/remotes/" + branch,
                            git.common + "/refs/remotes/" + branch + "/HEAD"};
    for (const auto &place : places) {
        if (follow(reader, git.common, config, place))
            return;
    }
}

// Only whether: each commit changes the rest of it.
bool isSymbolic(StateReader &reader, const std::string &path)
{
    const bool isSymbolic = symbolicTarget(reader.unnoted(path).bytes).has_value();
    reader.note(path, isSymbolic ? "symbolic" : "plain");
    return isSymbolic;
}

// Which branch is the remote's, and how git shortens its name. Nothing where the remote says of none.
std::optional<std::string> readRemoteHead(StateReader &reader, const std::string &common)
{
    const auto target = symbolicTarget(reader.reference(common + "/refs/remotes/origin/HEAD"));
    if (!target)
        return std::nullopt;
    constexpr std::string_view prefix = "refs/remotes/origin/";
    if (!target->starts_with(prefix) || isSymbolic(reader, referencePath(common, *target)))
        throw NotUnderstood();
    const auto branch = target->substr(prefix.size());
    for (const auto *const place : {"/", "/refs/", "/refs/tags/", "/refs/heads/"})
        reader.reference(std::string(common).append(place).append("origin/").append(branch));
    return branch;
}

// A branch that may be chosen. One that stands for another is there or not without a change of its own.
void readCandidate(StateReader &reader, const GitFolders &git, const std::string &name)
{
    if (symbolicTarget(reader.reference(git.common + "/refs/heads/" + name)))
        throw NotUnderstood();
}

// That git would choose this branch now.
void readChoice(StateReader &reader, const GitFolders &git, const std::string &branch)
{
    const auto ofRemote = readRemoteHead(reader, git.common);
    const bool isChoice = ofRemote ? branch == *ofRemote : branch == "main" || branch == "master" || branch == "HEAD";
    if (!isChoice)
        throw NotUnderstood();
    if (ofRemote)
        return;
    if (branch != "main")
        readCandidate(reader, git, "main");
    if (branch == "HEAD")
        readCandidate(reader, git, "master");
}

// A folder whose HEAD is no HEAD is no repository to git, which then looks in the folders above it.
void readHead(StateReader &reader, const GitFolders &git, const GitConfig &config)
{
    const auto &head = reader.unnoted(git.own + "/HEAD").bytes;
    const auto target = symbolicTarget(head);
    if (!target && !isObjectId(head, config))
        throw NotUnderstood();
    if (target && !config.isReftable && isSymbolic(reader, referencePath(git.common, *target)))
        throw NotUnderstood();
}

// The local branches that have a file of their own, and the folders that those are in.
struct BranchFiles
{
    std::set<std::string> folders;
    std::set<std::string> files;
};

// What git passes over it passes over: a lock comes and goes with each commit. Source: git-check-ref-format(1)
void findBranches(StateReader &reader, const std::string &folder, BranchFiles &found)
{
    found.folders.insert(folder);
    for (const auto &name : reader.names(folder, mostBranches)) {
        const auto path = joined(folder, name);
        if (S_ISDIR(reader.status(path).value_or(FileStatus()).mode))
            findBranches(reader, path, found);
        else if (!name.ends_with(".lock"))
            found.files.insert(path);
        if (found.folders.size() + found.files.size() > mostBranches)
            throw NotUnderstood();
    }
}

BranchFiles branchesIn(StateReader &reader, const GitFolders &git)
{
    BranchFiles found;
    findBranches(reader, git.common + "/refs/heads", found);
    return found;
}

void readAllBranches(StateReader &reader, const GitFolders &git, const GitConfig &config)
{
    readBranch(reader, git, config, "HEAD");
    for (const auto &file : branchesIn(reader, git).files)
        follow(reader, git.common, config, file);
}

// Packed ones last, as git reads them: they may be packed in between.
void readReferences(StateReader &reader, const GitFolders &git, const GitConfig &config,
                    const std::optional<std::string> &branch)
{
    if (branch) {
        readChoice(reader, git, *branch);
        readBranch(reader, git, config, *branch);
    } else {
        readAllBranches(reader, git, config);
    }
    reader.file(git.common + "/packed-refs");
}

void readTables(StateReader &reader, const GitFolders &git)
{
    reader.content(git.common + "/reftable/tables.list");
    reader.content(git.own + "/reftable/tables.list");
}

QString decoded(const std::string &path)
{
    return QFile::decodeName(path.c_str());
}

WatchPlace placeOf(const std::string &file, WatchPlace::Sign sign = WatchPlace::Sign::Replaced)
{
    const auto end = file.rfind('/');
    return {decoded(file.substr(0, end)), decoded(file.substr(end + 1)), sign};
}

template <typename Read>
auto understood(const Read &read) -> std::optional<decltype(read())>
{
    try {
        return read();
    } catch (const NotUnderstood &) {
        return std::nullopt;
    }
}

// Where there are more branches than are read, those in no folder of their own.
QList<WatchPlace> placesOfAll(StateReader &reader, const GitFolders &git)
{
    const auto branches = understood([&] { return branchesIn(reader, git); });
    QList<WatchPlace> places;
    for (const auto &folder : branches ? branches->folders : std::set{git.common + "/refs/heads"})
        places << WatchPlace{decoded(folder), {}, WatchPlace::Sign::Any};
    return places;
}

}  // namespace

std::optional<QByteArray> branchSelection(const FileTree &files, const std::string &folder, const ConfigPlaces &places)
{
    return understood([&] {
        StateReader reader(files);
        const auto git = foldersOf(reader, folder);
        readSettings(reader, git, places);
        reader.content(git.own + "/HEAD");
        readTables(reader, git);
        if (!readRemoteHead(reader, git.common)) {
            readCandidate(reader, git, "main");
            readCandidate(reader, git, "master");
        }
        reader.file(git.common + "/packed-refs");
        return reader.digest();
    });
}

std::optional<RepositoryState> repositoryState(const FileTree &files, const std::string &folder,
                                               const std::optional<QString> &branch, const GitConfig &config,
                                               const ConfigPlaces &places)
{
    return understood([&] {
        StateReader reader(files);
        const auto git = foldersOf(reader, folder);
        const auto name = branch ? std::optional(branch->toStdString()) : std::nullopt;
        const auto place = files.realPath(folder);
        if (!place || (name && !isOrdinaryBranch(*name)))
            throw NotUnderstood();
        reader.note(*place, git.own + '\n' + git.common);
        readSettings(reader, git, places);
        readExtensions(reader, files, git, config);
        reader.ownFolder(folder);
        reader.entry(folder + "/.git");
        reader.ownFolder(git.own);
        reader.folder(git.common + "/refs");
        reader.program("/usr/bin/git");
        std::set<std::string> seen;
        readObjects(reader, git.common + "/objects", seen);
        readDetours(reader, git.common, config);
        readHead(reader, git, config);
        if (config.isReftable)
            readTables(reader, git);
        else
            readReferences(reader, git, config, name);
        return RepositoryState{reader.digest(), reader.identity()};
    });
}

QList<WatchPlace> watchPlaces(const FileTree &files, const std::string &folder, const std::optional<QString> &branch)
{
    const auto places = understood([&]() -> QList<WatchPlace> {
        StateReader reader(files);
        const auto git = foldersOf(reader, folder);
        if (files.folderAt(git.common + "/reftable"))
            return {placeOf(git.common + "/reftable/tables.list"), placeOf(git.own + "/reftable/tables.list")};
        const auto detached = placeOf(git.own + "/logs/HEAD", WatchPlace::Sign::Written);
        if (!branch)
            return placesOfAll(reader, git) + QList{detached};
        if (branch != QLatin1String("HEAD"))
            return {placeOf(referencePath(git.common, "refs/heads/" + branch->toStdString()))};
        const auto target = symbolicTarget(reader.unnoted(git.own + "/HEAD").bytes);
        return {target ? placeOf(referencePath(git.common, *target)) : detached};
    });
    return places.value_or(QList<WatchPlace>());
}

}  // namespace velquarin
