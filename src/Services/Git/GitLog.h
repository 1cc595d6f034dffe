// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>

namespace velquarin {

class DayStarts;

//! The days of a log printed with --format=%ad --date=short: one for each line, in the order of the lines.
//! Shape:  lines of a year of four or more digits, "-", two digits, "-", two digits; each day at its start.
//! Errors: none; a line that is anything else, or a day that the calendar does not have, is left out.
//! Source: git-log(1)
[[nodiscard]] QList<Instant> daysFromLog(QByteArrayView log, DayStarts &starts);

//! The moment of a strict ISO 8601 text as %aI prints it, "2024-03-07T21:15:02+01:00"; an offset of nought may be "Z".
//! Errors: nothing where the text is anything else.
//! Source: git-log(1)
[[nodiscard]] std::optional<Instant> instantFromIso(QByteArrayView text);

//! The date at Greenwich, "2024-03-07". Git is asked with Greenwich dates, and answers with the days of the authors.
[[nodiscard]] QString isoDateAtGreenwich(Instant moment);

}  // namespace velquarin
