// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"

#include <QDate>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

namespace velquarin {

class StreakManager;

//! The figures of one repository, for others than the program's own windows.
struct RepositoryReport
{
    QString name;
    QString path;
    qint64 commitsToday = 0;
    qint64 commitsThisWeek = 0;  //!< in the seven days that end today
    QString lastCommit;          //!< a moment in UTC, "2026-11-22T17:03:00Z", or nothing
    friend bool operator==(const RepositoryReport &, const RepositoryReport &) = default;
};

//! All figures of a refresh, for others than the program's own windows: days are dates, so that they mean the same to
//! whoever reads them in another zone. Shape: a value.
struct StreakReport
{
    qint64 currentStreak = 0;
    qint64 longestStreak = 0;
    bool hasCommittedToday = false;
    qint64 commitsThisWeek = 0;
    QMap<QDate, qint64> lastSevenDays;  //!< days without a commit included; empty while nothing is tracked
    QMap<QDate, qint64> days;           //!< of the last two years, those with a commit
    QList<RepositoryReport> repositories;
    QStringList withoutAddress;  //!< repositories in which everyone's commits count for want of an address, by name
    friend bool operator==(const StreakReport &, const StreakReport &) = default;
};

//! A number with what it counts, in English: "1 day", "12 days".
[[nodiscard]] QString counted(qint64 number, const char *what);

//! What @p manager has published, with the days of @p calendar.
[[nodiscard]] StreakReport reportOf(const StreakManager &manager, const Calendar &calendar);

//! A moment as the report writes it: in UTC, without fractions of a second.
[[nodiscard]] QString isoMoment(Instant moment);

//! The report as properties on the bus, by the names of io.velquarin.Velquarin1: texts, numbers, QStringList,
//! QMap<QString, qint64> with dates for keys, and QList<QVariantMap>.
[[nodiscard]] QVariantMap propertiesOf(const StreakReport &report);

//! The report in such properties; nothing where they are those of a program that has none yet. Whatever else is missing
//! or of another type is empty, and a key that is no date is left out.
[[nodiscard]] std::optional<StreakReport> reportIn(const QVariantMap &properties);

//! The days with a commit as the squares of the year take them. A date that @p calendar does not have is left out.
[[nodiscard]] DayCounts dayCounts(const StreakReport &report, const Calendar &calendar);

}  // namespace velquarin
