// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"

#include <QList>
#include <QWidget>

namespace velquarin {

class DateTexts;
class DayStrip;
class SectionButton;

//! The last seven days, and the way to the year. The focus that it is given goes to the button that leaves it.
class WeekSection : public QWidget
{
    Q_OBJECT
public:
    explicit WeekSection(QWidget *parent = nullptr);

    void setDays(const QList<CommitDay> &days, const DateTexts &texts, const Calendar &calendar, Instant now);

Q_SIGNALS:
    void yearRequested();

private:
    SectionButton *m_showYear;
    DayStrip *m_strip;
};

}  // namespace velquarin
