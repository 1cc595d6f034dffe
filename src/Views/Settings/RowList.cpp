// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RowList.h"

#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/HouseStyle.h"
#include "Views/Controls/Style.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSet>
#include <QStyle>

#include <algorithm>
#include <memory>
#include <utility>

namespace velquarin {

namespace {

constexpr double insetOfHover = 3;
constexpr double insetOfLine = 10;
constexpr double roomForBar = 4;

// What the pointer presses must not move away from under it, and who comes back to the window finds the list where it
// was.
bool isLookedFor(Qt::FocusReason reason)
{
    return reason != Qt::MouseFocusReason && reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

}  // namespace

ListRow::ListRow(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_Hover);
}

int ListRow::focusedControl() const
{
    const auto focused = std::ranges::find_if(m_controls, [](const QWidget *control) { return control->hasFocus(); });
    return focused == m_controls.end() ? -1 : int(focused - m_controls.begin());
}

void ListRow::setTabStop(bool isTabStop)
{
    for (auto *const control : std::as_const(m_controls))
        control->setFocusPolicy(isTabStop ? Qt::StrongFocus : Qt::ClickFocus);
}

void ListRow::setLast(bool isLast)
{
    if (isLast == m_isLast)
        return;
    m_isLast = isLast;
    update();
}

void ListRow::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (!m_isLast) {
        const auto inset = style::points(insetOfLine);
        const QRectF line(inset, height() - 1, width() - 2 * inset, 1);
        painter.fillRect(style::onWholePixels(painter, line), style::divider(palette()));
    }
    if (!isInUse())
        return;
    const auto inset = style::points(insetOfHover);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style::hoveredGround(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset - 1), inset + 2, inset + 2);
}

RowList::RowList(std::function<ListRow *(QWidget *)> makeRow, std::function<void(ListRow &, int)> fillRow,
                 QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_makeRow(std::move(makeRow))
    , m_fillRow(std::move(fillRow))
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    makePill(*verticalScrollBar(), true);
}

void RowList::setTitle(const QString &title)
{
    setAccessibleName(title);
    verticalScrollBar()->setAccessibleName(title);
}

// Every row is as high as any other: the first one is asked.
int RowList::rowHeight() const
{
    if (m_rowHeight == 0) {
        const std::unique_ptr<ListRow> sample(m_makeRow(nullptr));
        m_rowHeight = std::max(sample->sizeHint().height(), 1);
    }
    return m_rowHeight;
}

QSize RowList::minimumSizeHint() const
{
    return {0, rowHeight()};
}

QSize RowList::sizeHint() const
{
    constexpr int rowsAtFirst = 3;
    return {0, rowHeight() * rowsAtFirst};
}

int RowList::rowsInSight() const
{
    return std::max(viewport()->height() / rowHeight(), 1);
}

int RowList::focusedControl() const
{
    const auto *const row = m_rows.value(m_ids.value(m_current));
    return row == nullptr ? -1 : row->focusedControl();
}

void RowList::setIds(const QList<QUuid> &ids)
{
    const auto control = focusedControl();
    const auto found = ids.indexOf(m_ids.value(m_current));
    const bool isFocusLost = found < 0 && control >= 0 && !ids.isEmpty();
    m_ids = ids;
    m_current = found >= 0 ? int(found) : std::clamp(m_current, 0, std::max(int(ids.size()) - 1, 0));
    // A shorter list may scroll: the row with the focus stays until the next one has it.
    {
        const QScopedValueRollback changing(m_isChangingIds, true);
        updateScrollBar();
    }
    placeRows();
    if (isFocusLost)
        focusRow(m_current, control);
    discardRowsOutOfSight();
}

void RowList::updateScrollBar()
{
    auto *const bar = verticalScrollBar();
    bar->setRange(0, std::max(int(m_ids.size()) * rowHeight() - viewport()->height(), 0));
    bar->setPageStep(viewport()->height());
    bar->setSingleStep(rowHeight() / 2);
}

// The current row stays even out of sight: it may have the focus, and Tab leads to it.
std::set<int> RowList::neededRows() const
{
    const auto top = verticalScrollBar()->value();
    const auto count = int(m_ids.size());
    const auto first = std::clamp(top / rowHeight(), 0, count);
    const auto end = std::clamp((top + viewport()->height() + rowHeight() - 1) / rowHeight(), first, count);
    std::set<int> needed;
    for (int index = first; index < end; ++index)
        needed.insert(index);
    if (m_current < count)
        needed.insert(m_current);
    return needed;
}

void RowList::layoutRows()
{
    placeRows();
    discardRowsOutOfSight();
}

