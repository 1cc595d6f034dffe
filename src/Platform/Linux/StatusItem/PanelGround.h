// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QMenu>
#include <QPoint>
#include <QRect>

namespace velquarin {

//! The part of a screen that shows what a panel is painted with. Shape: a thin strip through @p click along the edge of
//! @p screen that is nearest, where most of what is crossed lies between the panel's items.
[[nodiscard]] QRect panelStrip(QPoint click, const QRect &screen);

//! Whether most of @p picture is dark; an empty one is not.
[[nodiscard]] bool isMostlyDark(const QImage &picture);

//! Gives @p menu, which is about to open at a click on a panel, dark colours where the panel is dark and the desktop's
//! palette light: panels have colours of their own, and a menu belongs to the panel. Only X11 shows what is there; elsewhere
//! the desktop's palette holds. Source: docs/decisions/0004-status-item.md
void matchPanel(QMenu &menu, QPoint click);

}  // namespace velquarin
