// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/MenuBarView.h"

#include "Platform/Clock.h"
#include "Services/Streak/StreakManager.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/FadingPicture.h"
#include "Views/Controls/Style.h"
#include "Views/Dashboard/FooterSection.h"
#include "Views/Dashboard/HeaderSection.h"
#include "Views/Dashboard/RepositoriesSection.h"
#include "Views/Dashboard/WeekSection.h"
#include "Views/Dashboard/YearSection.h"

#include <QEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

QVBoxLayout *makeColumn(QWidget *widget)
{
    auto *const column = new QVBoxLayout(widget);
    column->setContentsMargins({});
    column->setSpacing(0);
    return column;
}

// What stays of a control when all is built anew.
QString identityOf(const QWidget &control)
{
    const auto *const row = qobject_cast<const RepoRow *>(&control);
    return row != nullptr ? row->path() : control.objectName();
}

bool holdsFocus(const QWidget *section)
{
    const auto *const focused = section->window()->focusWidget();
    return focused != nullptr && section->isAncestorOf(focused);
}

// Shows one section in place of another. The keyboard's focus goes along.
void exchangeSections(QWidget *entering, QWidget *leaving)
{
    const bool hadFocus = holdsFocus(leaving);
    entering->show();
    if (hadFocus)
        entering->setFocus(Qt::OtherFocusReason);
    leaving->hide();
}

}  // namespace

MenuBarView::MenuBarView(StreakManager &manager, const Clock &clock, Timers &timers, FileViewer &viewer,
                         std::function<void()> openSettings, std::function<QByteArray()> readLocale, QWidget *parent)
    : QWidget(parent)
    , m_manager(manager)
    , m_clock(clock)
    , m_timers(timers)
    , m_viewer(viewer)
    , m_openSettings(std::move(openSettings))
    , m_readLocale(std::move(readLocale))
    , m_sectionThatLeft(new FadingPicture(*this, [this] { return placeOfSections(); }))
    , m_rendering([this] { render(); })
    , m_rebuilding([this] { rebuild(); })
{
    setObjectName(QStringLiteral("dashboard"));
    makeColumn(this);
    buildSections();
    observe();
    renderNow();
}

MenuBarView::~MenuBarView() = default;

void MenuBarView::observe()
{
    const auto follow = [this](auto signal) { connect(&m_manager, signal, &m_rendering, &Rendering::soon); };
    follow(&StreakManager::currentStreakWillChange);
    follow(&StreakManager::longestStreakWillChange);
    follow(&StreakManager::hasCommittedTodayWillChange);
    follow(&StreakManager::totalCommitsThisWeekWillChange);
    follow(&StreakManager::commitHistoryWillChange);
    follow(&StreakManager::yearHistoryWillChange);
    follow(&StreakManager::repositoryStatsWillChange);
    follow(&StreakManager::isRefreshingWillChange);
    follow(&StreakManager::lastRefreshWillChange);
    follow(&StreakManager::errorWillChange);
    follow(&StreakManager::lastDiscoveredReposWillChange);
    follow(&StreakManager::isScanningWillChange);
    follow(&StreakManager::showYearViewWillChange);
}

void MenuBarView::renderNow()
{
    if (!m_rebuilding.nowIfDue())
        m_rendering.now();
}

void MenuBarView::render()
{
    renderSections(m_clock.calendar(), m_clock.now());
    startTimers();
}

void MenuBarView::rebuild()
{
    const auto place = keyboardsPlace();
    discardContent(*layout());
    buildSections();
    m_rendering.now();
    bringKeyboardTo(place);
}

QString MenuBarView::keyboardsPlace() const
{
    const auto *const focused = window()->focusWidget();
    return focused != nullptr && isAncestorOf(focused) ? identityOf(*focused) : QString();
}

void MenuBarView::bringKeyboardTo(const QString &place)
{
    const auto widgets = findChildren<QWidget *>();
    const auto found = std::ranges::find_if(
        widgets, [&place](const auto *widget) { return !place.isEmpty() && identityOf(*widget) == place; });
    if (found != widgets.end())
        (*found)->setFocus(Qt::OtherFocusReason);
}

void MenuBarView::buildSections()
{
    m_rebuilding.noteFont();
    setFixedWidth(style::points(300));
    m_header = new HeaderSection(this);
    m_week = new WeekSection(this);
    m_year = new YearSection(this);
    m_year->hide();
    m_repositoriesPart = new QWidget(this);
    m_repositories = new RepositoriesSection(m_viewer, m_repositoriesPart);
    m_footer = new FooterSection(this);
    placeSections(static_cast<QVBoxLayout *>(layout()));
    connectSections();
}

