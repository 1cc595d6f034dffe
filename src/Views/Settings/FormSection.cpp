// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/FormSection.h"

#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Text.h"
#include "Views/Controls/TintedGround.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace velquarin {

namespace {

constexpr double rowHeight = 30;
constexpr double rowPadding = 10;
constexpr double gapBelowTitle = 4;

}  // namespace

FormSection::FormSection(const QString &title, QWidget *parent)
    : QWidget(parent)
    , m_title(makeText(textLook(style::TypeStyle::Subheadline, style::Ink::Secondary, QFont::DemiBold), title, this))
    , m_group(new TintedGround(this))
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(style::points(gapBelowTitle));
    column->addWidget(m_title);
    column->addWidget(m_group);
}

QBoxLayout *FormSection::makeRow(int outset)
{
    const auto padding = style::points(rowPadding) - outset;
    auto *const row = new QHBoxLayout(m_group);
    row->setContentsMargins(padding, 0, padding, 0);
    row->setSpacing(style::points(style::defaultSpacing));
    row->addStrut(style::points(rowHeight));
    return row;
}

void FormSection::setRow(Switch *control)
{
    makeRow(Switch::outset())->addWidget(control);
}

void FormSection::setRow(QWidget *leading, QWidget *trailing)
{
    auto *const row = makeRow();
    row->addWidget(leading);
    row->addStretch();
    row->addWidget(trailing);
}

}  // namespace velquarin
