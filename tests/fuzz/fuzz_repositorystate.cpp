// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/FileTree.h"
#include "Services/Git/RepositoryState.h"
#include "Target.h"

#include <QList>

#include <sys/stat.h>
#include <unistd.h>

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

// A disk on which every path is a folder of the user's, and a file that says one of the lines of the input.
class Disk : public FileTree
{
public:
    explicit Disk(const QByteArray &input)
        : m_contents(input.split('\xff'))
    {
    }

    [[nodiscard]] bool exists(const std::string & /*path*/) const override { return true; }
    [[nodiscard]] std::optional<FolderIdentity> folderAt(const std::string &path) const override
    {
        return path.ends_with("reftable") ? std::nullopt : std::optional(FolderIdentity());
    }
    [[nodiscard]] std::optional<FileStatus> status(const std::string & /*path*/, Links /*links*/) const override
    {
        FileStatus status;
        status.mode = S_IFDIR;
        status.owner = geteuid();
        return status;
    }
    [[nodiscard]] FileContent read(const std::string &path, Links /*links*/, std::int64_t limit) const override
    {
        require(++m_reads < 10'000, "no repository has us read without end");
        const auto bytes = m_contents.at(qsizetype(std::hash<std::string>()(path) % std::size_t(m_contents.size())));
        const bool isRefused = bytes.size() > limit;
        return {isRefused ? FileContent::Outcome::Refused : FileContent::Outcome::Read, bytes.toStdString(), {}};
    }
    [[nodiscard]] std::optional<std::string> realPath(const std::string &folder) const override { return folder; }
    bool visit(const std::string & /*path*/, const Visitor &visitor) const override
    {
        return visitor({m_contents.constFirst().toStdString(), EntryKind::File});
    }

private:
    QList<QByteArray> m_contents;
    mutable int m_reads = 0;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto input = bytes(data, size);
    const ConfigPlaces places{"/home", "/home/.config"};
    for (const auto *const branch : {"main", "HEAD"}) {
        const auto once = repositoryState(Disk(input), "/folder", QString::fromLatin1(branch), {}, places);
        require(once == repositoryState(Disk(input), "/folder", QString::fromLatin1(branch), {}, places),
                "the same files are the same state");
        for (const auto &place : watchPlaces(Disk(input), "/folder", QString::fromLatin1(branch)))
            require(
                !place.folder.mid(place.folder.lastIndexOf(QStringLiteral("/refs/"))).contains(QStringLiteral("..")),
                "no place of a reference leads out");
    }
    return 0;
}
