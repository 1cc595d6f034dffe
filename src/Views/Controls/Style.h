// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRectF>

#include <variant>

class QPainter;
class QWidget;

//! How everything that we draw looks: a guest of the user's desktop, with its font, its palette and its scale. Nothing
//! is kept: whoever paints asks anew, and so follows every change. Source: docs/decisions/0007-look.md
namespace velquarin::style {

//! Units: points, which are logical pixels where the desktop's font is 13 pixels high.
constexpr double defaultPadding = 16;
constexpr double defaultSpacing = 8;

//! The size of the desktop's font in relation to the 13 pixels that all sizes are named for.
[[nodiscard]] double scale();

//! A size named in points, in whole logical pixels; at least one for any size above nothing.
[[nodiscard]] int points(double size);

enum class TypeStyle { Headline, Subheadline, Body, Caption, Caption2 };

//! Units: points.
[[nodiscard]] double sizeOf(TypeStyle style);

//! The desktop's font at the size of @p style. A headline is bold, whatever the weight.
[[nodiscard]] QFont font(TypeStyle style, QFont::Weight weight = QFont::Normal);

//! The desktop's font at a size of its own. Units: points.
[[nodiscard]] QFont systemFont(double size, QFont::Weight weight = QFont::Normal);

//! Which way @p text is read, whatever the window's direction: a painter that is not told takes the window's, and puts
//! the words in another order.
[[nodiscard]] Qt::LayoutDirection readingDirection(const QString &text);

//! Colours of text and of the symbols beside it: derived from the palette.
enum class Ink { Primary, Secondary, Tertiary };

//! The few colours of our own. The green of the year's squares is farther from their ground than the other, where their
//! bands could not be told apart otherwise.
enum class Accent { Orange, Green, HeatGreen, Blue, Red, Grey };

//! A colour to write with.
using Tone = std::variant<Ink, Accent>;

//! Whether light text stands on a dark ground.
[[nodiscard]] bool isDark(const QPalette &palette);

//! How well the two can be told apart, from 1 to 21. Source: Web Content Accessibility Guidelines 2.1, "contrast ratio"
[[nodiscard]] double contrast(const QColor &left, const QColor &right);

//! Colours to write with. At least 4.5:1 against the window colour of any palette, and against the grounds of groups and of
//! what the pointer is on, as far as the palette's own text is.
[[nodiscard]] QColor ink(const QPalette &palette, Ink ink);
[[nodiscard]] QColor accentText(const QPalette &palette, Accent accent);
//! The same against @p paper in place of the window colour.
[[nodiscard]] QColor accentTextOn(const QColor &paper, const QPalette &palette, Accent accent);
//! To fill a small shape on @p paper with: at least 3:1.
[[nodiscard]] QColor accentOn(const QColor &paper, const QPalette &palette, Accent accent);
//! The desktop's accent as a symbol on @p paper: at least 3:1.
[[nodiscard]] QColor desktopAccentOn(const QColor &paper, const QPalette &palette);
//! @p color for a symbol in a group that should not draw the eyes: 70 % of it, and at least 3:1.
[[nodiscard]] QColor faded(const QColor &color, const QPalette &palette);
[[nodiscard]] QColor textColor(const QPalette &palette, const Tone &tone);

//! Colours to fill with: livelier than what can be read as text.
[[nodiscard]] QColor accent(const QPalette &palette, Accent accent);

//! The desktop's own colour for what is chosen or on, at 3:1 against all our grounds.
[[nodiscard]] QColor desktopAccent(const QPalette &palette);

//! That accent, as dark as white on it needs for a contrast of @p least.
[[nodiscard]] QColor accentFill(const QPalette &palette, double least);

//! The edge of what shows by its edge alone, at 3:1 against all our grounds.
[[nodiscard]] QColor controlEdge(const QPalette &palette);

//! What scrolls: the text's colour, @p share of it, and no less than 3:1 against all our grounds.
[[nodiscard]] QColor scrollPill(const QPalette &palette, double share);

//! Whether the desktop's text stands out as far as high contrast themes have it. Qt's own palette
//! (18.3:1) and what newer versions take from GTK (20.0:1) are black on light grey and are not meant so.
[[nodiscard]] bool isHighContrast(const QPalette &palette);

//! @p from with so much of @p to in it, 0 to 1.
[[nodiscard]] QColor mix(const QColor &from, const QColor &to, double share);

//! What everything stands on: the colour of the window, active or not, since one that loses the focus changes nothing that
//! is shown.
[[nodiscard]] QColor ground(const QPalette &palette);

//! What separates sections: just visible, and plainly so in high contrast.
[[nodiscard]] QColor divider(const QPalette &palette);

//! Grounds that lie on the window's own: of what belongs together, of what the pointer is on, of what is chosen.
[[nodiscard]] QColor groupGround(const QPalette &palette);
[[nodiscard]] QColor hoveredGround(const QPalette &palette);
[[nodiscard]] QColor selectedGround(const QPalette &palette);

//! The ground of a badge: the accent's colour, a fifth of it, on a ground that the pointer is on.
[[nodiscard]] QColor badgeGround(const QPalette &palette, Accent color);

//! The ground that a white knob moves on, in the desktop's accent where it is on: both can be told from what is around them at 3:1.
[[nodiscard]] QColor switchTrack(const QPalette &palette, bool isOn);

//! How long a movement of @p longest milliseconds takes here: no time where nobody would see it and where the desktop's
//! style wants no animations.
[[nodiscard]] int animationTime(const QWidget &widget, int longest);

//! How to draw a text that may hold a mnemonic: underlined where the desktop shows mnemonics, and never its ampersand.
[[nodiscard]] int mnemonicFlag(const QWidget &widget);

//! A block of colour with round corners: a square of a day, the ground of a group. In high contrast it has an outline, so
//! that nobody needs to see how pale it is.
void paintBlock(QPainter &painter, const QRectF &rect, double radius, const QColor &color, const QPalette &palette);

//! The ground of something pressable that the pointer is on, or presses, over what it lies on.
void paintPressable(QPainter &painter, const QRectF &rect, const QPalette &palette, bool isPressed);

//! The ring around what has the keyboard's focus, just inside @p rect.
void paintFocusRing(QPainter &painter, const QRectF &rect, const QPalette &palette);
void paintFocusRing(QPainter &painter, const QRectF &rect, const QColor &color);

//! @p rect moved and sized to whole pixels of what @p painter paints on, so that its edges are sharp at every scale.
[[nodiscard]] QRectF onWholePixels(const QPainter &painter, const QRectF &rect);

}  // namespace velquarin::style
