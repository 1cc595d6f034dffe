// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RecordRow.h"

#include "Views/Controls/IconButton.h"
#include "Views/Controls/Style.h"
#include "Views/Settings/RecordTexts.h"

#include <QCheckBox>
#include <QHBoxLayout>

#include <utility>

namespace velquarin {

namespace {

constexpr double verticalPadding = 4;
constexpr double horizontalPadding = 10;
constexpr double symbolTextSize = 12;

}  // namespace

RecordRow::RecordRow(QWidget *parent)
    : ListRow(parent)
    , m_isEnabled(new QCheckBox(this))
    , m_texts(new RecordTexts(this))
    , m_row(new QHBoxLayout(this))
{
    const auto horizontal = style::points(horizontalPadding) - PlainButton::outset();
    const auto vertical = style::points(verticalPadding);
    m_row->setContentsMargins(horizontal, vertical, horizontal, vertical + 1);
    m_row->setSpacing(style::points(style::defaultSpacing));
    m_row->addSpacing(PlainButton::outset());
    m_row->addWidget(m_isEnabled);
    m_row->addWidget(m_texts);
    addControl(m_isEnabled);
    forwardEnabling();
}

// The box also moves when it only shows what is stored; that is nobody's request. What was requested counts as stored
// from then on: another movement may come before the list is rendered.
void RecordRow::forwardEnabling()
{
    connect(m_isEnabled, &QCheckBox::toggled, this, [this](bool isEnabled) {
        if (std::exchange(m_isStoredEnabled, isEnabled) != isEnabled)
            Q_EMIT enablingRequested(id(), isEnabled);
    });
}

void RecordRow::showRecord(QUuid id, const QString &name, const QString &path, bool isEnabled)
{
    setId(id);
    m_isStoredEnabled = isEnabled;
    m_isEnabled->setChecked(isEnabled);
    m_isEnabled->setAccessibleName(name);
    m_isEnabled->setAccessibleDescription(path);
    m_remove->setAccessibleDescription(name);
    m_texts->setRecord(name, path);
}

void RecordRow::addPicker(QWidget *label, QWidget *picker)
{
    m_row->addWidget(label);
    m_row->addWidget(picker);
    addControl(picker);
}

void RecordRow::addBin()
{
    m_remove = new IconButton(QStringLiteral("trash"), tr("Remove"), this);
    m_remove->setLook(symbolTextSize, style::Accent::Red);
    m_remove->setToolTip(tr("Remove"));
    m_row->addWidget(m_remove);
    addControl(m_remove);
    connect(m_remove, &IconButton::clicked, this, [this] { Q_EMIT removalRequested(id()); });
}

}  // namespace velquarin
