// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/HeatmapGeometry.h"

#include <algorithm>

namespace velquarin {

namespace {

constexpr int daysOfWeek = 7;
constexpr int weeksOfLabel = 4;

constexpr double cellSize = 8;
constexpr double cellSpacing = 1;
constexpr double cornerRadiusOfCell = 2;
constexpr double headerHeight = 10;
constexpr double headerSpacing = 8;

int wholePixels(double length)
{
    return std::max(qRound(length), 1);
}

}  // namespace

HeatmapGeometry::HeatmapGeometry(Contents contents, double pixelsPerPoint)
    : m_contents(contents)
    , m_cell(wholePixels(cellSize * pixelsPerPoint))
    , m_spacing(wholePixels(cellSpacing * pixelsPerPoint))
    , m_header(wholePixels(headerHeight * pixelsPerPoint))
    , m_gap(wholePixels(headerSpacing * pixelsPerPoint))
    , m_cornerRadius(cornerRadiusOfCell * pixelsPerPoint)
{
}

QSize HeatmapGeometry::size() const
{
    const auto gridWidth = std::max(m_contents.weeks * pitch() - m_spacing, 0);
    const auto labelsWidth = m_contents.labels * weeksOfLabel * pitch();
    return {std::max(gridWidth, labelsWidth), gridTop() + daysOfWeek * pitch() - m_spacing};
}

QRect HeatmapGeometry::mirrored(QRect rectangle) const
{
    if (m_contents.direction == Qt::RightToLeft)
        rectangle.moveLeft(size().width() - rectangle.x() - rectangle.width());
    return rectangle;
}

QRect HeatmapGeometry::cell(int index) const
{
    const auto week = index / daysOfWeek;
    const auto day = index % daysOfWeek;
    return mirrored({week * pitch(), gridTop() + day * pitch(), m_cell, m_cell});
}

QRect HeatmapGeometry::label(int position) const
{
    const auto width = weeksOfLabel * pitch();
    return mirrored({position * width, 0, width, m_header});
}

std::optional<int> HeatmapGeometry::cellAt(QPoint point) const
{
    const auto x = m_contents.direction == Qt::RightToLeft ? size().width() - 1 - point.x() : point.x();
    const auto y = point.y() - gridTop();
    if (x < 0 || y < 0 || x / pitch() >= m_contents.weeks || y / pitch() >= daysOfWeek)
        return std::nullopt;
    const auto index = x / pitch() * daysOfWeek + y / pitch();
    return cell(index).contains(point) ? std::optional(index) : std::nullopt;
}

}  // namespace velquarin