void MenuBarView::placeSections(QVBoxLayout *column)
{
    auto *const list = makeColumn(m_repositoriesPart);
    list->addWidget(m_repositories);
    list->addStretch();
    list->addWidget(new Divider(Qt::Horizontal, m_repositoriesPart));

    column->addWidget(m_header);
    column->addWidget(new Divider(Qt::Horizontal, this));
    column->addWidget(m_week);
    column->addWidget(m_year, 1);
    column->addWidget(new Divider(Qt::Horizontal, this));
    column->addWidget(m_repositoriesPart, 1);
    column->addWidget(m_footer);
}

void MenuBarView::connectSections()
{
    connect(m_week, &WeekSection::yearRequested, this, [this] { m_manager.setShowYearView(true); });
    connect(m_year, &YearSection::weekRequested, this, [this] { m_manager.setShowYearView(false); });
    connect(m_footer, &FooterSection::refreshRequested, this, [this] { m_manager.refresh(); });
    connect(m_footer, &FooterSection::settingsRequested, this, [this] { m_openSettings(); });
    connect(m_repositories, &RepositoriesSection::settingsRequested, this, [this] { m_openSettings(); });
}

void MenuBarView::renderSections(const Calendar &calendar, Instant now)
{
    const auto &texts = textsFor(calendar);
    renderHeader();
    if (m_manager.showYearView())
        m_year->setHistory(m_manager.yearHistory(), texts, calendar, now);
    else
        m_week->setDays(m_manager.commitHistory(), texts, calendar, now);
    chooseSection();
    m_repositories->setRepositories(m_manager.repositoryStats(), texts, now);
    m_footer->setRefreshing(m_manager.isRefreshing());
    renderUpdated();
}

void MenuBarView::renderHeader()
{
    m_header->setFigures({.currentStreak = m_manager.currentStreak(),
                          .longestStreak = m_manager.longestStreak(),
                          .totalCommitsThisWeek = m_manager.totalCommitsThisWeek(),
                          .repositories = m_manager.repositoryStats().size(),
                          .hasCommittedToday = m_manager.hasCommittedToday(),
                          .areRead = m_manager.lastRefresh().has_value()});
    // Nothing has the focus when it opens, so that the window is all that a screen reader tells.
    window()->setAccessibleDescription(m_header->summary());
}

void MenuBarView::chooseSection()
{
    const bool isYear = m_manager.showYearView();
    if (isYear == !m_year->isHidden())
        return;
    m_sectionThatLeft->begin();
    if (isYear) {
        exchangeSections(m_year, m_week);
        m_year->bringTodayIntoSight();
    } else {
        exchangeSections(m_week, m_year);
    }
    m_repositoriesPart->setVisible(!isYear);
}

QRect MenuBarView::placeOfSections() const
{
    return {QPoint(0, m_header->geometry().bottom() + 1), QPoint(width() - 1, m_footer->y() - 1)};
}

void MenuBarView::renderUpdated()
{
    const auto lastRefresh = m_manager.lastRefresh();
    m_footer->setElapsed(lastRefresh ? m_texts->elapsed(m_clock.now() - *lastRefresh) : QString());
}

void MenuBarView::startTimers()
{
    m_second.reset();
    m_nextDay.reset();
    if (!isVisible())
        return;
    m_nextDay = m_timers.after(untilNextDay(m_clock.now(), m_clock.calendar()), [this] { renderNow(); });
    keepCounting();
}

// Each tick comes when the text is due to change, however late the one before it was.
void MenuBarView::keepCounting()
{
    const auto lastRefresh = m_manager.lastRefresh();
    if (!lastRefresh)
        return;
    const auto span = m_clock.now() - *lastRefresh;
    const auto untilNextSecond = std::chrono::floor<std::chrono::seconds>(span) + 1s - span;
    m_second = m_timers.after(untilNextSecond, [this] {
        renderUpdated();
        keepCounting();
    });
}

const DateTexts &MenuBarView::textsFor(const Calendar &calendar)
{
    const auto locale = m_readLocale();
    if (!m_texts || locale != m_locale || calendar != m_calendar) {
        m_texts = std::make_unique<DateTexts>(locale, calendar);
        m_locale = locale;
        m_calendar = calendar;
    }
    return *m_texts;
}

void MenuBarView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    renderNow();
}

void MenuBarView::hideEvent(QHideEvent *event)
{
    m_second.reset();
    m_nextDay.reset();
    QWidget::hideEvent(event);
}

// Some drawings follow the direction of writing.
void MenuBarView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    m_rebuilding.follow(*event);
    if (event->type() == QEvent::LayoutDirectionChange)
        m_rebuilding.soon();
}

}  // namespace velquarin
