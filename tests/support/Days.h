// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"

#include <QString>

#include <set>
#include <stdexcept>

namespace velquarin::test {

//! Days as a picture: "xxx.x" ends on @p last, an x is a day with a commit and a dot one without.
inline std::set<Instant> days(const char *picture, QDate last, const Calendar &calendar)
{
    const QLatin1String text(picture);
    std::set<Instant> marked;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (text.at(index) == QLatin1Char('.'))
            continue;
        const auto day = calendar.startOf(last.addDays(index + 1 - text.size()));
        if (!day)
            throw std::invalid_argument("the picture marks a day that the zone does not have");
        marked.insert(*day);
    }
    return marked;
}

}  // namespace velquarin::test
