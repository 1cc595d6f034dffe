// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/IconButton.h"

#include "Views/Controls/Symbols.h"

#include <QPainter>

#include <utility>

namespace velquarin {

IconButton::IconButton(QString symbol, const QString &accessibleName, QWidget *parent)
    : PlainButton(parent)
    , m_symbol(std::move(symbol))
    , m_size(style::sizeOf(style::TypeStyle::Caption))
    , m_tone(style::Ink::Primary)
{
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void IconButton::setLook(double size, const style::Tone &tone)
{
    m_size = size;
    m_tone = tone;
    updateGeometry();
    update();
}

double IconButton::opacity() const
{
    return isEnabled() ? 1.0 : 0.5;
}

QSize IconButton::sizeHint() const
{
    const auto symbol = style::symbolSize(m_symbol, m_size);
    return symbol.grownBy({outset(), outset(), outset(), outset()});
}

void IconButton::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setOpacity(opacity());
    const auto place = rect().adjusted(outset(), outset(), -outset(), -outset());
    style::paintSymbol(painter, m_symbol, place, style::textColor(palette(), m_tone));
    painter.end();
    PlainButton::paintEvent(event);
}

}  // namespace velquarin
