// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace velquarin {

//! Where the squares and the names of the months of a year's grid lie.
//!
//! Units: device pixels, counted from the upper left corner of the picture; every square begins and
//! ends on a whole one, so that no edge is blurred at any scale. Shape: a value, cheap to make anew.
class HeatmapGeometry
{
public:
    //! What the picture consists of, and how it is read.
    struct Contents
    {
        int weeks = 0;
        int labels = 0;
        Qt::LayoutDirection direction = Qt::LeftToRight;  //!< from the other side the oldest week is at the right
        friend bool operator==(const Contents &, const Contents &) = default;
    };

    //! @p pixelsPerPoint is how many device pixels a length of 1 has; larger than 0.
    HeatmapGeometry(Contents contents, double pixelsPerPoint);

    [[nodiscard]] QSize size() const;

    //! The square at @p index, counted down the first week, then down the next.
    [[nodiscard]] QRect cell(int index) const;

    //! The frame of the label at @p position. The frames follow one another, each as wide as four weeks, wherever the
    //! month begins in the grid.
    [[nodiscard]] QRect label(int position) const;

    //! The index of the square at @p point; nothing between the squares and beyond them.
    [[nodiscard]] std::optional<int> cellAt(QPoint point) const;

    //! How far the corners of a square are rounded off.
    [[nodiscard]] double cornerRadius() const { return m_cornerRadius; }

    friend bool operator==(const HeatmapGeometry &, const HeatmapGeometry &) = default;

private:
    [[nodiscard]] int pitch() const { return m_cell + m_spacing; }
    [[nodiscard]] int gridTop() const { return m_header + m_gap; }
    [[nodiscard]] QRect mirrored(QRect rectangle) const;

    Contents m_contents;
    int m_cell;
    int m_spacing;
    int m_header;
    int m_gap;
    double m_cornerRadius;
};

}  // namespace velquarin
