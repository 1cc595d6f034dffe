// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <QImage>
#include <QMenu>
#include <QPoint>
#include <QRect>

namespace velquarin {

//! The menu for hosts that answer every click with it: an entry that stands for the left click, a separator,
//! then the entries.
[[nodiscard]] QList<MenuEntry> withOpenEntry(const QList<MenuEntry> &entries, std::function<void()> open);

//! Replaces what @p menu holds. Key equivalents are shown as Control and the letter.
void fillMenu(QMenu &menu, const QList<MenuEntry> &entries);

//! Where a window that answers a click should open.
//! Shape:  @p said is where the host says the click was, @p cursor where the pointer is. Some hosts count from
//!         the item's own corner: a point on no screen, or close to the origin of all screens, is not believed
//!         as long as the pointer is on a screen.
//! Source: docs/decisions/0004-status-item.md
[[nodiscard]] QPoint believablePosition(QPoint said, QPoint cursor, const QList<QRect> &screens);

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
