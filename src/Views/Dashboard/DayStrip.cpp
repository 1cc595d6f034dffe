// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/DayStrip.h"

#include "Views/Dashboard/DayColumn.h"

#include <algorithm>
#include <cmath>

namespace velquarin {

namespace {

constexpr qsizetype daysOfAWeek = 7;

}  // namespace

DayStrip::DayStrip(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("days"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    hide();
}

int DayStrip::overhang()
{
    return style::points(3);
}

void DayStrip::setDays(const QList<CommitDay> &days, const DateTexts &texts, const Calendar &calendar, Instant now)
{
    adjustColumns(days.size());
    for (qsizetype index = 0; index < days.size(); ++index)
        m_columns.at(index)->setDay(days.at(index), texts, calendar, now);
    setVisible(!days.isEmpty());
}

QSize DayStrip::sizeHint() const
{
    const auto height = m_columns.isEmpty() ? 0 : m_columns.constFirst()->sizeHint().height();
    return {int(daysOfAWeek) * DayColumn::squareSize() + 2 * overhang(), height};
}

void DayStrip::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeColumns();
}

void DayStrip::adjustColumns(qsizetype wanted)
{
    if (m_columns.size() == wanted)
        return;
    while (m_columns.size() > wanted)
        delete m_columns.takeLast();
    while (m_columns.size() < wanted) {
        m_columns.append(new DayColumn(this));
        m_columns.constLast()->show();
    }
    updateGeometry();
    placeColumns();
}

void DayStrip::placeColumns()
{
    const auto square = DayColumn::squareSize();
    const double room = width() - 2 * overhang() - square;
    const auto steps = double(std::max(m_columns.size(), daysOfAWeek) - 1);
    for (qsizetype index = 0; index < m_columns.size(); ++index) {
        const auto fromStart = room * double(index) / steps;
        const auto left = layoutDirection() == Qt::LeftToRight ? fromStart : room - fromStart;
        auto *const column = m_columns.at(index);
        column->setGeometry(int(left), 0, square + 2 * overhang(), column->sizeHint().height());
        column->setOffset(left - std::floor(left));
    }
}

}  // namespace velquarin
