// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"

#include <QWidget>

class QLayout;
class QScrollArea;

namespace velquarin {

class DateTexts;
class SectionButton;
class Text;
class YearHeatmapView;

//! The sums below the heat map.
struct YearTotals
{
    qint64 commits = 0;     //!< of all days
    qint64 activeDays = 0;  //!< days with at least one commit
    friend bool operator==(const YearTotals &, const YearTotals &) = default;
};

//! The totals of all of @p yearHistory, which holds two years: more than the heat map above them shows.
[[nodiscard]] YearTotals yearTotals(const DayCounts &yearHistory);

//! The heat map of a year, its totals, and the way back to the week. The focus that it is given goes to the button that
//! leaves it.
class YearSection : public QWidget
{
    Q_OBJECT
public:
    explicit YearSection(QWidget *parent = nullptr);

    void setHistory(const DayCounts &yearHistory, const DateTexts &texts, const Calendar &calendar, Instant now);

    //! Scrolls so that today can be seen, as soon as the section is on screen.
    void bringTodayIntoSight();

Q_SIGNALS:
    void weekRequested();

protected:
    void showEvent(QShowEvent *event) override;

private:
    QLayout *makeSummary();
    void scrollSoon();
    void scrollToToday();

    SectionButton *m_back;
    YearHeatmapView *m_heatmap;
    QScrollArea *m_scrollArea;
    Text *m_commits;
    Text *m_bullet;
    Text *m_activeDays;
    bool m_isTodayWanted = false;
};

}  // namespace velquarin
