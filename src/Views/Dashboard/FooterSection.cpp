// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/FooterSection.h"

#include "Views/Controls/PlainButton.h"
#include "Views/Controls/Text.h"

#include <QHBoxLayout>

namespace velquarin {

using style::points;

FooterSection::FooterSection(QWidget *parent)
    : QWidget(parent)
    , m_updated(new Text(textLook(style::TypeStyle::Caption2, style::Ink::Tertiary), this))
    , m_refresh(new IconButton(QStringLiteral("arrow.clockwise"), tr("Refresh"), this))
    , m_settings(new IconButton(QStringLiteral("gear"), tr("Settings"), this))
{
    setObjectName(QStringLiteral("footer"));
    m_updated->setObjectName(QStringLiteral("updated"));
    m_updated->allowCutting();
    m_refresh->setObjectName(QStringLiteral("refresh"));
    m_settings->setObjectName(QStringLiteral("settings"));
    connect(m_refresh, &QAbstractButton::clicked, this, &FooterSection::refreshRequested);
    connect(m_settings, &QAbstractButton::clicked, this, &FooterSection::settingsRequested);

    auto *const row = new QHBoxLayout(this);
    const auto padding = points(style::defaultPadding);
    row->setContentsMargins(padding, points(8), padding, points(8));
    row->setSpacing(points(style::defaultSpacing));
    row->addWidget(m_updated);
    row->addStretch();
    row->addItem(new OutsetItem(m_refresh, PlainButton::outset()));
    row->addItem(new OutsetItem(m_settings, PlainButton::outset()));
}

void FooterSection::setElapsed(const QString &elapsed)
{
    m_updated->setText(elapsed.isEmpty() ? QString() : tr("Updated %1 ago").arg(elapsed));
    m_updated->setVisible(!elapsed.isEmpty());
}

void FooterSection::setRefreshing(bool isRefreshing)
{
    m_refresh->setTurning(isRefreshing);
    if (m_refresh->isEnabled() != isRefreshing)
        return;
    // A disabled button would hand the keyboard's focus on to the gear, which the next Space would press.
    if (isRefreshing) {
        m_isFocusOwed = m_refresh->hasFocus();
        m_refresh->clearFocus();
    }
    m_refresh->setEnabled(!isRefreshing);
    if (!isRefreshing && m_isFocusOwed && window()->focusWidget() == nullptr)
        m_refresh->setFocus(Qt::OtherFocusReason);
}

}  // namespace velquarin
