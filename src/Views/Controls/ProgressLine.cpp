// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/ProgressLine.h"

#include "Views/Controls/Spinner.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Text.h"

#include <QHBoxLayout>

namespace velquarin {

ProgressLine::ProgressLine(double spacing, QWidget *parent)
    : QWidget(parent)
    , m_text(new Text(textLook(style::TypeStyle::Caption, style::Ink::Secondary), this))
{
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(style::points(spacing));
    row->addWidget(new Spinner(this));
    row->addWidget(m_text);
}

void ProgressLine::setText(const QString &text)
{
    m_text->setText(text);
}

}  // namespace velquarin
