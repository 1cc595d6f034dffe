// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/GeneralTab.h"

#include "Models/AppSettings.h"
#include "Services/LaunchAtLogin.h"
#include "Services/Streak/StreakManager.h"
#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/TabParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace velquarin {

namespace {

constexpr double rowHeight = 28;
constexpr double rowPadding = 10;
constexpr double gapBelowTitle = 3;
constexpr double gapBetweenSections = 6;

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

struct Counted
{
    const char *label = nullptr;
    CountedCommits commits;
};

constexpr std::array<Counted, 4> countedChoices{{
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "By everyone, default branch"),
     {CountedAuthors::Everyone, CountedBranches::Default}},
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "By me, default branch"),
     {CountedAuthors::Me, CountedBranches::Default}},
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "By everyone, all branches"),
     {CountedAuthors::Everyone, CountedBranches::All}},
    {QT_TRANSLATE_NOOP("velquarin::GeneralTab", "By me, all branches"), {CountedAuthors::Me, CountedBranches::All}},
}};

int indexOfCounted(const CountedCommits &commits)
{
    return int(std::ranges::find(countedChoices, commits, &Counted::commits) - countedChoices.begin());
}

// -1 for a period that is not offered, which then stands as it is.
int indexOfPeriod(double seconds)
{
    const auto *const found = std::ranges::find(refreshPeriods, seconds, &RefreshPeriod::seconds);
    return found == refreshPeriods.end() ? -1 : int(found - refreshPeriods.begin());
}

FormSection *addSection(QWidget &form, const QString &title)
{
    auto *const section = new FormSection(title, &form);
    form.layout()->addWidget(section);
    return section;
}

}  // namespace

FormSection::FormSection(const QString &title, QWidget *parent)
    : QWidget(parent)
    , m_title(makeText(textLook(style::TypeStyle::Subheadline, style::Ink::Secondary, QFont::DemiBold), title, this))
{
    auto *const group = new TintedGround(this);
    m_rows = new QVBoxLayout(group);
    m_rows->setContentsMargins({});
    m_rows->setSpacing(0);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(style::points(gapBelowTitle));
    column->addWidget(m_title);
    column->addWidget(group);
}

QBoxLayout *FormSection::makeRow(int outset)
{
    const auto padding = style::points(rowPadding) - outset;
    if (m_rows->count() > 0)
        addDivider();
    auto *const row = new QHBoxLayout;
    m_rows->addLayout(row);
    row->setContentsMargins(padding, 0, padding, 0);
    row->addStrut(style::points(rowHeight));
    return row;
}

void FormSection::addDivider()
{
    auto *const line = new QHBoxLayout;
    const auto padding = style::points(rowPadding);
    line->setContentsMargins(padding, 0, padding, 0);
    line->addWidget(new Divider(Qt::Horizontal, this));
    m_rows->addLayout(line);
}

void FormSection::addRow(Switch *control)
{
    makeRow(Switch::outset())->addWidget(control);
}

void FormSection::addRow(QWidget *leading, QWidget *trailing)
{
    auto *const row = makeRow();
    row->addWidget(leading);
    row->addStretch();
    row->addWidget(trailing);
}

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
    observe();
}

void GeneralTab::buildForm()
{
    auto *const form = new QWidget(this);
    auto *const column = new QVBoxLayout(form);
    const auto padding = style::points(style::defaultPadding);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(style::points(gapBetweenSections));
    addSwitches(*form);
    addRefresh(*form);
    addAbout(*form);
    column->addStretch();
    setWidget(form);
    viewport()->setAutoFillBackground(false);
    form->setAutoFillBackground(false);
}

void GeneralTab::addSwitches(QWidget &form)
{
    addSwitch(
        form, tr("Startup"), tr("&Launch at login"),
        {[this] { return m_launchAtLogin.isEnabled(); }, [this](bool isOn) { m_launchAtLogin.setIsEnabled(isOn); }});
    addSwitch(form, tr("Display"), tr("&Show streak count in menu bar"),
              {[this] { return m_settings.showStreakInMenuBar(); },
               [this](bool isOn) { m_settings.setShowStreakInMenuBar(isOn); }});
    auto *const reminder = addSwitch(form, tr("Notifications"), tr("Re&mind me if streak is at risk"),
                                     {[this] { return m_settings.notifyOnStreakRisk(); },
                                      [this](bool isOn) { m_settings.setNotifyOnStreakRisk(isOn); }});
    reminder->setToolTip(tr("Get notified in the evening if you haven't committed today"));
}

