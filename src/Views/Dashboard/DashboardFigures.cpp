// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/DashboardFigures.h"

#include <algorithm>

namespace velquarin {

YearTotals yearTotals(const DayCounts &yearHistory)
{
    YearTotals totals;
    for (const auto count : yearHistory) {
        totals.commits += count;
        totals.activeDays += count >= 1 ? 1 : 0;
    }
    return totals;
}

qsizetype repositoriesLeftOut(qsizetype repositories)
{
    return std::max(repositories - longestRepositoryList, qsizetype(0));
}

}  // namespace velquarin
