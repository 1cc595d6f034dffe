// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Switch.h"

#include "Views/Controls/Style.h"

#include <QPainter>
#include <QStyle>

namespace velquarin {

namespace {

constexpr double regularWidth = 32;
constexpr double smallWidth = 26;
constexpr double heightToWidth = 0.58;
constexpr double insetOfKnob = 2;
constexpr int longestTravel = 140;  // ms

}  // namespace

Switch::Switch(const QString &label, Size size, QWidget *parent)
    : QCheckBox(label, parent)
    , m_size(size)
{
    setFocusPolicy(Qt::TabFocus);
    m_knob.setStartValue(0.0);
    m_knob.setEndValue(0.0);
    connect(&m_knob, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(this, &QCheckBox::toggled, this, &Switch::moveKnob);
}

// A desktop that wants no animations sees none, and nobody sees one in a window that only just opens.
void Switch::moveKnob(bool isOn)
{
    const auto from = m_knob.currentValue();
    m_knob.stop();
    m_knob.setStartValue(from);
    m_knob.setEndValue(isOn ? 1.0 : 0.0);
    m_knob.setDuration(style::animationTime(*this, longestTravel));
    m_knob.start();
}

int Switch::outset()
{
    return style::points(4);
}

QFont Switch::lettering() const
{
    return style::font(m_size == Size::Regular ? style::TypeStyle::Body : style::TypeStyle::Subheadline);
}

QSize Switch::trackSize() const
{
    const auto width = style::points(m_size == Size::Regular ? regularWidth : smallWidth);
    return {width, qRound(width * heightToWidth)};
}

QSize Switch::sizeHint() const
{
    const auto label = QFontMetrics(lettering()).size(Qt::TextShowMnemonic, text());
    const auto track = trackSize();
    return {label.width() + style::points(style::defaultSpacing) + track.width() + 2 * outset(),
            std::max(label.height(), track.height()) + 2 * outset()};
}

QSize Switch::minimumSizeHint() const
{
    return sizeHint();
}

bool Switch::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

QRect Switch::trackPlace() const
{
    return QStyle::alignedRect(layoutDirection(), Qt::AlignTrailing | Qt::AlignVCenter, trackSize(),
                               rect().adjusted(outset(), 0, -outset(), 0));
}

// A small label, too, stands on the baseline of what is beside the switch in the usual size.
QRect Switch::labelPlace() const
{
    const QFontMetrics beside(style::font(style::TypeStyle::Body));
    const auto top = (height() - beside.height()) / 2 + beside.ascent() - QFontMetrics(lettering()).ascent();
    const auto besides = trackSize().width() + style::points(style::defaultSpacing) + outset();
    return QStyle::visualRect(layoutDirection(), rect(), rect().adjusted(outset(), top, -besides, 0));
}

void Switch::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setFont(lettering());
    painter.setPen(style::ink(palette(), style::Ink::Primary));
    const auto alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading | Qt::AlignTop);
    painter.drawText(labelPlace(), int(alignment) | Qt::TextSingleLine | style::mnemonicFlag(*this), text());
    paintTrack(painter);
    if (hasFocus())
        style::paintFocusRing(painter, rect(), palette());
}

void Switch::paintTrack(QPainter &painter) const
{
    const auto knobAt = m_knob.currentValue().toDouble();
    const auto track = style::onWholePixels(painter, trackPlace());
    const auto margin = style::points(insetOfKnob);
    const auto diameter = track.height() - 2 * margin;
    const auto travel = (track.width() - 2 * margin - diameter) * (isRightToLeft() ? 1 - knobAt : knobAt);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style::switchTrack(palette(), isChecked()));
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(track.x() + margin + travel, track.y() + margin, diameter, diameter));
}

}  // namespace velquarin
