// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Decorations.h"

#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Style.h"

#include <QPainter>

#include <cmath>
#include <utility>

namespace velquarin {

namespace {

constexpr double cornerRadius = 8;

}  // namespace

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

void paintTintedGround(QPainter &painter, const QRectF &rect, const QPalette &palette)
{
    painter.setRenderHint(QPainter::Antialiasing);
    style::paintBlock(painter, rect, style::points(cornerRadius), style::groupGround(palette), palette);
}

void TintedGround::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    paintTintedGround(painter, rect(), palette());
}

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
