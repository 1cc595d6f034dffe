// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
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

}  // namespace velquarin::test
