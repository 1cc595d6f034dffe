// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Divider.h"

#include "Views/Style.h"

#include <QPainter>

namespace velquarin {

Divider::Divider(Qt::Orientation orientation, QWidget *parent)
    : QWidget(parent)
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
    painter.fillRect(style::onWholePixels(painter, rect()), style::divider(palette()));
}

}  // namespace velquarin
