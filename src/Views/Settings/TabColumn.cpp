// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/TabColumn.h"

#include "Views/Controls/Style.h"

#include <algorithm>

namespace velquarin {

namespace {

constexpr double wholeGap = 16;
constexpr double leastGap = 4;

}  // namespace

TabColumn::TabColumn(QWidget *tab)
    : QVBoxLayout(tab)
{
    const auto padding = style::points(style::defaultPadding);
    setContentsMargins(padding, padding, padding, padding);
    setSpacing(style::points(wholeGap));
}

int TabColumn::gaps() const
{
    int parts = 0;
    for (int index = 0; index < count(); ++index)
        parts += itemAt(index)->isEmpty() ? 0 : 1;
    return std::max(parts - 1, 1);
}

// Another spacing has the column laid out once more, after which it is the same.
void TabColumn::setGeometry(const QRect &place)
{
    const auto forParts = minimumSize().height() - gaps() * spacing();
    const auto gap = std::clamp((place.height() - forParts) / gaps(), style::points(leastGap), style::points(wholeGap));
    if (gap != spacing())
        setSpacing(gap);
    QVBoxLayout::setGeometry(place);
}

}  // namespace velquarin
