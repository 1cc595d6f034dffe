// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QPainter;

//! Our own drawings, in one colour but for the program's icon. Each is drawn on a grid 24 units high, with the same weight of line.
//! Names are those of resources/symbols.
namespace velquarin::style {

//! The room that the symbol @p name takes beside text of so many points: as high as 1.4 times the text, and as wide as
//! it is drawn. Units: logical pixels, whole.
[[nodiscard]] QSize symbolSize(const QString &name, double size);

//! Paints the symbol @p name into @p rect, as large as it fits, in the middle, sharp at every scale.
void paintSymbol(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color);

//! The symbol @p name for a button of the toolkit: painted anew each time, in the colour of the buttons' text.
[[nodiscard]] QIcon symbolIcon(const QString &name);

//! The program's own icon, in its colours. Made without the toolkit's plugin for such drawings, which need not be there.
[[nodiscard]] QIcon programIcon();

}  // namespace velquarin::style
