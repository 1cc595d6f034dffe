// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RecordTexts.h"

#include "Views/Controls/Style.h"
#include "Views/Controls/Text.h"

#include <QHBoxLayout>
#include <QTextDocument>
#include <QVBoxLayout>

namespace velquarin {

namespace {

constexpr double gapBehindName = 4;

}  // namespace

RecordTexts::RecordTexts(QWidget *parent)
    : QWidget(parent)
    , m_firstLine(new QHBoxLayout)
    , m_name(new Text(textLook(style::TypeStyle::Body, style::Ink::Primary, QFont::Medium), this))
    , m_path(new Text(textLook(style::TypeStyle::Caption, style::Ink::Secondary), this))
{
    m_name->allowCutting();
    m_path->allowCutting(Qt::ElideMiddle);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(style::points(style::defaultSpacing));
    m_firstLine->setSpacing(style::points(gapBehindName));
    m_firstLine->addWidget(m_name);
    m_firstLine->addStretch();
    column->addLayout(m_firstLine);
    column->addWidget(m_path);
}

// A tip that looks like markup is shown as markup, and a folder may be called anything.
void RecordTexts::setRecord(const QString &name, const QString &path)
{
    m_name->setText(name);
    m_path->setText(path);
    setToolTip(Qt::mightBeRichText(path) ? Qt::convertFromPlainText(path) : path);
}

void RecordTexts::addBadge(QWidget *badge)
{
    m_firstLine->insertWidget(1, badge);
}

}  // namespace velquarin
