// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/StatRow.h"

#include "Views/Controls/Text.h"

#include <QHBoxLayout>

namespace velquarin {

StatRow::StatRow(const QString &label, const QString &value, const style::Tone &tone, QWidget *parent)
    : QWidget(parent)
    , m_label(makeText(textLook(style::TypeStyle::Caption, style::Ink::Secondary), label, this))
    , m_value(makeText(textLook(style::TypeStyle::Caption, tone, QFont::Medium), value, this))
{
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(style::points(style::defaultSpacing));
    row->addWidget(m_label);
    row->addStretch();
    row->addWidget(m_value);
}

QString StatRow::value() const
{
    return m_value->text();
}

void StatRow::setValue(const QString &value, const style::Tone &tone)
{
    m_value->setText(value);
    m_value->setTone(tone);
}

}  // namespace velquarin
