// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace velquarin {

//! One local git working tree whose commits count towards the streak.
struct TrackedRepository
{
    QUuid id;                       //!< which record this is, whatever else changes about it
    QString path;                   //!< absolute, exactly as it was given: no normalisation, no links resolved
    QString name;                   //!< what people see
    bool isEnabled = true;          //!< whether refreshes read it
    bool isAutoDiscovered = false;  //!< found under a watched folder; only such records are ever pruned
    friend bool operator==(const TrackedRepository &, const TrackedRepository &) = default;
};

//! One folder under which repositories are found automatically.
struct WatchedFolder
{
    QUuid id;               //!< which record this is, whatever else changes about it
    QString path;           //!< absolute, exactly as it was given
    QString name;           //!< what people see
    bool isEnabled = true;  //!< whether it is scanned
    qint64 maxDepth = 0;    //!< how many levels below the folder a scan goes down
    friend bool operator==(const WatchedFolder &, const WatchedFolder &) = default;
};

//! Whose commits count.
enum class CountedAuthors {
    Everyone,
    Me,  //!< the user, by the addresses that git knows for the repository
};

//! On which branches they count.
enum class CountedBranches {
    Default,  //!< the one default branch
    All,      //!< all local branches, and HEAD where it is on none
};

//! Which commits count.
struct CountedCommits
{
    CountedAuthors authors = CountedAuthors::Everyone;
    CountedBranches branches = CountedBranches::Default;
    friend bool operator==(const CountedCommits &, const CountedCommits &) = default;
};

//! The lists of records as they are stored: a JSON array with an object a record, in the order of the list,
//! whose members are named like the fields. Ids are upper-case text of 36 characters.
//!
//! Encoding. Errors: nothing where a text is no valid Unicode, which no JSON text can hold.
template <typename Record>
[[nodiscard]] std::optional<QByteArray> encodeRecords(const QList<Record> &records);

//! Decoding takes a list as a whole or not at all. Members may come in any order, unknown ones do not count,
//! ids are read in either case. Errors: nothing where the text is no such array, or where any record lacks a
//! member or has one of the wrong type.
template <typename Record>
[[nodiscard]] std::optional<QList<Record>> decodeRecords(const QByteArray &json);

}  // namespace velquarin
