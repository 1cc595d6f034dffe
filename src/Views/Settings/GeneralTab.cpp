// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/GeneralTab.h"

#include "Models/AppSettings.h"
#include "Services/LaunchAtLogin.h"
#include "Services/Streak/StreakManager.h"
#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Picker.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/FormSection.h"

#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace velquarin {

namespace {

constexpr double gapBetweenSections = 9;

struct RefreshPeriod
{
    const char *label;
    double seconds;
};

constexpr std::array<RefreshPeriod, 5> refreshPeriods{{
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "Every minute"), 60},
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "Every 5 minutes"), 300},
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "Every 15 minutes"), 900},
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "Every 30 minutes"), 1800},
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "Every hour"), 3600},
}};

// -1 for a period that is not offered, which then stands as it is.
int indexOfPeriod(double seconds)
{
    const auto *const found = std::ranges::find(refreshPeriods, seconds, &RefreshPeriod::seconds);
    return found == refreshPeriods.end() ? -1 : int(found - refreshPeriods.begin());
}

}  // namespace

GeneralTab::GeneralTab(AppSettings &settings, StreakManager &streakManager, LaunchAtLogin &launchAtLogin,
                       QWidget *parent)
    : QScrollArea(parent)
    , m_settings(settings)
    , m_streakManager(streakManager)
    , m_launchAtLogin(launchAtLogin)
    , m_rendering([this] { render(); })
{
    readScrollAreaWhole(*this);
    setObjectName(QStringLiteral("generalTab"));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    //: The tab of that name, to a screen reader that comes to its scroll bar.
    verticalScrollBar()->setAccessibleName(tr("General"));
    buildForm();
    m_rendering.now();
    connectControls();
    observe();
}

void GeneralTab::buildForm()
{
    auto *const form = new QWidget(this);
    auto *const column = new QVBoxLayout(form);
    const auto padding = style::points(style::defaultPadding);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(style::points(gapBetweenSections));
    column->addWidget(makeStartup(form));
    column->addWidget(makeDisplay(form));
    column->addWidget(makeNotifications(form));
    column->addWidget(makeRefresh(form));
    column->addWidget(makeAbout(form));
    column->addStretch();
    setWidget(form);
    viewport()->setAutoFillBackground(false);
    form->setAutoFillBackground(false);
}

QWidget *GeneralTab::makeStartup(QWidget *form)
{
    auto *const section = new FormSection(tr("Startup"), form);
    m_launch = new Switch(tr("&Launch at login"), Switch::Size::Regular, section);
    section->setRow(m_launch);
    return section;
}

QWidget *GeneralTab::makeDisplay(QWidget *form)
{
    auto *const section = new FormSection(tr("Display"), form);
    m_count = new Switch(tr("&Show streak count in menu bar"), Switch::Size::Regular, section);
    section->setRow(m_count);
    return section;
}

QWidget *GeneralTab::makeNotifications(QWidget *form)
{
    auto *const section = new FormSection(tr("Notifications"), form);
    m_reminder = new Switch(tr("Re&mind me if streak is at risk"), Switch::Size::Regular, section);
    m_reminder->setToolTip(tr("Get notified in the evening if you haven't committed today"));
    section->setRow(m_reminder);
    return section;
}

QWidget *GeneralTab::makeRefresh(QWidget *form)
{
    auto *const section = new FormSection(tr("Refresh"), form);
    auto *const label = new QLabel(tr("&Check for new commits"), section);
    label->setFont(style::font(style::TypeStyle::Body));
    m_period = new Picker(section);
    m_period->setObjectName(QStringLiteral("refreshPeriod"));
    for (const auto &period : refreshPeriods)
        m_period->addItem(tr(period.label), period.seconds);
    label->setBuddy(m_period);
    section->setRow(label, m_period);
    return section;
}

QWidget *GeneralTab::makeAbout(QWidget *form)
{
    auto *const section = new FormSection(tr("About"), form);
    section->setRow(
        makeText(textLook(style::TypeStyle::Body, style::Ink::Primary), tr("Version"), section),
        makeText(textLook(style::TypeStyle::Body, style::Ink::Secondary), QStringLiteral("1.0.0"), section));
    return section;
}

// A control that only follows a value hears its own movement too, and must not write the value again.
void GeneralTab::connectControls()
{
    connect(m_launch, &Switch::toggled, this, [this](bool isOn) {
        if (isOn != m_launchAtLogin.isEnabled())
            m_launchAtLogin.setIsEnabled(isOn);
    });
    connect(m_count, &Switch::toggled, this, [this](bool isOn) {
        if (isOn != m_settings.showStreakInMenuBar())
            m_settings.setShowStreakInMenuBar(isOn);
    });
    connect(m_reminder, &Switch::toggled, this, [this](bool isOn) {
        if (isOn != m_settings.notifyOnStreakRisk())
            m_settings.setNotifyOnStreakRisk(isOn);
    });
    connect(m_period, &Picker::currentIndexChanged, this, &GeneralTab::choosePeriod);
}

void GeneralTab::observe()
{
    const auto renderSoon = [this] { m_rendering.soon(); };
    connect(&m_settings, &AppSettings::showStreakInMenuBarWillChange, this, renderSoon);
    connect(&m_settings, &AppSettings::notifyOnStreakRiskWillChange, this, renderSoon);
    connect(&m_settings, &AppSettings::refreshIntervalWillChange, this, renderSoon);
    connect(&m_launchAtLogin, &LaunchAtLogin::isEnabledWillChange, this, renderSoon);
}

void GeneralTab::render()
{
    m_launch->setChecked(m_launchAtLogin.isEnabled());
    m_count->setChecked(m_settings.showStreakInMenuBar());
    m_reminder->setChecked(m_settings.notifyOnStreakRisk());
    m_period->setCurrentIndex(indexOfPeriod(m_settings.refreshInterval()));
}

void GeneralTab::choosePeriod(int index)
{
    if (index < 0 || refreshPeriods.at(std::size_t(index)).seconds == m_settings.refreshInterval())
        return;
    m_settings.setRefreshInterval(refreshPeriods.at(std::size_t(index)).seconds);
    m_streakManager.setupRefreshTimer();
}

}  // namespace velquarin
