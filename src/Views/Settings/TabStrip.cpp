// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/TabStrip.h"

#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"

#include <QKeySequence>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace velquarin {

namespace {

constexpr double symbolTextSize = 15;
constexpr double gapBelowSymbol = 2;
constexpr double padding = 5;
constexpr double leastWidth = 88;

QFont lettering()
{
    return style::font(style::TypeStyle::Subheadline);
}

}  // namespace

TabStrip::TabStrip(QWidget *parent)
    : QTabBar(parent)
{
    setAccessibleRole(*this, QAccessible::PageTabList);
    setExpanding(false);
    setUsesScrollButtons(false);
    setAttribute(Qt::WA_Hover);
}

void TabStrip::addTab(const QString &title, const QString &symbol)
{
    m_symbols.append(symbol);
    QTabBar::addTab(title);
}

PaintedChild TabStrip::paintedChild(int index)
{
    QAccessible::State state;
    state.selectable = true;
    state.selected = index == currentIndex();
    state.focusable = true;
    const auto title = tabText(index);
    return {.role = QAccessible::PageTab,
            .name = QString(title).remove(u'&'),
            .place = tabRect(index),
            .state = state,
            .shortcut = QKeySequence::mnemonic(title).toString(QKeySequence::NativeText),
            .press = [this, index] { setCurrentIndex(index); }};
}

std::optional<int> TabStrip::paintedChildAt(QPoint position) const
{
    const auto tab = tabAt(position);
    return tab >= 0 ? std::optional(tab) : std::nullopt;
}

QSize TabStrip::tabSizeHint(int index) const
{
    const QFontMetrics metrics(lettering());
    const auto symbol = style::symbolSize(m_symbols.value(index), symbolTextSize);
    const auto title = metrics.size(Qt::TextShowMnemonic, tabText(index));
    const auto width = std::max(title.width(), symbol.width()) + 4 * style::points(padding);
    const auto height = symbol.height() + style::points(gapBelowSymbol) + title.height() + 2 * style::points(padding);
    return {std::max(width, style::points(leastWidth)), height};
}

QSize TabStrip::minimumTabSizeHint(int index) const
{
    return tabSizeHint(index);
}

void TabStrip::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    for (int index = 0; index < count(); ++index) {
        paintGround(painter, index);
        paintLabel(painter, index);
    }
}

void TabStrip::paintGround(QPainter &painter, int index) const
{
    const auto place = QRectF(tabRect(index)).adjusted(1, 1, -1, -1);
    const bool isSelected = index == currentIndex();
    const bool isUnderPointer = underMouse() && tabRect(index).contains(mapFromGlobal(QCursor::pos()));
    if (isSelected || isUnderPointer) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isSelected ? style::selectedGround(palette()) : style::hoveredGround(palette()));
        painter.drawRoundedRect(place, style::points(6), style::points(6));
    }
    if (isSelected && hasFocus())
        style::paintFocusRing(painter, place, palette());
}

void TabStrip::paintLabel(QPainter &painter, int index) const
{
    const bool isSelected = index == currentIndex();
    const auto color = style::ink(palette(), isSelected ? style::Ink::Primary : style::Ink::Secondary);
    auto place = tabRect(index).adjusted(0, style::points(padding), 0, -style::points(padding));
    const auto symbol = style::symbolSize(m_symbols.value(index), symbolTextSize);
    const QRect symbolPlace(place.x() + (place.width() - symbol.width()) / 2, place.y(), symbol.width(),
                            symbol.height());
    const auto accent = style::desktopAccentOn(style::selectedGround(palette()), palette());
    style::paintSymbol(painter, m_symbols.value(index), symbolPlace, isSelected ? accent : color);

    place.setTop(symbolPlace.bottom() + 1 + style::points(gapBelowSymbol));
    painter.setFont(lettering());
    painter.setPen(color);
    painter.drawText(place, int(Qt::AlignHCenter | Qt::AlignTop) | style::mnemonicFlag(*this), tabText(index));
}

}  // namespace velquarin
