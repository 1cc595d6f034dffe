// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Services/Streak/HeatmapGrid.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>

#include <optional>

namespace velquarin {

struct StreakReport;

//! The squares of the last 365 days and what stands around them.
struct YearOfSquares
{
    HeatmapGrid grid;
    QList<MonthLabel> months;
    Calendar calendar;
    qint64 commits = 0;     //!< on all of its days
    qint64 activeDays = 0;  //!< those with at least one
};

//! The year that ends with the day of @p now.
[[nodiscard]] YearOfSquares yearOf(const StreakReport &report, const Calendar &calendar, Instant now);

//! What a terminal can show.
struct Terminal
{
    int columns = 80;
    bool hasColors = false;
    bool hasUnicode = false;
};

//! What can be shown where so many columns are, or where nothing is a terminal: that gets no colours.
//! Source: locale(7); term(7), "dumb"; no-color.org
[[nodiscard]] Terminal terminalIn(const QProcessEnvironment &environment, std::optional<int> columns);

//! The year as a calendar of characters, a week a column, in as many of the newest weeks as there is room for. Each of the
//! five bands has a character of its own, so that colours, which are those of the terminal, only help.
//! Shape: lines of at most Terminal::columns characters, 20 or more, each with its end.
//! Source: ECMA-48, "Select Graphic Rendition"
[[nodiscard]] QString yearText(const YearOfSquares &year, const Terminal &terminal);

//! The year as one JSON object in one line: weeks from Sunday to Saturday, oldest first, with null for what does not lie
//! in the 365 days. Source: docs/status-lines.md
[[nodiscard]] QByteArray yearJson(const YearOfSquares &year);

//! The year as a picture to share, with the streak of @p report, which names no repository. It is light or dark as its
//! viewer asks. Source: Scalable Vector Graphics (SVG) 1.1; Media Queries Level 5, "prefers-color-scheme"
[[nodiscard]] QByteArray yearSvg(const YearOfSquares &year, const StreakReport &report);

}  // namespace velquarin
