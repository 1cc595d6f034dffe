// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/FormSection.h"

#include "Views/Divider.h"
#include "Views/Settings/Switch.h"
#include "Views/Settings/TintedGround.h"
#include "Views/Style.h"
#include "Views/Text.h"

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
    auto *const rows = new QVBoxLayout(m_group);
    rows->setContentsMargins({});
    rows->setSpacing(0);
}

QBoxLayout *FormSection::beginRow(int outset)
{
    auto *const rows = static_cast<QBoxLayout *>(m_group->layout());
    const auto padding = style::points(rowPadding);
    if (rows->count() > 0) {
        auto *const line = new QHBoxLayout;
        line->setContentsMargins(padding, 0, padding, 0);
        line->addWidget(new Divider(Qt::Horizontal, m_group));
        rows->addLayout(line);
    }
    auto *const row = new QHBoxLayout;
    row->setContentsMargins(padding - outset, 0, padding - outset, 0);
    row->setSpacing(style::points(style::defaultSpacing));
    row->addStrut(style::points(rowHeight));
    rows->addLayout(row);
    return row;
}

void FormSection::addRow(Switch *control)
{
    beginRow(Switch::outset())->addWidget(control, 1, Qt::AlignVCenter);
}

void FormSection::addRow(QWidget *leading, QWidget *trailing)
{
    auto *const row = beginRow();
    row->addWidget(leading, 0, Qt::AlignVCenter);
    row->addStretch();
    row->addWidget(trailing, 0, Qt::AlignVCenter);
}

}  // namespace velquarin
