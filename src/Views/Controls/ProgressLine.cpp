// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/ProgressLine.h"

#include "Views/Controls/Style.h"
#include "Views/Controls/Text.h"

#include <QHBoxLayout>
#include <QPainter>

namespace velquarin {

namespace {

constexpr double normalSize = 16;
constexpr double smallness = 0.7;
constexpr int spokes = 8;
constexpr int stepInterval = 100;  // ms

}  // namespace

Spinner::Spinner(QWidget *parent)
    : QWidget(parent)
{
    const auto size = style::points(normalSize * smallness);
    setFixedSize(size, size);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Spinner::showEvent(QShowEvent *event)
{
    m_timer.start(stepInterval, this);
    QWidget::showEvent(event);
}

void Spinner::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    QWidget::hideEvent(event);
}

void Spinner::timerEvent(QTimerEvent * /*event*/)
{
    m_step = (m_step + 1) % spokes;
    update();
}

void Spinner::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto radius = width() / 2.0;
    painter.translate(radius, radius);
    auto color = style::ink(palette(), style::Ink::Secondary);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const auto age = (m_step - spoke + spokes) % spokes;
        color.setAlphaF(1.0F - float(age) / spokes);
        painter.setPen(QPen(color, radius / 3.5, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(spoke * 360.0 / spokes);
        painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius * 0.85));
        painter.restore();
    }
}

ProgressLine::ProgressLine(double spacing, QWidget *parent)
    : QWidget(parent)
    , m_text(new Text(textLook(style::TypeStyle::Caption, style::Ink::Secondary), this))
{
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(style::points(spacing));
    row->addWidget(new Spinner(this));
    row->addWidget(m_text);
}

void ProgressLine::setText(const QString &text)
{
    m_text->setText(text);
}

}  // namespace velquarin
