// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/EmptyPanel.h"

#include "Views/Controls/Style.h"
#include "Views/Controls/SymbolView.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/TabParts.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace velquarin {

namespace {

constexpr double symbolTextSize = 34;
constexpr double titleSize = 17;

}  // namespace

EmptyPanel::EmptyPanel(const Words &words, QWidget *parent)
    : QWidget(parent)
    , m_button(makeButton(words.action, {}, this))
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(style::points(style::defaultSpacing));
    column->addStretch();
    const TextLook titleLook{titleSize, QFont::Bold, style::Ink::Primary};
    column->addWidget(new SymbolView(words.symbol, symbolTextSize, style::Ink::Secondary, this), 0, Qt::AlignHCenter);
    column->addWidget(makeText(titleLook, words.title, this), 0, Qt::AlignHCenter);
    column->addWidget(makeText(textLook(style::TypeStyle::Subheadline, style::Ink::Secondary), words.description, this),
                      0, Qt::AlignHCenter);
    column->addSpacing(style::points(style::defaultSpacing) / 2);
    column->addWidget(m_button, 0, Qt::AlignHCenter);
    column->addStretch();
}

}  // namespace velquarin
