// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/WeekSection.h"

#include "Views/Controls/Style.h"
#include "Views/Dashboard/DayStrip.h"
#include "Views/Dashboard/SectionButton.h"

#include <QVBoxLayout>

namespace velquarin {

using style::points;

WeekSection::WeekSection(QWidget *parent)
    : QWidget(parent)
    , m_showYear(new SectionButton(SectionButton::Direction::Forward, tr("Last 7 Days"), tr("Show Year"), this))
    , m_strip(new DayStrip(this))
{
    setObjectName(QStringLiteral("week"));
    m_showYear->setObjectName(QStringLiteral("showYear"));
    setFocusProxy(m_showYear);
    connect(m_showYear, &QAbstractButton::clicked, this, &WeekSection::yearRequested);

    const auto padding = points(style::defaultPadding);
    const auto above = SectionButton::verticalPadding();
    auto *const strip = new QVBoxLayout;
    const auto besides = padding - DayStrip::overhang();
    strip->setContentsMargins(besides, points(style::defaultSpacing) - above, besides, 0);
    strip->addWidget(m_strip);

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, padding - above, 0, padding);
    column->setSpacing(0);
    column->addLayout(withoutOutset(m_showYear));
    column->addLayout(strip);
}

void WeekSection::setDays(const QList<CommitDay> &days, const DateTexts &texts, const Calendar &calendar, Instant now)
{
    m_strip->setDays(days, texts, calendar, now);
}

}  // namespace velquarin
