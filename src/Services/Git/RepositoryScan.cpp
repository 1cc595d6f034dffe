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

// What one reading of a folder tells.
struct FolderContents
{
    bool isRepository = false;
    std::vector<DirectoryEntry> candidates;  // folders that may hold repositories, or links to some
};

class Scan
{
public:
    Scan(const FileTree &files, qint64 maxDepth, const std::atomic<bool> &isCancelled)
        : m_files(files)
        , m_maxDepth(maxDepth)
        , m_isCancelled(isCancelled)
    {
    }

    void scanDirectory(const std::string &path, qint64 currentDepth)
    {
        if (currentDepth >= m_maxDepth || m_isCancelled)
            return;
        const auto contents = read(path);
        if (contents.isRepository) {
            m_found.append(QString::fromStdString(path));
            return;
        }
        m_way.push_back({path, std::nullopt});
        for (const auto &entry : contents.candidates)
            scanEntry(joined(path, entry.name), entry.kind, currentDepth + 1);
        m_way.pop_back();
    }

    [[nodiscard]] QStringList found() const { return m_found; }

private:
    void scanEntry(const std::string &path, EntryKind kind, qint64 depth)
    {
        if (depth >= m_maxDepth)
            return;
        if (kind == EntryKind::Directory && m_linksOnTheWay == 0)
            return scanDirectory(path, depth);
        const auto folder = m_files.folderAt(path);
        if (!folder || isOnTheWay(*folder))
            return;
        const int links = kind == EntryKind::Directory ? 0 : 1;
        m_linksOnTheWay += links;
        scanDirectory(path, depth);
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

    [[nodiscard]] FolderContents read(const std::string &path) const
    {
        FolderContents contents;
        const auto isReadable = m_files.visit(path, [&](const DirectoryEntry &entry) {
            // A dangling link of that name is nothing, and neither is what lies in a folder that may not be entered.
            contents.isRepository = entry.name == marker && m_files.exists(joined(path, marker));
            if (entry.kind != EntryKind::File && !isSkipped(entry.name))
                contents.candidates.push_back(entry);
            return !contents.isRepository && !m_isCancelled;
        });
        // A folder that may be entered but not listed can still be told for a repository.
        if (!isReadable)
            contents.isRepository = m_files.exists(joined(path, marker));
        return contents;
    }

    const FileTree &m_files;
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
    Scan scan(files, maxDepth, isCancelled);
    scan.scanDirectory(folder.toStdString(), 0);
    return scan.found();
}

}  // namespace velquarin
