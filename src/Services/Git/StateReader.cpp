// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/StateReader.h"

#include <QCryptographicHash>

#include <sys/stat.h>
#include <unistd.h>

namespace velquarin {

namespace {

constexpr std::int64_t largestFile = 1 << 20;
constexpr std::int64_t largestReference = 4096;
constexpr std::int64_t mostBytes = 4 * largestFile;

// Numbers as the machine has them: they never leave this process.
template <typename... Numbers>
std::string bytesOf(Numbers... numbers)
{
    std::string bytes;
    (bytes.append(reinterpret_cast<const char *>(&numbers), sizeof(numbers)), ...);
    return bytes;
}

void addTo(std::string &noted, const std::string &text)
{
    noted += bytesOf(text.size());
    noted += text;
}

std::string identityIn(const FileStatus &status)
{
    return bytesOf(status.device, status.number, status.size, status.modifiedAt, status.changedAt);
}

std::string rightsIn(const FileStatus &status)
{
    return bytesOf(status.mode, status.owner, status.group);
}

}  // namespace

StateReader::StateReader(const FileTree &files)
    : m_files(files)
    , m_room(mostBytes)
{
}

const FileContent &StateReader::look(const std::string &path, Links links, std::int64_t limit)
{
    const auto [known, isNew] = m_known.try_emplace({path, links});
    auto &found = known->second;
    if (isNew) {
        found = m_files.read(path, links, limit);
        m_room -= std::int64_t(found.bytes.size());
    }
    if (found.outcome == FileContent::Outcome::Refused || std::int64_t(found.bytes.size()) > limit || m_room < 0)
        throw NotUnderstood();
    return found;
}

const std::string &StateReader::noted(const std::string &path, const FileContent &found)
{
    note(path, bytesOf(found.outcome) + found.bytes);
    addTo(m_identity, identityIn(found.status));
    return found.bytes;
}

const std::string &StateReader::content(const std::string &path)
{
    return noted(path, look(path, Links::Follow, largestFile));
}

const std::string &StateReader::reference(const std::string &path)
{
    return noted(path, look(path, Links::Stay, largestReference));
}

const FileContent &StateReader::unnoted(const std::string &path)
{
    return look(path, Links::Stay, largestReference);
}

const std::optional<FileStatus> &StateReader::status(const std::string &path)
{
    const auto [known, isNew] = m_entries.try_emplace(path);
    if (isNew)
        known->second = m_files.status(path, Links::Stay);
    return known->second;
}

void StateReader::entry(const std::string &path)
{
    const auto &found = status(path);
    note(path, found ? rightsIn(*found) : std::string());
    if (found && found->owner != geteuid())
        throw NotUnderstood();
}

FileStatus StateReader::notedFolder(const std::string &path)
{
    const auto status = m_files.status(path, Links::Follow);
    if (!status || !S_ISDIR(status->mode))
        throw NotUnderstood();
    note(path, bytesOf(status->device, status->number) + rightsIn(*status));
    return *status;
}

void StateReader::folder(const std::string &path)
{
    notedFolder(path);
}

void StateReader::ownFolder(const std::string &path)
{
    if (notedFolder(path).owner != geteuid())
        throw NotUnderstood();
}

std::optional<FileStatus> StateReader::notedFile(const std::string &path)
{
    const auto status = m_files.status(path, Links::Follow);
    note(path, status ? identityIn(*status) : std::string());
    return status;
}

void StateReader::program(const std::string &path)
{
    notedFile(path);
}

void StateReader::file(const std::string &path)
{
    const auto status = notedFile(path);
    if (status && !tellsOfChanges(*status))
        content(path);
}

// What came into it and went meanwhile changed its times.
std::set<std::string> StateReader::names(const std::string &folder, std::size_t most)
{
    std::set<std::string> names;
    const auto status = m_files.status(folder, Links::Follow);
    addTo(m_identity, status ? identityIn(*status) : std::string());
    m_files.visit(folder, [&](const DirectoryEntry &entry) {
        names.insert(entry.name);
        return names.size() <= most;
    });
    if (names.size() > most)
        throw NotUnderstood();
    return names;
}

void StateReader::note(const std::string &name, const std::string &value)
{
    addTo(m_content, name);
    addTo(m_content, value);
}

QByteArray StateReader::digestOf(const std::string &noted)
{
    return QCryptographicHash::hash(QByteArray::fromRawData(noted.data(), qsizetype(noted.size())),
                                    QCryptographicHash::Blake2b_256);
}

}  // namespace velquarin
