// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"
#include "Services/Streak/StreakCalculation.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace velquarin {

//! What a refresh finds out.
struct RefreshFigures
{
    Streaks streaks;
    bool hasCommittedToday = false;
    qint64 commitsThisWeek = 0;
    DayCounts year;
    QList<RepositoryStats> repositories;  //!< newest last commit first, those without one last; equals keep their order
    QStringList withoutAddress;           //!< repositories in which git knows no address of the user, by name
    QList<CommitDay> lastSevenDays;       //!< today last; a day that the zone does not have is left out
};

//! What a refresh has read so far, of all repositories together. A repository that fails half-way leaves behind what it had
//! already added: a commit that was seen is a commit that was made.
class MergedHistory
{
public:
    MergedHistory(const Calendar &calendar, Instant today);

    //! Adds one repository's last seven days.
    void addWeek(const DayCounts &week);

    //! Adds one repository's commits, each given by its day. A day counts once for the streak, however many
    //! repositories share it; its commits add up.
    void addCommits(const QList<Instant> &days);

    //! Adds the record of a repository that was read to its end; its counts are those of @p week.
    void addRepository(RepositoryStats stats, const DayCounts &week);

    //! Adds the name of a repository in which git knows no address of the user.
    void addWithoutAddress(const QString &name) { m_withoutAddress << name; }

    //! The week's figures and the streaks come from two separate readings of git, and are not reconciled: near midnight and
    //! across time zones each shows what its own question was answered.
    [[nodiscard]] RefreshFigures figures() const;

    [[nodiscard]] const DayCounts &year() const { return m_year; }

private:
    [[nodiscard]] qint64 todayCount(const DayCounts &history) const;
    [[nodiscard]] QList<CommitDay> lastSevenDays() const;

    DayStarts m_starts;
    Instant m_today;
    DayCounts m_week;
    DayCounts m_year;
    QList<RepositoryStats> m_repositories;
    QStringList m_withoutAddress;
};

}  // namespace velquarin
