// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

class QScrollArea;
class QWidget;

namespace velquarin {

//! Makes screen readers find @p widget in that role, under its accessible name, with its child widgets as children, or
//! with what it paints where it is a PaintedChildren. To be called in the widget's constructor: Qt keeps what it made
//! for a screen reader that asked before.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);

//! Keeps screen readers from ending the program. Qt looks for a scroll area's children in a list that is shorter while a
//! scroll bar is hidden, and does not compare the number asked for with its length: who counted before and asks
//! afterwards makes it read beyond the end. From now on @p area has all its parts as children, hidden ones as well, and
//! answers with nothing for any other number.
void readScrollAreaWhole(QScrollArea &area);

//! Lets screen readers find the dashboard among the program's windows. Qt leaves out popups, which for menus is right;
//! the dashboard is one on X11, and a window to its user.
//! To be called before the application object is made: Qt keeps what it made for a screen reader that asked before.
void installAccessibleApplication();

}  // namespace velquarin
