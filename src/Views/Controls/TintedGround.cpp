// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/TintedGround.h"

#include "Views/Controls/Style.h"

#include <QPainter>

namespace velquarin {

namespace {

constexpr double cornerRadius = 8;

}  // namespace

void paintTintedGround(QPainter &painter, const QRectF &rect, const QPalette &palette)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style::groupGround(palette));
    painter.drawRoundedRect(rect, style::points(cornerRadius), style::points(cornerRadius));
}

void TintedGround::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    paintTintedGround(painter, rect(), palette());
}

}  // namespace velquarin
