// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/SectionButton.h"

#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"

#include <QHBoxLayout>

namespace velquarin {

using style::TypeStyle;

SectionButton::SectionButton(Direction direction, const QString &title, const QString &action, QWidget *parent)
    : PlainButton(parent)
{
    setAccessibleName(action);
    // Who goes from control to control comes past the heading.
    setAccessibleDescription(title);
    auto *const row = makeRow(verticalPadding());
    // The chevron goes down with the link, which stands on the baseline of the heading.
    if (direction == Direction::Forward) {
        row->addWidget(makeHeading(title));
        row->addStretch();
        row->addWidget(makeLink(action));
        row->addWidget(makeChevron(direction), 0, Qt::AlignBottom);
    } else {
        row->addWidget(makeChevron(direction), 0, Qt::AlignBottom);
        row->addWidget(makeLink(action));
        row->addStretch();
        row->addWidget(makeHeading(title));
    }
}

QWidget *SectionButton::makeHeading(const QString &title)
{
    return makeText(textLook(TypeStyle::Headline, style::Ink::Secondary), title, this);
}

QWidget *SectionButton::makeLink(const QString &action)
{
    auto *const link = makeText(textLook(TypeStyle::Caption, style::Accent::Blue), action, this);
    link->setLine(lineOf(textLook(TypeStyle::Headline, style::Ink::Secondary)));
    return link;
}

int SectionButton::verticalPadding()
{
    return style::points(3);
}

QWidget *SectionButton::makeChevron(Direction direction)
{
    const bool pointsRight = (direction == Direction::Forward) == (layoutDirection() == Qt::LeftToRight);
    const auto symbol = pointsRight ? QStringLiteral("chevron.right") : QStringLiteral("chevron.left");
    return new SymbolView(symbol, style::sizeOf(TypeStyle::Caption), style::Accent::Blue, this);
}

}  // namespace velquarin
