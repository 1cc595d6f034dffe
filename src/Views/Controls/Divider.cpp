// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Divider.h"

#include "Views/Controls/Style.h"

#include <QPainter>

#include <cmath>

namespace velquarin {

Divider::Divider(Qt::Orientation orientation, QWidget *parent)
    : QWidget(parent)
    , m_orientation(orientation)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    if (orientation == Qt::Horizontal)
        setFixedHeight(1);
    else
        setFixedWidth(1);
}

void Divider::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(lineIn(painter), style::divider(palette()));
}

// Of the same width wherever it stands: at 1.5x a logical pixel covers now one and now two of the screen's.
QRectF Divider::lineIn(const QPainter &painter) const
{
    const auto ratio = painter.deviceTransform().m11();
    const auto width = std::max(std::floor(ratio), 1.0) / ratio;
    QRectF line(rect());
    if (m_orientation == Qt::Horizontal)
        line.setHeight(width);
    else
        line.setWidth(width);
    return style::onWholePixels(painter, line);
}

}  // namespace velquarin
