// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/StateReader.h"

#include <chrono>
#include <sys/stat.h>
#include <unistd.h>

namespace velquarin {

namespace {

constexpr std::int64_t largestFile = 1 << 20;
constexpr std::int64_t largestReference = 4096;
constexpr std::int64_t mostBytes = 4 * largestFile;

// File systems count time in steps, of two seconds at most: what was written so recently may be written again under the
// same time.
constexpr std::int64_t coarsestTime = 2'000'000'000;

void addTo(QCryptographicHash &digest, const std::string &text)
{
    const auto whole = std::to_string(text.size()) + ':' + text;
    digest.addData(QByteArray(whole.data(), qsizetype(whole.size())));
}

std::string identityIn(const FileStatus &status)
{
    return std::to_string(status.device) + ' ' + std::to_string(status.number) + ' ' + std::to_string(status.size) +
           ' ' + std::to_string(status.modifiedAt) + ' ' + std::to_string(status.changedAt);
}

std::string rightsIn(const FileStatus &status)
{
    return std::to_string(status.mode) + ' ' + std::to_string(status.owner) + ' ' + std::to_string(status.group);
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
    note(path, std::to_string(int(found.outcome)) + found.bytes);
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

const std::string &StateReader::unnotedReference(const std::string &path)
{
    return look(path, Links::Stay, largestReference).bytes;
}

void StateReader::entry(const std::string &path)
{
    const auto status = m_files.status(path, Links::Stay);
    note(path, status ? rightsIn(*status) : std::string());
    if (status && status->owner != geteuid())
        throw NotUnderstood();
}

FileStatus StateReader::notedFolder(const std::string &path)
{
    const auto status = m_files.status(path, Links::Follow);
    if (!status || !S_ISDIR(status->mode))
        throw NotUnderstood();
    note(path, std::to_string(status->device) + ' ' + std::to_string(status->number) + ' ' + rightsIn(*status));
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
    const auto now = std::chrono::nanoseconds(std::chrono::system_clock::now().time_since_epoch()).count();
    if (status && std::max(status->modifiedAt, status->changedAt) > now - coarsestTime)
        content(path);
}

std::set<std::string> StateReader::names(const std::string &folder, std::size_t most) const
{
    std::set<std::string> names;
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

}  // namespace velquarin
