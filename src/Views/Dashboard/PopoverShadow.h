// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QMargins>
#include <QSize>

class QPalette;

namespace velquarin {

//! The shadow that the popover casts where nobody else gives it one. It is drawn once and kept for as long as size, scale
//! and palette stay.
class PopoverShadow
{
public:
    //! How far it reaches beyond the popover. Units: logical pixels.
    [[nodiscard]] static QMargins margins();

    //! The shadow of a popover of that size, its corners round by @p radius, with its margins around. Units: logical
    //! pixels, @p ratio device pixels each.
    [[nodiscard]] const QImage &of(QSize popover, double radius, double ratio, const QPalette &palette);

private:
    struct Shape
    {
        QSize popover;
        double radius = 0;
        double ratio = 1;
        double strength = 0;
        friend bool operator==(const Shape &, const Shape &) = default;
    };
    [[nodiscard]] static QImage drawn(const Shape &shape);

    Shape m_shape;
    QImage m_image;
};

}  // namespace velquarin
