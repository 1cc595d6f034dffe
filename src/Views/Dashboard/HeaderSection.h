// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Style.h"

#include <QWidget>

class QLayout;

namespace velquarin {

class SymbolView;
class Text;

//! A label and its value at the two ends of one line.
class StatRow : public QWidget
{
    Q_OBJECT
public:
    StatRow(const QString &label, const QString &value, const style::Tone &tone, QWidget *parent = nullptr);

    [[nodiscard]] QString value() const;
    void setValue(const QString &value, const style::Tone &tone);

private:
    Text *m_label;
    Text *m_value;
};

//! What the header shows. Units: days, days, commits, repositories.
struct HeaderFigures
{
    qint64 currentStreak = 0;
    qint64 longestStreak = 0;
    qint64 totalCommitsThisWeek = 0;
    qint64 repositories = 0;
    bool hasCommittedToday = false;
    bool areRead = false;  //!< and not what stands there before the first refresh has ended
    friend bool operator==(const HeaderFigures &, const HeaderFigures &) = default;
};

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
    bool m_wereRead = false;
};

}  // namespace velquarin
