// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/FadingPicture.h"

#include "Views/Controls/Style.h"

#include <QPainter>

#include <utility>

namespace velquarin {

namespace {

constexpr int fadingTime = 100;  // ms

QPixmap pictureOf(QWidget &widget, const QRect &part)
{
    QPixmap picture(part.size() * widget.devicePixelRatioF());
    picture.setDevicePixelRatio(widget.devicePixelRatioF());
    picture.fill(style::ground(widget.palette()));
    widget.render(&picture, {}, part, QWidget::DrawChildren);
    return picture;
}

}  // namespace

FadingPicture::FadingPicture(QWidget &whole, std::function<QRect()> part)
    : QWidget(&whole)
    , m_part(std::move(part))
    , m_fading(*this, QStringLiteral("fading"), fadingTime, [this] { showProgress(); })
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void FadingPicture::begin()
{
    auto &whole = *parentWidget();
    const auto part = m_part();
    if (part.isEmpty() || style::animationTime(whole, fadingTime) == 0)
        return;
    m_picture = pictureOf(whole, part);
    setGeometry(part);
    raise();
    show();
    m_fading.begin();
}

void FadingPicture::showProgress()
{
    setVisible(m_fading.progress() < 1);
    update();
}

void FadingPicture::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setClipRect(m_part().translated(-pos()));
    painter.setOpacity(1 - m_fading.progress());
    painter.drawPixmap(0, 0, m_picture);
}

void FadingPicture::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_fading.end();
    m_picture = {};
}

}  // namespace velquarin
