// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/RepositoryScan.h"

#include <QUtf8StringView>

#include <algorithm>
#include <array>
#include <string_view>

namespace velquarin {

namespace {

constexpr std::string_view marker = ".git";

// Large trees that tools generate; repositories in them are copies that nobody works in.
constexpr std::array<std::string_view, 5> skippedNames{"node_modules", ".git", "Pods", "build", "DerivedData"};

bool isHidden(std::string_view name)
{
    return name.starts_with('.');
}

bool isSkipped(std::string_view name)
{
    return isHidden(name) || std::ranges::find(skippedNames, name) != skippedNames.end() ||
           !QUtf8StringView(name.data(), qsizetype(name.size())).isValidUtf8();
}

std::string joined(const std::string &folder, std::string_view name)
{
    return folder + (folder.ends_with('/') ? "" : "/") + std::string(name);
}

// A folder on the way from the start, which is one too, to what is looked at.
struct Step
{
    std::string path;
    std::optional<FolderIdentity> folder;  // once somebody has asked
};

// Whether a folder holds an entry that makes it a repository. What a dangling link leads to may come at any time, without
// a change of the folder.
enum class Marker { None, Dangling, Valid };

class Scan
{
public:
    Scan(const FileTree &files, qint64 maxDepth, const std::atomic<bool> &isCancelled, bool remembers)
        : m_files(files)
        , m_remembers(remembers)
        , m_maxDepth(maxDepth)
        , m_isCancelled(isCancelled)
    {
    }

    void scanDirectory(const std::string &path, KnownFolder &known, qint64 currentDepth)
    {
        if (currentDepth >= m_maxDepth || m_isCancelled)
            return;
        if (bringUpToDate(known, path) == Marker::Valid) {
            m_found.append(QString::fromStdString(path));
            return;
        }
        m_way.push_back({path, std::nullopt});
        for (auto &folder : known.inside)
            scanEntry(joined(path, folder.entry.name), folder, currentDepth + 1);
        m_way.pop_back();
    }

    [[nodiscard]] QStringList found() const { return m_found; }

private:
    void scanEntry(const std::string &path, KnownFolder &known, qint64 depth)
    {
        if (depth >= m_maxDepth)
            return;
        const auto kind = known.entry.kind;
        if (kind == EntryKind::Directory && m_linksOnTheWay == 0)
            return scanDirectory(path, known, depth);
        const auto folder = m_files.folderAt(path);
        if (!folder || isOnTheWay(*folder))
            return;
        const int links = kind == EntryKind::Directory ? 0 : 1;
        m_linksOnTheWay += links;
        scanDirectory(path, known, depth);
        m_linksOnTheWay -= links;
    }

    // Only links lead back, so without one nobody asks.
    bool isOnTheWay(FolderIdentity folder)
    {
        return std::ranges::any_of(m_way, [&](Step &step) {
            if (!step.folder)
                step.folder = m_files.folderAt(step.path);
            return step.folder == folder;
        });
    }

    // Another folder may come into its place while it is read: one that is mounted when somebody looks into it.
    [[nodiscard]] Marker bringUpToDate(KnownFolder &known, const std::string &path) const
    {
        const auto stamp = stampOf(path);
        if (stamp && stamp == known.stamp)
            return Marker::None;
        known.stamp.reset();
        known.inside.clear();
        const auto found = read(path, known);
        if (found == Marker::None && !m_isCancelled && stamp == stampOf(path))
            known.stamp = stamp;
        if (found == Marker::Valid)
            known.inside.clear();
        known.inside.shrink_to_fit();
        return found;
    }

    // Nothing for one that is so new that it may change under the same times, and where there are no times.
    [[nodiscard]] std::optional<KnownFolder::Stamp> stampOf(const std::string &path) const
    {
        const auto status = m_remembers ? m_files.status(path, Links::Follow) : std::nullopt;
        if (!status || !tellsOfChanges(*status) || status->modifiedAt <= 0)
            return std::nullopt;
        return KnownFolder::Stamp{{status->device, status->number}, status->modifiedAt, status->changedAt};
    }

    [[nodiscard]] Marker read(const std::string &path, KnownFolder &known) const
    {
        auto found = Marker::None;
        const auto isReadable = m_files.visit(path, [&](const DirectoryEntry &entry) {
            if (entry.name == marker)
                found = markerIn(path);
            if (entry.kind != EntryKind::File && !isSkipped(entry.name))
                known.inside.push_back({entry, std::nullopt, {}});
            return found != Marker::Valid && !m_isCancelled;
        });
        // A folder that may be entered but not listed can still be told for a repository.
        return isReadable ? found : markerIn(path);
    }

    // A dangling link of that name is nothing, and neither is what lies in a folder that may not be entered.
    [[nodiscard]] Marker markerIn(const std::string &path) const
    {
        return m_files.exists(joined(path, marker)) ? Marker::Valid : Marker::Dangling;
    }

    const FileTree &m_files;
    bool m_remembers;  // what it finds, for the next one
    qint64 m_maxDepth;
    const std::atomic<bool> &m_isCancelled;
    std::vector<Step> m_way;
    int m_linksOnTheWay = 0;
    QStringList m_found;
};

}  // namespace

QStringList scanForRepositories(const FileTree &files, const QString &folder, qint64 maxDepth,
                                const std::atomic<bool> &isCancelled)
{
    KnownFolder nothing;
    Scan scan(files, maxDepth, isCancelled, false);
    scan.scanDirectory(folder.toStdString(), nothing, 0);
    return scan.found();
}

QStringList scanForRepositories(const FileTree &files, const QString &folder, qint64 maxDepth,
                                const std::atomic<bool> &isCancelled, KnownFolder &known)
{
    Scan scan(files, maxDepth, isCancelled, true);
    scan.scanDirectory(folder.toStdString(), known, 0);
    return scan.found();
}

}  // namespace velquarin
