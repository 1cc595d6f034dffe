// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WindowSystem.h"

#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

namespace velquarin {

//! One screen. Units: logical pixels, one plane for all screens.
struct ScreenArea
{
    QRect whole;
    QRect available;  //!< without the panels that reserve their place; not every panel does
};

//! How large the popover is where there is room, and what is kept free around it. Units: logical pixels.
struct PopoverDimensions
{
    int width = 0;
    int contentHeight = 0;
    int leastHeight = 0;  //!< what it has even with less content
    int item = 0;         //!< how far an item of the status bar reaches around a click on it, in all
    int gap = 0;          //!< kept free beside the item and along the edges of the screen
    int scrollBar = 0;    //!< what it is wider by where its content has to be scrolled, and higher by where sideways
};

struct PopoverPlace
{
    QRect rectangle;
    bool scrolls = false;          //!< the content is taller than the rectangle
    bool scrollsSideways = false;  //!< the content is wider than the rectangle
    friend bool operator==(const PopoverPlace &, const PopoverPlace &) = default;
};

//! Where the item was clicked: where the pointer is, if it is on a screen, since some hosts count from the item's own
//! corner or in other pixels; else where the host says, if that is on a screen; else nothing.
[[nodiscard]] std::optional<QPoint> clickedPoint(QPoint said, QPoint pointer, const QList<ScreenArea> &screens);

//! The click to place the popover by: the one of last time where the new one lies on the same item, so that it opens
//! where it was.
[[nodiscard]] QPoint steadyClick(std::optional<QPoint> last, QPoint click, int item);

//! A place for what was not asked for by a click: the end of the panel, where status items are. The upper right corner
//! where no panel is seen.
[[nodiscard]] QPoint likelyItem(const ScreenArea &screen, Qt::LayoutDirection direction);

//! The edge of the screen that the item's panel is on: that of the reserved strip that the click lies in; else the one
//! close by, an upper or lower one first; else the nearer of these two.
[[nodiscard]] Qt::Edge panelSide(QPoint click, const ScreenArea &screen);

//! The place of the popover: beside the panel, its middle at the click as far as the screen has room, the item left
//! free, wholly within the available area; taller than @p dimensions says at least with more content, as far as there is
//! room, and narrower only where there is none.
//! Errors: none; without any screen it lies at the click at its full size.
[[nodiscard]] PopoverPlace placePopover(QPoint click, const QList<ScreenArea> &screens,
                                        const PopoverDimensions &dimensions);

//! The direction that leads away from the item's panel, one pixel long.
[[nodiscard]] QPoint awayFromPanel(QPoint click, const QList<ScreenArea> &screens);

//! The same place told by edges: that of the panel, from which only the gap is kept since the panel's own strip is taken
//! off by whoever anchors, and the nearer one across it.
//! Errors: none; without any screen it keeps to no edge.
[[nodiscard]] WindowAnchor anchorPopover(QPoint click, const QRect &place, const QList<ScreenArea> &screens, int gap);

}  // namespace velquarin