// A control that only follows a value hears its own movement too, and must not write the value again.
Switch *GeneralTab::addSwitch(QWidget &form, const QString &title, const QString &label, const Flag &flag)
{
    auto *const section = addSection(form, title);
    auto *const control = new Switch(label, Switch::Size::Regular, section);
    section->addRow(control);
    m_switches.append({control, flag.get});
    connect(control, &Switch::toggled, this, [flag](bool isOn) {
        if (isOn != flag.get())
            flag.set(isOn);
    });
    return control;
}

void GeneralTab::addRefresh(QWidget &form)
{
    auto *const section = addSection(form, tr("Refresh"));
    m_period = addPicker(*section, QStringLiteral("refreshPeriod"), tr("&Check for new commits"));
    for (const auto &period : refreshPeriods)
        m_period->addItem(tr(period.label));
    connect(m_period, &Picker::currentIndexChanged, this, &GeneralTab::choosePeriod);
    m_counted = addPicker(*section, QStringLiteral("countedCommits"), tr("C&ount commits"));
    for (const auto &choice : countedChoices)
        m_counted->addItem(tr(choice.label));
    connect(m_counted, &Picker::currentIndexChanged, this, &GeneralTab::chooseCounted);
}

Picker *GeneralTab::addPicker(FormSection &section, const QString &name, const QString &label)
{
    auto *const text = new QLabel(label, &section);
    text->setFont(style::font(style::TypeStyle::Body));
    auto *const picker = new Picker(&section);
    picker->setObjectName(name);
    text->setBuddy(picker);
    section.addRow(text, picker);
    return picker;
}

void GeneralTab::addAbout(QWidget &form)
{
    auto *const section = addSection(form, tr("About"));
    section->addRow(
        makeText(textLook(style::TypeStyle::Body, style::Ink::Primary), tr("Version"), section),
        makeText(textLook(style::TypeStyle::Body, style::Ink::Secondary), QStringLiteral("1.0.0"), section));
}

void GeneralTab::observe()
{
    const auto follow = [this](auto &object, auto signal) { connect(&object, signal, &m_rendering, &Rendering::soon); };
    follow(m_settings, &AppSettings::showStreakInMenuBarWillChange);
    follow(m_settings, &AppSettings::notifyOnStreakRiskWillChange);
    follow(m_settings, &AppSettings::refreshIntervalWillChange);
    follow(m_settings, &AppSettings::countedAuthorsWillChange);
    follow(m_settings, &AppSettings::countedBranchesWillChange);
    follow(m_launchAtLogin, &LaunchAtLogin::isEnabledWillChange);
}

void GeneralTab::render()
{
    for (const auto &[control, isOn] : std::as_const(m_switches))
        control->setChecked(isOn());
    m_period->setCurrentIndex(indexOfPeriod(m_settings.refreshInterval()));
    m_counted->setCurrentIndex(indexOfCounted({m_settings.countedAuthors(), m_settings.countedBranches()}));
}

void GeneralTab::choosePeriod(int index)
{
    if (index < 0 || refreshPeriods.at(std::size_t(index)).seconds == m_settings.refreshInterval())
        return;
    m_settings.setRefreshInterval(refreshPeriods.at(std::size_t(index)).seconds);
    m_streakManager.setupRefreshTimer();
}

// Whoever watches the settings has them read anew.
void GeneralTab::chooseCounted(int index)
{
    const auto &commits = countedChoices.at(std::size_t(index)).commits;
    if (commits == CountedCommits{m_settings.countedAuthors(), m_settings.countedBranches()})
        return;
    m_settings.setCountedAuthors(commits.authors);
    m_settings.setCountedBranches(commits.branches);
}

}  // namespace velquarin
