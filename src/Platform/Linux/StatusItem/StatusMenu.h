// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <QPoint>
#include <QRect>

class QMenu;

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

}  // namespace velquarin
