// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Badge.h"

#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Style.h"

#include <QPainter>

#include <utility>

namespace velquarin {

Badge::Badge(QString word, QWidget *parent)
    : QWidget(parent)
    , m_word(std::move(word))
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(m_word);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Badge::sizeHint() const
{
    const QFontMetrics metrics(style::font(style::TypeStyle::Caption2));
    return {metrics.horizontalAdvance(m_word) + 2 * style::points(4), metrics.height() + 2 * style::points(1)};
}

void Badge::paintEvent(QPaintEvent * /*event*/)
{
    const auto ground = style::badgeGround(palette(), style::Accent::Blue);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
    painter.setFont(style::font(style::TypeStyle::Caption2));
    painter.setPen(style::accentTextOn(ground, palette(), style::Accent::Blue));
    painter.drawText(rect(), Qt::AlignCenter, m_word);
}

}  // namespace velquarin
