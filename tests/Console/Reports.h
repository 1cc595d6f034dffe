// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Console/StreakReport.h"

namespace velquarin::test {

inline QDate date(const char *text)
{
    return QDate::fromString(QLatin1String(text), Qt::ISODate);
}

//! A report with something in each of its members.
inline StreakReport fullReport()
{
    StreakReport report;
    report.currentStreak = 12;
    report.longestStreak = 30;
    report.hasCommittedToday = true;
    report.commitsThisWeek = 14;
    report.lastSevenDays = {{date("2026-11-19"), 0}, {date("2026-11-20"), 3}};
    report.days = {{date("2025-01-31"), 1}, {date("2026-11-20"), 3}};
    report.repositories = {{QStringLiteral("garden"), QStringLiteral("/home/dev/gärten/\"garden\""), 3, 14,
                            QStringLiteral("2026-11-20T11:02:03Z")},
                           {QStringLiteral("empty"), QStringLiteral("/home/dev/empty"), 0, 0, {}}};
    report.withoutAddress = {QStringLiteral("empty")};
    return report;
}

}  // namespace velquarin::test
