// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileTree.h"

#include <QByteArray>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace velquarin {

//! Thrown where something is there of which we do not know what git makes of it.
class NotUnderstood
{
};

//! Looks at one file of a repository after another, and digests what they say. A stranger made them: only regular files are
//! read, none for longer than its limit, all together no more than 4 MiB.
//! Errors: each function throws NotUnderstood where git would read something that this would not.
class StateReader
{
public:
    explicit StateReader(const FileTree &files);

    //! The content of a file of settings; empty where there is none.
    const std::string &content(const std::string &path);

    //! The content of a reference, which is no link; empty where there is none.
    const std::string &reference(const std::string &path);

    //! A small file that is no link, of which only the caller knows what counts.
    const FileContent &unnoted(const std::string &path);

    //! What there is, not followed where it is a link.
    const std::optional<FileStatus> &status(const std::string &path);

    //! What there is: whose it is, and what may be done with it. Not followed where it is a link.
    void entry(const std::string &path);

    //! A folder: which one it is, whose, and who may search it.
    void folder(const std::string &path);

    //! A folder that git trusts, because it is the user's own.
    void ownFolder(const std::string &path);

    //! A program: when it was installed. Nobody writes into one.
    void program(const std::string &path);

    //! A file that may be large: when it was written, and what is in it only while that says too little.
    void file(const std::string &path);

    //! What a folder holds, which is no more than @p most entries; their names are not noted, but the folder's times are.
    [[nodiscard]] std::set<std::string> names(const std::string &folder, std::size_t most);

    //! Whatever else decides.
    void note(const std::string &name, const std::string &value);

    //! Of all that was noted.
    [[nodiscard]] QByteArray digest() const { return digestOf(m_content); }

    //! Of which files were read and folders listed, and when they had been written.
    [[nodiscard]] QByteArray identity() const { return digestOf(m_identity); }

private:
    const FileContent &look(const std::string &path, Links links, std::int64_t limit);
    const std::string &noted(const std::string &path, const FileContent &found);
    FileStatus notedFolder(const std::string &path);
    std::optional<FileStatus> notedFile(const std::string &path);
    [[nodiscard]] static QByteArray digestOf(const std::string &noted);

    const FileTree &m_files;
    std::map<std::pair<std::string, Links>, FileContent> m_known;  // many are looked at from several sides
    std::map<std::string, std::optional<FileStatus>> m_entries;
    std::int64_t m_room;  // bytes that may still be read
    std::string m_content;
    std::string m_identity;
};

}  // namespace velquarin
