// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/YearHeatmapView.h"

#include "Platform/DateTexts.h"
#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Style.h"
#include "Views/Dashboard/DayColor.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <cmath>
#include <utility>

namespace velquarin {

namespace {

constexpr double labelSize = 8;
constexpr int daysOfWeek = 7;

QStringList toolTips(const HeatmapGrid &grid, const DateTexts &texts)
{
    QStringList all;
    all.reserve(cellCount(grid));
    for (const auto &week : grid) {
        for (const auto &cell : week)
            all.append(toolTipOf(cell, texts));
    }
    return all;
}

// From now on the painter counts whole device pixels, although the widget may begin between two of them.
void countDevicePixels(QPainter &painter)
{
    const auto origin = painter.deviceTransform().map(QPointF());
    const auto ratio = painter.device()->devicePixelRatioF();
    painter.translate((QPointF(std::round(origin.x()), std::round(origin.y())) - origin) / ratio);
    painter.scale(1 / ratio, 1 / ratio);
}

std::optional<int> cellOn(Instant date, const HeatmapGrid &grid)
{
    for (int index = 0; index < cellCount(grid); ++index) {
        if (const auto &cell = cellAt(grid, index); cell.isInRange && cell.date == date)
            return index;
    }
    return std::nullopt;
}

}  // namespace

YearHeatmapView::YearHeatmapView(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::List);
    setObjectName(QStringLiteral("yearHeatmap"));
    setAccessibleName(tr("Last 365 Days"));
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void YearHeatmapView::setContents(const DayCounts &yearHistory, const Calendar &calendar, Instant now,
                                  const DateTexts &texts)
{
    Contents contents{gridData(yearHistory, calendar, now), {}, {}};
    contents.labels = monthLabels(contents.grid, calendar, texts);
    contents.toolTips = toolTips(contents.grid, texts);
    if (contents == m_contents)
        return;
    m_current = currentAfter(contents);
    std::swap(contents, m_contents);
    followContents(contents);
}

// The keys stay on their day when the weeks move on.
std::optional<int> YearHeatmapView::currentAfter(const Contents &contents) const
{
    const auto kept = m_current ? cellOn(cellAt(m_contents.grid, *m_current).date, contents.grid) : std::nullopt;
    return kept ? kept : todayIndex(contents.grid);
}

void YearHeatmapView::followContents(const Contents &before)
{
    const bool isArrangedAnew = before.labels != m_contents.labels || before.grid.size() != m_contents.grid.size();
    if (isArrangedAnew) {
        updateGeometry();
        update();
    }
    for (int index = 0; index < cells(); ++index) {
        if (before.toolTips.value(index) == textOf(index))
            continue;
        if (!isArrangedAnew)
            update(rectangleOf(index));
        QAccessibleEvent event(this, QAccessible::NameChanged);
        event.setChild(index);
        QAccessible::updateAccessibility(&event);
    }
}

HeatmapGeometry YearHeatmapView::shapes() const
{
    return {{static_cast<int>(m_contents.grid.size()), static_cast<int>(m_contents.labels.size()), layoutDirection()},
            style::scale() * devicePixelRatioF()};
}

QRect YearHeatmapView::logical(QRect devicePixels) const
{
    const auto ratio = devicePixelRatioF();
    return QRectF(devicePixels.x() / ratio, devicePixels.y() / ratio, devicePixels.width() / ratio,
                  devicePixels.height() / ratio)
        .toAlignedRect();
}

QSize YearHeatmapView::sizeHint() const
{
    return logical({{0, 0}, shapes().size()}).size();
}

QRect YearHeatmapView::rectangleOf(int cell) const
{
    return logical(shapes().cell(cell));
}

QVariant YearHeatmapView::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImCursorRectangle && m_current)
        return rectangleOf(*m_current);
    return QWidget::inputMethodQuery(query);
}

QStringList YearHeatmapView::labels() const
{
    QStringList texts;
    for (const auto &label : m_contents.labels)
        texts.append(label.text);
    return texts;
}

QRect YearHeatmapView::rectangleOfLabel(int position) const
{
    return logical(shapes().label(position));
}

