// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"

#include <QMap>
#include <QString>
#include <QUuid>

#include <optional>

namespace velquarin {

class DateTexts;

//! Commits a day. Shape: keyed by the start of the day, ascending; days without a commit are absent. Copies share.
using DayCounts = QMap<Instant, qint64>;

//! One day of the seven-day strip.
struct CommitDay
{
    QUuid id = QUuid::createUuid();  //!< fresh for every record: a later refresh never makes an equal one
    Instant date;                    //!< the start of the day
    qint64 commitCount = 0;          //!< of all enabled repositories together
    friend bool operator==(const CommitDay &, const CommitDay &) = default;
};

//! The figures of one tracked repository.
struct RepositoryStats
{
    QUuid id = QUuid::createUuid();
    QString path;  //!< of its working directory
    QString name;  //!< may be empty
    qint64 todayCommits = 0;
    qint64 weekCommits = 0;                 //!< in the seven days that end today
    std::optional<Instant> lastCommitDate;  //!< of the newest commit on the default branch

    //! The name, or the last component of the path where there is none.
    [[nodiscard]] QString displayName() const;

    //! How long ago the last commit was, in the user's words ("2 hr. ago"), or "No commits".
    [[nodiscard]] QString lastCommitRelative(const DateTexts &texts, Instant now) const;
};

}  // namespace velquarin
