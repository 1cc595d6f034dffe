// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>
#include <set>
#include <string>

namespace velquarin {

//! Where git looks for its settings outside of a repository. Source: git-config(1), "FILES"
struct ConfigPlaces
{
    std::string home;             //!< HOME; may be empty
    std::string xdgConfigFolder;  //!< XDG_CONFIG_HOME, else ".config" in home
};

//! What of a repository's configuration decides where else to look.
struct GitConfig
{
    std::set<std::string> files;             //!< those that were read, and those that would be under other conditions
    std::set<std::string> extensionOrigins;  //!< those of them that name extensions of the repository's format
    bool hasIncludes = false;                //!< some of the files are named by others
    bool isReftable = false;                 //!< the references are in tables, and in no files of their own
    bool isSha256 = false;                   //!< objects have names of 64 digits in place of 40
};

//! What git means by @p path where it stands for something in @p folder: both together, unless the path is whole.
[[nodiscard]] std::string joined(const std::string &folder, const std::string &path);

//! Reads what "git config --list -z --show-origin" printed in @p folder.
//! Errors: nothing where it names an extension, or a way to a file, of which we do not know what follows from it, or more
//! files than people have.
//! Source: git-config(1)
[[nodiscard]] std::optional<GitConfig> gitConfigFrom(const QByteArray &list, const std::string &folder,
                                                     const ConfigPlaces &places);

}  // namespace velquarin