PaintedChild YearHeatmapView::paintedChild(int index)
{
    QAccessible::State state;
    state.readOnly = true;
    if (const auto label = index - cells(); label >= 0)
        return {QAccessible::StaticText, m_contents.labels.at(label).text, rectangleOfLabel(label), state};
    state.focusable = true;
    return {QAccessible::ListItem, textOf(index), rectangleOf(index), state};
}

int YearHeatmapView::todayX() const
{
    const auto today = todayIndex(m_contents.grid);
    return today ? rectangleOf(*today).center().x() : 0;
}

std::optional<int> YearHeatmapView::paintedChildAt(QPoint position) const
{
    const auto onDevice = QPointF(position) * devicePixelRatioF();
    return shapes().cellAt({static_cast<int>(std::floor(onDevice.x())), static_cast<int>(std::floor(onDevice.y()))});
}

void YearHeatmapView::followScale()
{
    updateGeometry();
    update();
}

bool YearHeatmapView::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        event->setAccepted(showToolTip(static_cast<const QHelpEvent &>(*event)));
        return true;
    }
    // Another screen may have another scale.
    if (event->type() == QEvent::ScreenChangeInternal)
        followScale();
    return QWidget::event(event);
}

void YearHeatmapView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange)
        followScale();
    QWidget::changeEvent(event);
}

bool YearHeatmapView::showToolTip(const QHelpEvent &help)
{
    const auto cell = paintedChildAt(help.pos());
    const auto text = cell ? textOf(*cell) : QString();
    if (text.isEmpty()) {
        QToolTip::hideText();
        return false;
    }
    QToolTip::showText(help.globalPos(), text, this, rectangleOf(*cell));
    return true;
}

int YearHeatmapView::fade()
{
    return style::points(20);
}

// What fades is elsewhere now, and so is what lies under the pointer.
void YearHeatmapView::moveEvent(QMoveEvent * /*event*/)
{
    if (underMouse())
        hoverAt(mapFromGlobal(QCursor::pos()));
    update();
}

void YearHeatmapView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    paintLabels(painter);
    painter.save();
    countDevicePixels(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    paintCells(painter, event->rect());
    painter.restore();
    paintFades(painter);
}

// No wider than what is out of sight there, so that it goes little by little towards the end.
void YearHeatmapView::paintFades(QPainter &painter) const
{
    const auto inSight = rect() & QRect(-pos(), parentWidget() != nullptr ? parentWidget()->size() : size());
    const auto left = inSight.x();
    const auto right = left + inSight.width();
    paintFade(painter, left, left + std::min(left, fade()));
    paintFade(painter, right, right - std::min(width() - right, fade()));
}

void YearHeatmapView::paintFade(QPainter &painter, int edge, int inside) const
{
    auto color = style::ground(palette());
    QLinearGradient gradient(edge, 0, inside, 0);
    gradient.setColorAt(0, color);
    color.setAlpha(0);
    gradient.setColorAt(1, color);
    painter.fillRect(QRect(std::min(edge, inside), 0, std::abs(inside - edge), height()), gradient);
}

void YearHeatmapView::paintLabels(QPainter &painter) const
{
    painter.setFont(style::systemFont(labelSize));
    painter.setPen(style::ink(palette(), style::Ink::Secondary));
    const auto alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter);
    // Some fonts are higher than a label's frame, or begin a letter before it: there is room for that.
    const auto flags = int(alignment | Qt::AlignAbsolute) | Qt::TextSingleLine | Qt::TextDontClip;
    for (int position = 0; position < m_contents.labels.size(); ++position) {
        const auto frame = rectangleOfLabel(position);
        const auto text =
            painter.fontMetrics().elidedText(m_contents.labels.at(position).text, Qt::ElideRight, frame.width());
        painter.setLayoutDirection(style::readingDirection(text));
        painter.drawText(frame, flags, text);
    }
}

void YearHeatmapView::paintCells(QPainter &painter, const QRect &dirty) const
{
    const auto shapes = this->shapes();
    for (int index = 0; index < cells(); ++index) {
        if (!rectangleOf(index).intersects(dirty))
            continue;
        const auto &cell = cellAt(m_contents.grid, index);
        const auto color = colorForCount(cell.count, cell.isInRange).in(palette());
        style::paintBlock(painter, shapes.cell(index), shapes.cornerRadius(), color, palette());
    }
    if (m_hovered && *m_hovered < cells())
        paintRing(painter, shapes, *m_hovered);
    if (hasFocus() && m_current)
        paintRing(painter, shapes, *m_current);
}

