// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/HeaderSection.h"

#include "Views/Controls/Decorations.h"
#include "Views/Controls/PlainButton.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <utility>

namespace velquarin {

using style::Accent;
using style::Ink;
using style::points;

namespace {

constexpr double flameSize = 32;
constexpr double roomForBeat = 2;
constexpr TextLook streakLook{28, QFont::Bold, Ink::Primary};

// Room for three figures, so that a growing streak does not push the rest aside.
int streakColumnWidth()
{
    return QFontMetrics(style::systemFont(streakLook.size, streakLook.weight)).horizontalAdvance(QStringLiteral("000"));
}

}  // namespace

StatRow::StatRow(const QString &label, const QString &value, const style::Tone &tone, QWidget *parent)
    : QWidget(parent)
    , m_label(makeText(textLook(style::TypeStyle::Caption, style::Ink::Secondary), label, this))
    , m_value(makeText(textLook(style::TypeStyle::Caption, tone, QFont::Medium), value, this))
{
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(style::points(style::defaultSpacing));
    row->addWidget(m_label);
    row->addStretch();
    row->addWidget(m_value);
}

QString StatRow::value() const
{
    return m_value->text();
}

void StatRow::setValue(const QString &value, const style::Tone &tone)
{
    m_value->setText(value);
    m_value->setTone(tone);
}

HeaderSection::HeaderSection(QWidget *parent)
    : QWidget(parent)
    , m_flame(new SymbolView(QStringLiteral("flame"), flameSize, Ink::Secondary, this))
    , m_streak(new Text(streakLook, this))
    , m_caption(makeText(textLook(style::TypeStyle::Caption, Ink::Secondary), tr("day streak"), this))
    , m_longest(new StatRow(tr("Longest"), {}, Ink::Primary, this))
    , m_thisWeek(new StatRow(tr("This week"), {}, Ink::Primary, this))
    , m_repositories(new StatRow(tr("Repos"), {}, Ink::Primary, this))
    , m_today(new StatRow(tr("Today"), {}, Ink::Primary, this))
{
    setObjectName(QStringLiteral("header"));
    auto *const line = new Divider(Qt::Vertical, this);
    line->setFixedHeight(points(60));

    auto *const row = new QHBoxLayout(this);
    const auto padding = points(style::defaultPadding);
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(points(16));
    row->addLayout(makeStreakColumn());
    row->addWidget(line, 0, Qt::AlignVCenter);
    row->addLayout(makeStatistics());
    setFigures({});
}

QLayout *HeaderSection::makeStreakColumn()
{
    m_flame->setObjectName(QStringLiteral("flame"));
    const auto room = points(roomForBeat);
    m_flame->setContentsMargins(room, room, room, room);
    m_streak->setObjectName(QStringLiteral("currentStreak"));
    m_streak->setMinimumWidth(streakColumnWidth());
    m_streak->setAlignment(Qt::AlignHCenter);
    m_streak->setLine(closeLineOf(streakLook));
    auto *const column = new QVBoxLayout;
    column->setSpacing(points(4));
    column->addStretch();
    column->addItem(new OutsetItem(m_flame, points(roomForBeat)));
    column->addWidget(m_streak, 0, Qt::AlignHCenter);
    column->addWidget(m_caption, 0, Qt::AlignHCenter);
    column->addStretch();
    return column;
}

QLayout *HeaderSection::makeStatistics()
{
    auto *const column = new QVBoxLayout;
    column->setSpacing(points(8));
    column->addStretch();
    for (auto *const row : {m_longest, m_thisWeek, m_repositories, m_today})
        column->addWidget(row);
    column->addStretch();
    return column;
}

void HeaderSection::setFigures(const HeaderFigures &figures)
{
    m_streak->setText(QString::number(figures.currentStreak));
    m_longest->setValue(tr("%1 days").arg(figures.longestStreak), Ink::Primary);
    m_thisWeek->setValue(tr("%1 commits").arg(figures.totalCommitsThisWeek), Ink::Primary);
    m_repositories->setValue(tr("%1 tracked").arg(figures.repositories), Ink::Primary);
    const bool wereRead = std::exchange(m_wereRead, figures.areRead);
    if (figures.hasCommittedToday) {
        if (wereRead && m_flame->name() != QStringLiteral("flame.fill"))
            m_flame->beat();
        m_flame->setName(QStringLiteral("flame.fill"));
        m_flame->setFill(Accent::Orange);
        m_today->setValue(tr("Committed!"), Accent::Green);
    } else {
        m_flame->setName(QStringLiteral("flame"));
        m_flame->setTone(Ink::Secondary);
        m_today->setValue(tr("No commits yet"), Accent::Orange);
    }
}

QString HeaderSection::summary() const
{
    //: What a screen reader says when the dashboard opens: "12 day streak, Committed!"
    return tr("%1 %2, %3").arg(m_streak->text(), m_caption->text(), m_today->value());
}

}  // namespace velquarin
