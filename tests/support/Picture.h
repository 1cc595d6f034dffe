// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Symbols.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <cmath>

namespace velquarin::test {

//! What @p widget looks like on a screen with so many pixels to a logical one.
inline QImage pictureOf(QWidget &widget, double ratio)
{
    const QSize pixels(int(std::ceil(widget.width() * ratio)), int(std::ceil(widget.height() * ratio)));
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(widget.palette().color(QPalette::Window));
    widget.render(&image);
    return image;
}

//! A ground of @p widget's size and colour with what @p draw paints on it.
template <typename Draw>
QImage drawnOn(const QWidget &widget, Draw draw)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(widget.palette().color(QPalette::Window));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    draw(painter);
    return image;
}

//! What @p widget looks like with that symbol at @p place and nothing else.
inline QImage pictureOfSymbol(const QString &name, const QRect &place, const QColor &color, const QWidget &widget,
                              double opacity = 1)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(widget.palette().color(QPalette::Window));
    QPainter painter(&image);
    painter.setOpacity(opacity);
    style::paintSymbol(painter, name, place, color);
    return image;
}

//! Whether all of @p image is of one colour; so is one without pixels.
inline bool isPlain(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, 0))
                return false;
        }
    }
    return true;
}

}  // namespace velquarin::test
