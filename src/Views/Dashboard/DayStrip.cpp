// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/DayStrip.h"

#include "Platform/DateTexts.h"
#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Style.h"
#include "Views/Dashboard/DayColor.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velquarin {

namespace {

QFont smallFont(QFont::Weight weight = QFont::Normal)
{
    return style::font(style::TypeStyle::Caption2, weight);
}

int gap()
{
    return style::points(4);
}

constexpr qsizetype daysOfAWeek = 7;

}  // namespace

DayColumn::DayColumn(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void DayColumn::setDay(const CommitDay &day, const DateTexts &texts, const Calendar &calendar, Instant now)
{
    const auto weekday = texts.weekday(day.date);
    const bool isToday = calendar.isSameDay(day.date, now);
    if (weekday == m_weekday && day.commitCount == m_count && isToday == m_isToday)
        return;
    m_weekday = weekday;
    m_count = day.commitCount;
    m_isToday = isToday;
    setAccessibleName(QStringLiteral("%1, %2").arg(m_weekday, QString::number(m_count)));
    update();
}

void DayColumn::setOffset(double offset)
{
    if (qFuzzyCompare(1 + offset, 1 + m_offset))
        return;
    m_offset = offset;
    update();
}

int DayColumn::squareSize()
{
    return style::points(32);
}

int DayColumn::shownHeight()
{
    return QFontMetrics(smallFont()).height() + gap() + squareSize() + gap() + style::points(4);
}

QSize DayColumn::sizeHint() const
{
    return {squareSize(), shownHeight()};
}

void DayColumn::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(style::onWholePixels(painter, {m_offset, 0, 1, 1}).left(), 0);
    paintWeekday(painter);
    paintSquare(painter);
    if (m_count >= 1)
        paintCount(painter);
    if (m_isToday)
        paintDot(painter);
}

QRect DayColumn::weekdayRect() const
{
    return {0, 0, width(), QFontMetrics(smallFont()).height()};
}

QRect DayColumn::squareRect(int width)
{
    return {(width - squareSize()) / 2, QFontMetrics(smallFont()).height() + gap(), squareSize(), squareSize()};
}

QRect DayColumn::dotRect() const
{
    const auto size = style::points(4);
    return {(width() - size) / 2, squareRect().bottom() + 1 + gap(), size, size};
}

void DayColumn::paintWeekday(QPainter &painter) const
{
    painter.setFont(smallFont());
    painter.setPen(style::ink(palette(), style::Ink::Secondary));
    painter.setLayoutDirection(style::readingDirection(m_weekday));
    const auto shown = painter.fontMetrics().elidedText(m_weekday, Qt::ElideRight, width());
    painter.drawText(weekdayRect(), Qt::AlignCenter, shown);
}

void DayColumn::paintSquare(QPainter &painter) const
{
    const auto color = colorForCount(m_count).in(palette());
    style::paintBlock(painter, style::onWholePixels(painter, squareRect()), style::points(4), color, palette());
}

void DayColumn::paintCount(QPainter &painter) const
{
    auto font = smallFont(QFont::DemiBold);
    const auto text = QString::number(m_count);
    const auto room = squareSize() - style::points(5);
    while (QFontMetrics(font).horizontalAdvance(text) > room && font.pixelSize() > 1)
        font.setPixelSize(font.pixelSize() - 1);
    painter.setFont(font);
    painter.setPen(figureColor(m_count, palette()));
    painter.drawText(squareRect(), Qt::AlignCenter, text);
}

void DayColumn::paintDot(QPainter &painter) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(style::accentOn(style::ground(palette()), palette(), style::Accent::Blue));
    painter.drawEllipse(style::onWholePixels(painter, dotRect()));
}

DayStrip::DayStrip(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("days"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
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
}

QSize DayStrip::sizeHint() const
{
    return {int(daysOfAWeek) * DayColumn::squareSize() + 2 * overhang(), DayColumn::shownHeight()};
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
    placeColumns();
    update();
}

double DayStrip::leftOf(qsizetype index, qsizetype columns) const
{
    const double room = width() - 2 * overhang() - DayColumn::squareSize();
    const auto fromStart = room * double(index) / double(std::max(columns, daysOfAWeek) - 1);
    return layoutDirection() == Qt::LeftToRight ? fromStart : room - fromStart;
}

// Nothing jumps when the first data come.
void DayStrip::paintEvent(QPaintEvent * /*event*/)
{
    if (!m_columns.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    auto color = style::accent(palette(), style::Accent::Grey);
    color.setAlphaF(0.12F);
    painter.setBrush(color);
    const QRectF square = DayColumn::squareRect(DayColumn::squareSize() + 2 * overhang());
    for (qsizetype index = 0; index < daysOfAWeek; ++index)
        painter.drawRoundedRect(style::onWholePixels(painter, square.translated(leftOf(index, daysOfAWeek), 0)),
                                style::points(4), style::points(4));
}

void DayStrip::placeColumns()
{
    const auto square = DayColumn::squareSize();
    for (qsizetype index = 0; index < m_columns.size(); ++index) {
        const auto left = leftOf(index, m_columns.size());
        auto *const column = m_columns.at(index);
        column->setGeometry(int(left), 0, square + 2 * overhang(), column->sizeHint().height());
        column->setOffset(left - std::floor(left));
    }
}

}  // namespace velquarin
