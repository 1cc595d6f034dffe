// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/DateTexts.h"
#include "Views/Controls/Rendering.h"

#include <QByteArray>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QVBoxLayout;

namespace velquarin {

class Clock;
class FadingPicture;
class FileViewer;
class FooterSection;
class HeaderSection;
class RepositoriesSection;
class StreakManager;
class WeekSection;
class YearSection;

//! The dashboard: the streak, the week or the year, the repositories, and when all that was read.
//!
//! It follows what the manager publishes: any number of changes makes one rendering, on the next turn of the event
//! loop, and what has not changed is not touched. Zone and locale are read at each rendering. While it is on screen
//! its text of the last refresh counts on, and a new day renders it anew; while it is not, no timer runs. Of week and year
//! the one that comes is there at once, while a picture of the other one fades. It is as high as its content; in a higher
//! window the footer stays at the lower end.
class MenuBarView : public QWidget
{
    Q_OBJECT
public:
    //! All references must outlive it. @p openSettings runs when the gear is pressed; @p readLocale says what
    //! locale dates are written in.
    MenuBarView(StreakManager &manager, const Clock &clock, Timers &timers, FileViewer &viewer,
                std::function<void()> openSettings, std::function<QByteArray()> readLocale = environmentLocale,
                QWidget *parent = nullptr);
    ~MenuBarView() override;

    //! Renders at once, for who is about to measure or show it.
    void renderNow();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void observe();
    void render();
    void rebuild();
    void buildSections();
    void placeSections(QVBoxLayout *column);
    void connectSections();
    void renderSections(const Calendar &calendar, Instant now);
    void renderHeader();
    void chooseSection();
    [[nodiscard]] QRect placeOfSections() const;
    void renderUpdated();
    [[nodiscard]] QString keyboardsPlace() const;
    void bringKeyboardTo(const QString &place);
    void startTimers();
    void keepCounting();
    [[nodiscard]] const DateTexts &textsFor(const Calendar &calendar);

    StreakManager &m_manager;
    const Clock &m_clock;
    Timers &m_timers;
    FileViewer &m_viewer;
    std::function<void()> m_openSettings;
    std::function<QByteArray()> m_readLocale;

    HeaderSection *m_header = nullptr;
    WeekSection *m_week = nullptr;
    YearSection *m_year = nullptr;
    QWidget *m_repositoriesPart = nullptr;
    RepositoriesSection *m_repositories = nullptr;
    FooterSection *m_footer = nullptr;
    FadingPicture *m_sectionThatLeft;

    std::unique_ptr<DateTexts> m_texts;
    QByteArray m_locale;
    std::optional<Calendar> m_calendar;
    Rendering m_rendering;
    Rebuilding m_rebuilding;
    std::unique_ptr<Timer> m_second;
    std::unique_ptr<Timer> m_nextDay;
};

}  // namespace velquarin