void RowList::placeRows()
{
    const auto top = verticalScrollBar()->value();
    const auto place = rowsPlace();
    const auto before = m_rows.size();
    for (const auto index : neededRows()) {
        auto *const row = rowFor(m_ids.at(index));
        m_fillRow(*row, index);
        row->setTabStop(index == m_current);
        row->setLast(index == m_ids.size() - 1);
        row->setGeometry(place.x(), index * rowHeight() - top, place.width(), rowHeight());
        row->show();
    }
    if (m_rows.size() > before)
        orderRows();
}

// The bins keep clear of a bar that is laid over them.
QRect RowList::rowsPlace() const
{
    const auto strip = verticalScrollBar()->maximum() > 0 ? style::points(roomForBar) : 0;
    return QStyle::visualRect(layoutDirection(), viewport()->rect(), viewport()->rect().adjusted(0, 0, -strip, 0));
}

// A screen reader comes to them as Qt has them stacked.
void RowList::orderRows()
{
    for (const auto index : neededRows())
        m_rows.value(m_ids.at(index))->raise();
}

// Hiding a row can move the focus, and with it come back here: the rows to go are out of the list before they do.
void RowList::discardRowsOutOfSight()
{
    QSet<QUuid> needed;
    for (const auto index : neededRows())
        needed.insert(m_ids.at(index));
    QList<ListRow *> leaving;
    m_rows.removeIf([&needed, &leaving](const auto &entry) {
        const bool isLeaving = !needed.contains(entry.key());
        if (isLeaving)
            leaving.append(entry.value());
        return isLeaving;
    });
    for (auto *const row : std::as_const(leaving)) {
        row->hide();
        row->deleteLater();
    }
}

ListRow *RowList::rowFor(QUuid id)
{
    auto *&row = m_rows[id];
    if (row == nullptr) {
        row = m_makeRow(viewport());
        watch(row);
    }
    return row;
}

// In the order of Tab its controls come where the list stands, not where the window ends. Qt orders only what
// can have the focus.
void RowList::watch(ListRow *row)
{
    setFocusPolicy(Qt::TabFocus);
    QWidget *previous = this;
    for (auto *const control : row->controls()) {
        setTabOrder(previous, control);
        control->installEventFilter(this);
        previous = control;
    }
    setFocusPolicy(Qt::NoFocus);
}

void RowList::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBar();
    layoutRows();
}

void RowList::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    if (!m_isChangingIds)
        layoutRows();
}

void RowList::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(viewport());
    const auto end = int(m_ids.size()) * rowHeight() - verticalScrollBar()->value();
    const QRect rows(0, 0, viewport()->width(), std::min(end, viewport()->height()));
    paintTintedGround(painter, rows, palette());
}

bool RowList::eventFilter(QObject *watched, QEvent *event)
{
    auto *const row = static_cast<ListRow *>(watched->parent());
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        row->update();
    if (event->type() == QEvent::FocusIn) {
        setCurrent(int(m_ids.indexOf(row->id())));
        if (isLookedFor(static_cast<QFocusEvent *>(event)->reason()))
            bringIntoSight(m_current);
    } else if (event->type() == QEvent::KeyPress) {
        const auto *const press = static_cast<QKeyEvent *>(event);
        const auto next = press->modifiers().testFlag(Qt::ControlModifier) ? -1 : indexAfter(press->key());
        const bool isForPopUp = qobject_cast<QComboBox *>(watched) != nullptr;
        if (next >= 0 && !isForPopUp) {
            focusRow(next, focusedControl());
            return true;
        }
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

int RowList::indexAfter(int key) const
{
    const auto last = int(m_ids.size()) - 1;
    switch (key) {
    case Qt::Key_Up:
        return std::max(m_current - 1, 0);
    case Qt::Key_Down:
        return std::min(m_current + 1, last);
    case Qt::Key_PageUp:
        return std::max(m_current - rowsInSight(), 0);
    case Qt::Key_PageDown:
        return std::min(m_current + rowsInSight(), last);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    default:
        return -1;
    }
}

void RowList::setCurrent(int index)
{
    if (index < 0)
        return;
    if (auto *const row = m_rows.value(m_ids.value(m_current)); row != nullptr && index != m_current)
        row->setTabStop(false);
    m_current = index;
    if (auto *const row = m_rows.value(m_ids.at(index)))
        row->setTabStop(true);
    discardRowsOutOfSight();
}

void RowList::focusRow(int index, int control)
{
    bringIntoSight(index);
    auto *const row = rowFor(m_ids.at(index));
    row->controls().value(std::max(control, 0))->setFocus(Qt::OtherFocusReason);
}

void RowList::bringIntoSight(int index)
{
    const auto top = index * rowHeight();
    const auto highest = std::max(top + rowHeight() - viewport()->height(), 0);
    auto *const bar = verticalScrollBar();
    bar->setValue(std::clamp(bar->value(), std::min(highest, top), top));
}

}  // namespace velquarin
