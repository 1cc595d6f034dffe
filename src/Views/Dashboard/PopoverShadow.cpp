// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/PopoverShadow.h"

#include "Views/Controls/Style.h"

#include <QPalette>
#include <QRectF>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velquarin {

namespace {

constexpr double spread = 22;
constexpr double offset = 6;
constexpr double strengthInLight = 0.26;
constexpr double strengthInDark = 0.55;

// How far a point is from a rectangle with round corners; nothing or less inside.
double distance(QPointF point, const QRectF &rect, double radius)
{
    const auto inner = rect.marginsRemoved({radius, radius, radius, radius});
    const auto x = std::max({inner.left() - point.x(), point.x() - inner.right(), 0.0});
    const auto y = std::max({inner.top() - point.y(), point.y() - inner.bottom(), 0.0});
    return std::hypot(x, y) - radius;
}

}  // namespace

QMargins PopoverShadow::margins()
{
    const auto reach = style::points(spread);
    const auto down = style::points(offset);
    return {reach, reach - down, reach, reach + down};
}

const QImage &PopoverShadow::of(QSize popover, double radius, double ratio, const QPalette &palette)
{
    const auto strength = style::isDark(palette) ? strengthInDark : strengthInLight;
    const Shape shape{popover, radius, ratio, strength};
    if (m_shape != shape) {
        m_shape = shape;
        m_image = drawn(shape);
    }
    return m_image;
}

// A picture of the alpha alone is black in all its colours, and takes a quarter of the memory.
QImage PopoverShadow::drawn(const Shape &shape)
{
    const auto size = shape.popover.grownBy(margins());
    QImage image((QSizeF(size) * shape.ratio).toSize(), QImage::Format_Alpha8);
    const auto reach = style::points(spread);
    const QRectF caster(QPointF(reach, reach), QSizeF(shape.popover));
    for (int y = 0; y < image.height(); ++y) {
        auto *line = image.scanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            const auto away = distance(QPointF(x + 0.5, y + 0.5) / shape.ratio, caster, shape.radius);
            const auto nearness = 1 - std::clamp(away / reach, 0.0, 1.0);
            line[x] = uchar(std::lround(255 * shape.strength * nearness * nearness));
        }
    }
    image.setDevicePixelRatio(shape.ratio);
    return image;
}

}  // namespace velquarin
