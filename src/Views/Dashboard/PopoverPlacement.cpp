// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/PopoverPlacement.h"

#include <algorithm>
#include <array>

namespace velquarin {

namespace {

// No panel is thicker than this, so a click further away from an edge is on no panel there.
constexpr int thickestPanel = 64;

constexpr std::array sides{Qt::TopEdge, Qt::BottomEdge, Qt::LeftEdge, Qt::RightEdge};

bool isOnScreen(QPoint point, const QList<ScreenArea> &screens)
{
    return std::ranges::any_of(screens, [point](const auto &screen) { return screen.whole.contains(point); });
}

int squaredDistance(QPoint point, const QRect &area)
{
    const QPoint nearest(std::clamp(point.x(), area.left(), area.right()),
                         std::clamp(point.y(), area.top(), area.bottom()));
    return QPoint::dotProduct(point - nearest, point - nearest);
}

const ScreenArea &nearestScreen(QPoint point, const QList<ScreenArea> &screens)
{
    return *std::ranges::min_element(screens, {}, [point](const auto &screen) {  //
        return squaredDistance(point, screen.whole);
    });
}

// How deep the inner area begins behind the outer one's edge, seen from that side.
int depth(const QRect &outer, const QRect &inner, Qt::Edge side)
{
    switch (side) {
    case Qt::TopEdge:
        return inner.top() - outer.top();
    case Qt::BottomEdge:
        return outer.bottom() - inner.bottom();
    case Qt::LeftEdge:
        return inner.left() - outer.left();
    case Qt::RightEdge:
        return outer.right() - inner.right();
    }
    return 0;
}

int panelThickness(const ScreenArea &screen, Qt::Edge side)
{
    return depth(screen.whole, screen.available, side);
}

int distanceToEdge(QPoint point, const QRect &area, Qt::Edge side)
{
    return depth(area, QRect(point, QSize(1, 1)), side);
}

QRect itemAround(QPoint click, int extent)
{
    return {click.x() - extent / 2, click.y() - extent / 2, extent, extent};
}

// Thrown against the edge of the screen, the pointer hits an item that lies further inside.
QRect itemOnScreen(QPoint click, int extent, const QRect &screen)
{
    const auto half = extent / 2;
    return itemAround({std::clamp(click.x(), screen.left() + half, screen.right() + 1 - half),
                       std::clamp(click.y(), screen.top() + half, screen.bottom() + 1 - half)},
                      extent);
}

bool isUpright(Qt::Edge side)
{
    return side == Qt::LeftEdge || side == Qt::RightEdge;
}

// What is left of the screen for the popover: nothing of the panel, nothing of the item.
QRect roomBeside(QPoint click, Qt::Edge side, const ScreenArea &screen, const PopoverDimensions &dimensions)
{
    auto room = screen.available;
    // A panel that reserves its strip keeps the item within it.
    if (panelThickness(screen, side) == 0) {
        const auto item = itemOnScreen(click, dimensions.item, screen.whole);
        if (side == Qt::TopEdge)
            room.setTop(std::max(room.top(), item.bottom() + 1));
        else if (side == Qt::BottomEdge)
            room.setBottom(std::min(room.bottom(), item.top() - 1));
        else if (side == Qt::LeftEdge)
            room.setLeft(std::max(room.left(), item.right() + 1));
        else
            room.setRight(std::min(room.right(), item.left() - 1));
    }
    return room.adjusted(dimensions.gap, dimensions.gap, -dimensions.gap, -dimensions.gap);
}

// The start of a stretch whose middle is at that point, moved inside of the bounds.
int centred(int middle, int length, int first, int last)
{
    return std::max(std::min(middle - length / 2, last + 1 - length), first);
}

QPoint corner(QPoint click, QSize size, Qt::Edge side, const QRect &room)
{
    const auto x = centred(click.x(), size.width(), room.left(), room.right());
    const auto y = centred(click.y(), size.height(), room.top(), room.bottom());
    switch (side) {
    case Qt::TopEdge:
        return {x, room.top()};
    case Qt::BottomEdge:
        return {x, room.bottom() + 1 - size.height()};
    case Qt::LeftEdge:
        return {room.left(), y};
    case Qt::RightEdge:
        return {room.right() + 1 - size.width(), y};
    }
    return {x, y};
}

// A scroll bar takes of the room itself, so that one can make the other necessary.
PopoverPlace sizeWithin(QSize room, const PopoverDimensions &dimensions)
{
    const bool isTooWide = dimensions.width > room.width();
    const auto contentHeight = dimensions.contentHeight + (isTooWide ? dimensions.scrollBar : 0);
    const bool scrolls = contentHeight > room.height();
    const auto width = dimensions.width + (scrolls ? dimensions.scrollBar : 0);
    const QSize whole(width, std::max(contentHeight, dimensions.leastHeight));
    return {{QPoint(), whole.boundedTo(room)}, scrolls, width > room.width()};
}

Qt::Edge nearerEdge(const QRect &place, const QRect &screen, Qt::Edge one, Qt::Edge other)
{
    return depth(screen, place, one) < depth(screen, place, other) ? one : other;
}

QMargins distances(const QRect &place, const QRect &screen)
{
    return {depth(screen, place, Qt::LeftEdge), depth(screen, place, Qt::TopEdge), depth(screen, place, Qt::RightEdge),
            depth(screen, place, Qt::BottomEdge)};
}

}  // namespace

std::optional<QPoint> clickedPoint(QPoint said, QPoint pointer, const QList<ScreenArea> &screens)
{
    if (isOnScreen(pointer, screens))
        return pointer;
    return isOnScreen(said, screens) ? std::optional(said) : std::nullopt;
}

QPoint steadyClick(std::optional<QPoint> last, QPoint click, int item)
{
    return last && itemAround(*last, item).contains(click) ? *last : click;
}

QPoint likelyItem(const ScreenArea &screen, Qt::LayoutDirection direction)
{
    const auto side = *std::ranges::max_element(sides, {}, [&](Qt::Edge one) { return panelThickness(screen, one); });
    const auto &whole = screen.whole;
    if (isUpright(side))
        return side == Qt::LeftEdge ? whole.bottomLeft() : whole.bottomRight();
    const auto x = direction == Qt::RightToLeft ? whole.left() : whole.right();
    return {x, side == Qt::TopEdge ? whole.top() : whole.bottom()};
}

Qt::Edge panelSide(QPoint click, const ScreenArea &screen)
{
    for (const auto side : sides) {
        if (distanceToEdge(click, screen.whole, side) < panelThickness(screen, side))
            return side;
    }
    for (const auto side : sides) {
        if (distanceToEdge(click, screen.whole, side) < thickestPanel)
            return side;
    }
    return click.y() <= screen.whole.center().y() ? Qt::TopEdge : Qt::BottomEdge;
}

PopoverPlace placePopover(QPoint click, const QList<ScreenArea> &screens, const PopoverDimensions &dimensions)
{
    if (screens.isEmpty())
        return {{click, QSize(dimensions.width, std::max(dimensions.contentHeight, dimensions.leastHeight))}};
    const auto &screen = nearestScreen(click, screens);
    const auto side = panelSide(click, screen);
    const auto room = roomBeside(click, side, screen, dimensions);
    auto place = sizeWithin(room.size(), dimensions);
    place.rectangle.moveTo(corner(click, place.rectangle.size(), side, room));
    return place;
}

QPoint awayFromPanel(QPoint click, const QList<ScreenArea> &screens)
{
    if (screens.isEmpty())
        return {};
    const auto side = panelSide(click, nearestScreen(click, screens));
    if (isUpright(side))
        return {side == Qt::LeftEdge ? 1 : -1, 0};
    return {0, side == Qt::TopEdge ? 1 : -1};
}

WindowAnchor anchorPopover(QPoint click, const QRect &place, const QList<ScreenArea> &screens, int gap)
{
    if (screens.isEmpty())
        return {};
    const auto &screen = nearestScreen(click, screens);
    const auto side = panelSide(click, screen);
    const auto margins = distances(place, screen.whole);
    if (isUpright(side)) {
        const auto across = nearerEdge(place, screen.whole, Qt::TopEdge, Qt::BottomEdge);
        return {Qt::Edges(side) | across, {gap, margins.top(), gap, margins.bottom()}};
    }
    const auto across = nearerEdge(place, screen.whole, Qt::LeftEdge, Qt::RightEdge);
    return {Qt::Edges(side) | across, {margins.left(), gap, margins.right(), gap}};
}

}  // namespace velquarin
