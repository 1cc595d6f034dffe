// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/TabParts.h"

#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace velquarin {

QPushButton *makeButton(const QString &title, const QString &symbol, QWidget *parent)
{
    constexpr double sizeOfSymbol = 16;
    auto *const button = new QPushButton(title, parent);
    if (!symbol.isEmpty())
        button->setIcon(style::symbolIcon(symbol));
    button->setIconSize(QSize(1, 1) * style::points(sizeOfSymbol));
    // Enter presses it as well as Space.
    button->setAutoDefault(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QBoxLayout *addRowTo(QWidget &tab)
{
    auto *const row = new QHBoxLayout;
    row->setSpacing(style::points(style::defaultSpacing));
    static_cast<QBoxLayout *>(tab.layout())->addLayout(row);
    return row;
}

Text *makeMessage(QWidget *parent)
{
    auto *const line = new Text(textLook(style::TypeStyle::Caption, style::Accent::Red), parent);
    line->allowCutting();
    line->hide();
    return line;
}

void showLine(Text &line, const QString &text)
{
    line.setText(text);
    line.setVisible(!text.isEmpty());
}

}  // namespace velquarin