// Around the square of which the tooltip tells, whether the pointer or the keys have reached it.
void YearHeatmapView::paintRing(QPainter &painter, const HeatmapGeometry &shapes, int cell) const
{
    const auto width = std::max(std::round(shapes.cornerRadius() / 2), 1.0);
    const auto inset = width / 2;
    const auto radius = shapes.cornerRadius() - inset;
    painter.setPen(QPen(style::ink(palette(), style::Ink::Primary), width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(shapes.cell(cell)).adjusted(inset, inset, -inset, -inset), radius, radius);
}

std::optional<int> YearHeatmapView::cellReachedBy(int key) const
{
    const auto &grid = m_contents.grid;
    const auto weekToTheRight = isRightToLeft() ? -daysOfWeek : daysOfWeek;
    switch (key) {
    case Qt::Key_Up:
        return nextInRange(grid, *m_current, -1);
    case Qt::Key_Down:
        return nextInRange(grid, *m_current, 1);
    case Qt::Key_Left:
        return nextInRange(grid, *m_current, -weekToTheRight);
    case Qt::Key_Right:
        return nextInRange(grid, *m_current, weekToTheRight);
    case Qt::Key_Home:
        return nextInRange(grid, -1, 1);
    default:
        return todayIndex(grid);
    }
}

void YearHeatmapView::keyPressEvent(QKeyEvent *event)
{
    constexpr std::array keys{Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End};
    const bool isOurs = std::ranges::find(keys, event->key()) != keys.end();
    if (!isOurs || !m_current) {
        QWidget::keyPressEvent(event);
        return;
    }
    // At the end of the year the key still is ours: nothing around the view should scroll by it.
    moveTo(cellReachedBy(event->key()).value_or(*m_current));
}

void YearHeatmapView::updateCell(std::optional<int> cell)
{
    if (cell)
        update(rectangleOf(*cell));
}

void YearHeatmapView::moveTo(int cell)
{
    updateCell(m_current);
    m_current = cell;
    updateCell(m_current);
    const auto rectangle = rectangleOf(cell);
    Q_EMIT currentCellMoved(rectangle);
    QToolTip::showText(mapToGlobal(rectangle.bottomRight()), textOf(cell), this);
    announceCurrentCell();
}

// Queued, because Qt tells of the whole widget after focusInEvent() and would have the last word.
void YearHeatmapView::announceCurrentCell()
{
    const auto announce = [this] {
        if (!hasFocus() || !m_current)
            return;
        QAccessibleEvent event(this, QAccessible::Focus);
        event.setChild(*m_current);
        QAccessible::updateAccessibility(&event);
    };
    QMetaObject::invokeMethod(this, announce, Qt::QueuedConnection);
}

void YearHeatmapView::focusInEvent(QFocusEvent * /*event*/)
{
    updateCell(m_current);
    if (m_current)
        Q_EMIT currentCellMoved(rectangleOf(*m_current));
    announceCurrentCell();
}

void YearHeatmapView::hover(std::optional<int> cell)
{
    if (cell == m_hovered)
        return;
    updateCell(std::exchange(m_hovered, cell));
    updateCell(m_hovered);
}

void YearHeatmapView::mouseMoveEvent(QMouseEvent *event)
{
    hoverAt(event->pos());
    QWidget::mouseMoveEvent(event);
}

void YearHeatmapView::hoverAt(QPoint position)
{
    const auto cell = paintedChildAt(position);
    hover(cell && cellAt(m_contents.grid, *cell).isInRange ? cell : std::nullopt);
}

void YearHeatmapView::leaveEvent(QEvent *event)
{
    hover(std::nullopt);
    QWidget::leaveEvent(event);
}

void YearHeatmapView::focusOutEvent(QFocusEvent * /*event*/)
{
    updateCell(m_current);
    QToolTip::hideText();
}

}  // namespace velquarin
