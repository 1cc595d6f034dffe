// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Dashboard/DashboardFigures.h"

#include <QWidget>

class QLayout;

namespace velquarin {

class StatRow;
class SymbolView;
class Text;

//! The streak under its flame, and four figures beside it.
class HeaderSection : public QWidget
{
    Q_OBJECT
public:
    explicit HeaderSection(QWidget *parent = nullptr);

    void setFigures(const HeaderFigures &figures);

    //! The streak and whether today has a commit, in one sentence.
    [[nodiscard]] QString summary() const;

private:
    QLayout *makeStreakColumn();
    QLayout *makeStatistics();

    SymbolView *m_flame;
    Text *m_streak;
    Text *m_caption;
    StatRow *m_longest;
    StatRow *m_thisWeek;
    StatRow *m_repositories;
    StatRow *m_today;
};

}  // namespace velquarin
