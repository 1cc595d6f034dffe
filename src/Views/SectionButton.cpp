// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/SectionButton.h"

#include "Views/SymbolView.h"
#include "Views/Text.h"

#include <QHBoxLayout>

namespace velquarin {

using style::TypeStyle;

SectionButton::SectionButton(Direction direction, const QString &title, const QString &action, QWidget *parent)
    : PlainButton(parent)
{
    setAccessibleName(action);
    auto *const heading = new Text(textLook(TypeStyle::Headline, style::Ink::Secondary), this);
    heading->setText(title);
    auto *const link = new Text(textLook(TypeStyle::Caption, style::Accent::Blue), this);
    link->setText(action);
    auto *const arrow =
        new SymbolView(chevron(direction), style::sizeOf(TypeStyle::Caption), style::Accent::Blue, this);

    auto *const row = makeRow(verticalPadding());
    const bool isForward = direction == Direction::Forward;
    row->setSpacing(style::points(4));
    row->addWidget(isForward ? static_cast<QWidget *>(heading) : arrow);
    if (isForward)
        row->addStretch();
    row->addWidget(link);
    if (!isForward)
        row->addStretch();
    row->addWidget(isForward ? static_cast<QWidget *>(arrow) : heading);
}

int SectionButton::verticalPadding()
{
    return style::points(3);
}

QString SectionButton::chevron(Direction direction) const
{
    const bool pointsRight = (direction == Direction::Forward) == (layoutDirection() == Qt::LeftToRight);
    return pointsRight ? QStringLiteral("chevron.right") : QStringLiteral("chevron.left");
}

}  // namespace velquarin
