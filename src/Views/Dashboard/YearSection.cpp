// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/YearSection.h"

#include "Views/Controls/Accessibility.h"
#include "Views/Controls/HouseStyle.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Text.h"
#include "Views/Dashboard/SectionButton.h"
#include "Views/Dashboard/YearHeatmapView.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <utility>

namespace velquarin {

using style::Ink;
using style::points;

namespace {

// A wheel that turns up and down moves it to and fro: there is nothing else to move.
class SidewaysScrollArea : public QScrollArea
{
public:
    using QScrollArea::QScrollArea;

protected:
    // With Shift Qt would turn by pages, of which the year has not even two.
    void wheelEvent(QWheelEvent *event) override
    {
        const auto angle = event->angleDelta();
        const QPoint sideways(qAbs(angle.x()) > qAbs(angle.y()) ? angle.x() : angle.y(), 0);
        QWheelEvent turn(event->position(), event->globalPosition(), {}, sideways, event->buttons(),
                         event->modifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier), event->phase(),
                         event->inverted());
        QCoreApplication::sendEvent(horizontalScrollBar(), &turn);
        event->setAccepted(turn.isAccepted());
    }
};

// The dashboard's own ground shows through, and Tab goes past it to what it holds.
QScrollArea *makeScrollArea(QWidget *content, QWidget *parent)
{
    auto *const area = new SidewaysScrollArea(parent);
    readScrollAreaWhole(*area);
    area->setObjectName(QStringLiteral("yearScrollArea"));
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    makePill(*area->horizontalScrollBar(), false);
    area->horizontalScrollBar()->setSingleStep(points(12));
    // Scroll bars of some desktops leave less of this height than the days need.
    area->setMinimumHeight(points(100));
    area->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    area->setWidgetResizable(true);
    area->setWidget(content);
    area->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    return area;
}

// Written from the right Qt mirrors a point within what can be seen, not within all that is scrolled: it is
// told where the point would have to be for that.
void bringIntoSight(QScrollArea &area, QPoint point, int margin)
{
    const auto outOfSight = area.widget()->width() - area.viewport()->width();
    const auto x = area.isRightToLeft() ? point.x() - outOfSight : point.x();
    area.ensureVisible(x, point.y(), margin, 0);
}

Text *makeCaption(QWidget *parent)
{
    return new Text(textLook(style::TypeStyle::Caption, Ink::Secondary), parent);
}

}  // namespace

YearTotals yearTotals(const DayCounts &yearHistory)
{
    YearTotals totals;
    for (const auto count : yearHistory) {
        totals.commits += count;
        totals.activeDays += count >= 1 ? 1 : 0;
    }
    return totals;
}

YearSection::YearSection(QWidget *parent)
    : QWidget(parent)
    , m_back(new SectionButton(SectionButton::Direction::Back, tr("Last 365 Days"), tr("Back"), this))
    , m_heatmap(new YearHeatmapView)
    , m_scrollArea(makeScrollArea(m_heatmap, this))
    , m_commits(makeCaption(this))
    , m_bullet(makeText(textLook(style::TypeStyle::Caption, Ink::Tertiary), tr("•"), this))
    , m_activeDays(makeCaption(this))
{
    setObjectName(QStringLiteral("year"));
    m_back->setObjectName(QStringLiteral("back"));
    setFocusProxy(m_back);
    connect(m_back, &QAbstractButton::clicked, this, &YearSection::weekRequested);
    m_scrollArea->horizontalScrollBar()->setAccessibleName(m_heatmap->accessibleName());
    connect(m_heatmap, &YearHeatmapView::currentCellMoved, this, [this](const QRect &cell) {
        bringIntoSight(*m_scrollArea, cell.center(), YearHeatmapView::fade() + cell.width());
    });

    const auto padding = points(style::defaultPadding);
    auto *const content = new QVBoxLayout;
    content->setContentsMargins(padding, points(style::defaultSpacing) - SectionButton::verticalPadding(), padding, 0);
    content->setSpacing(points(8));
    content->addWidget(m_scrollArea);
    content->addLayout(makeSummary());

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, padding - SectionButton::verticalPadding(), 0, padding);
    column->setSpacing(0);
    column->addLayout(withoutOutset(m_back));
    column->addLayout(content);
    column->addStretch();
}

QLayout *YearSection::makeSummary()
{
    m_commits->setObjectName(QStringLiteral("yearCommits"));
    m_activeDays->setObjectName(QStringLiteral("activeDays"));

    auto *const row = new QHBoxLayout;
    row->setSpacing(points(style::defaultSpacing));
    for (auto *const text : {m_commits, m_bullet, m_activeDays})
        row->addWidget(text);
    row->addStretch();
    return row;
}

void YearSection::setHistory(const DayCounts &yearHistory, const DateTexts &texts, const Calendar &calendar,
                             Instant now)
{
    m_heatmap->setContents(yearHistory, calendar, now, texts);
    const auto totals = yearTotals(yearHistory);
    m_commits->setText(tr("%1 commits").arg(totals.commits));
    m_activeDays->setText(tr("%1 active days").arg(totals.activeDays));
}

void YearSection::bringTodayIntoSight()
{
    m_isTodayWanted = true;
    if (isVisible())
        scrollSoon();
}

void YearSection::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_isTodayWanted)
        scrollSoon();
}

// The layout gives the area its size on the next turn of the loop, still before anything is painted.
void YearSection::scrollSoon()
{
    QMetaObject::invokeMethod(this, &YearSection::scrollToToday, Qt::QueuedConnection);
}

void YearSection::scrollToToday()
{
    if (!isVisible() || !std::exchange(m_isTodayWanted, false))
        return;
    bringIntoSight(*m_scrollArea, {m_heatmap->todayX(), 0}, m_scrollArea->viewport()->width() / 4);
}

}  // namespace velquarin
