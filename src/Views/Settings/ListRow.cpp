// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/ListRow.h"

#include "Views/Controls/Style.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace velquarin {

namespace {

constexpr double insetOfHover = 3;
constexpr double insetOfLine = 10;

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
    if (!underMouse())
        return;
    const auto inset = style::points(insetOfHover);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style::hoveredGround(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset - 1), inset + 2, inset + 2);
}

}  // namespace velquarin
