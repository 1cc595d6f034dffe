// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/MenuBarView.h"

#include "support/AnimatingStyle.h"
#include "support/Engine.h"
#include "support/Offscreen.h"
#include "support/PaintedText.h"
#include "support/Picture.h"
#include "support/RecordingFileViewer.h"
#include "support/TestProgram.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/FadingPicture.h"
#include "Views/Controls/PlainButton.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"
#include "Views/Dashboard/DayStrip.h"
#include "Views/Dashboard/FooterSection.h"
#include "Views/Dashboard/HeaderSection.h"
#include "Views/Dashboard/RepositoriesSection.h"
#include "Views/Dashboard/YearHeatmapView.h"

#include <QApplication>
#include <QProxyStyle>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <semaphore>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;
using style::Accent;
using style::Ink;

namespace {

QByteArray commits(const char *day, int count)
{
    return (QByteArray(day) + '\n').repeated(count);
}

QStringList words(std::initializer_list<const char *> texts)
{
    QStringList words;
    for (const auto *const text : texts)
        words.append(QString::fromUtf8(text));
    return words;
}

// A dashboard over an engine of its own; today is Friday, 20 November 2026, 12:00 in UTC.
struct World
{
    Engine engine;
    RecordingFileViewer viewer;
    QByteArray locale = "en_US";
    int settingsOpened = 0;
    int renderings = 0;
    std::unique_ptr<MenuBarView> view;

    MenuBarView &make()
    {
        view = std::make_unique<MenuBarView>(
            engine.manager, engine.clock, engine.timers, viewer, [this] { ++settingsOpened; },
            [this] {
                ++renderings;
                return locale;
            });
        return *view;
    }

    // Made, on the screen, and at rest.
    MenuBarView &show()
    {
        make().show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            qFatal("The dashboard does not come up");
        settle();
        return *view;
    }

    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    // Tracks that many repositories; only the first has commits: so many today.
    void track(int repositories, int today)
    {
        for (int number = 1; number <= repositories; ++number) {
            const auto path = QStringLiteral("/src/repository-%1").arg(number);
            const auto log = number == 1 ? commits("2026-11-20", today) : QByteArray();
            engine.track(path, log, log, number == 1 && today > 0 ? "2026-11-20T09:00:00+00:00" : "");
        }
    }

    template <typename Widget = QWidget>
    [[nodiscard]] Widget &named(const char *name) const
    {
        auto *const widget = view->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            qFatal("There is no %s", name);
        return *widget;
    }

    [[nodiscard]] QString text(const char *name) const { return named<Text>(name).text(); }
    void click(const char *name) const { QTest::mouseClick(&named(name), Qt::LeftButton); }

    [[nodiscard]] QVariantAnimation &motion(const char *name) const
    {
        return *view->findChild<QVariantAnimation *>(QLatin1String(name));
    }

    // The first repository has so many commits today, and is read anew.
    void commit(int today)
    {
        const auto log = commits("2026-11-20", today);
        engine.script(QStringLiteral("/src/repository-1"), log, log, "2026-11-20T11:00:00+00:00");
        engine.refresh();
        settle();
    }

    void showYear(bool isYear)
    {
        engine.manager.setShowYearView(isYear);
        settle();
    }

    [[nodiscard]] QStringList textsOf(const char *section) const { return textsIn(named(section)); }
};

}  // namespace

class TestMenuBarView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarningOfOurs();
        // Pictures are taken of what has come to rest.
        QApplication::setStyle(new AnimatingStyle(0));
        QApplication::setPalette(lightPalette());
        setFontHeight(13);
    }

    // What moves

    void whatWasShownFadesOverWhatIs()
    {
        const AnimatingDesktop desktop;
        World world;
        world.track(3, 4);
        world.engine.refresh();
        auto &view = world.show();
        view.setFixedHeight(500);
        World::settle();
        for (const bool isYear : {true, false}) {
            const auto before = pictureOf(view, 1);
            world.showYear(isYear);
            auto &fading = world.motion("fading");
            QCOMPARE(fading.state(), QAbstractAnimation::Running);
            QCOMPARE(fading.duration(), 100);
            fading.pause();
            fading.setCurrentTime(0);
            QCOMPARE(pictureOf(view, 1), before);
            const auto place = view.findChild<FadingPicture *>()->geometry();
            QCOMPARE(place.top(), world.named("header").geometry().bottom() + 1);
            QCOMPARE(place.bottom() + 1, world.named("footer").y());
            fading.setCurrentTime(50);
            const auto between = pictureOf(view, 1);
            fading.resume();
            QTRY_COMPARE(fading.state(), QAbstractAnimation::Stopped);
            const auto after = pictureOf(view, 1);
            const auto different = firstDifference(before, after);
            const auto shown = between.pixelColor(different);
            const auto middle = style::mix(before.pixelColor(different), after.pixelColor(different), 0.5);
            // Whoever rounds at two steps is one beside who rounds at once.
            QVERIFY2(std::abs(qGray(shown.rgb()) - qGray(middle.rgb())) <= 1, qPrintable(shown.name()));
            QVERIFY(!view.findChild<FadingPicture *>()->isVisible());
        }
    }

    void whatIsShownCanBeClickedWhileItFadesIn()
    {
        const AnimatingDesktop desktop;
        World world;
        auto &view = world.show();
        world.showYear(true);
        world.motion("fading").pause();
        world.motion("fading").setCurrentTime(1);
        const auto &back = world.named("back");
        QVERIFY(view.findChild<FadingPicture *>()->geometry().contains(back.mapTo(&view, back.rect().center())));
        QTest::mouseClick(view.windowHandle(), Qt::LeftButton, {}, back.mapTo(&view, back.rect().center()));
        QVERIFY(!world.engine.manager.showYearView());
    }

    void whereLessIsShownNothingFadesOverTheFooter()
    {
        const AnimatingDesktop desktop;
        World world;
        world.track(10, 1);
        world.engine.refresh();
        auto &view = world.show();
        world.showYear(true);
        world.motion("fading").pause();
        world.motion("fading").setCurrentTime(1);
        view.resize(view.width(), view.sizeHint().height());
        World::settle();
        const auto footer = world.named("footer").geometry();
        QVERIFY(view.findChild<FadingPicture *>()->geometry().intersects(footer));
        const auto during = pictureOf(view, 1).copy(footer);
        world.motion("fading").setCurrentTime(100);
        QCOMPARE(during, pictureOf(view, 1).copy(footer));
    }

    void hiddenNothingFades()
    {
        const AnimatingDesktop desktop;
        World world;
        auto &view = world.show();
        world.showYear(true);
        view.hide();
        QCOMPARE(world.motion("fading").state(), QAbstractAnimation::Stopped);
        world.showYear(false);
        QCOMPARE(world.motion("fading").state(), QAbstractAnimation::Stopped);
        view.show();
        QVERIFY(!view.findChild<FadingPicture *>()->isVisible());
    }

    void theFirstCommitOfTheDayHasTheFlameBeatOnce()
    {
        const AnimatingDesktop desktop;
        World world;
        world.track(1, 0);
        world.engine.refresh();
        world.show();
        auto &beat = world.motion("beat");
        QCOMPARE(beat.state(), QAbstractAnimation::Stopped);
        world.commit(1);
        QCOMPARE(beat.state(), QAbstractAnimation::Running);
        QCOMPARE(beat.duration(), 260);
        QTRY_COMPARE(beat.state(), QAbstractAnimation::Stopped);
        world.commit(2);
        QCOMPARE(beat.state(), QAbstractAnimation::Stopped);
    }

    void theFlameSwellsByATenthAndShrinksAgain()
    {
        const AnimatingDesktop desktop;
        World world;
        world.track(1, 0);
        world.engine.refresh();
        world.show();
        world.commit(1);
        auto &beat = world.motion("beat");
        auto &flame = world.named("flame");
        beat.pause();
        const auto extentAt = [&](int time) {
            beat.setCurrentTime(time);
            return extentOf(pictureOf(flame, 2));
        };
        const auto first = extentAt(0);
        const auto largest = extentAt(130);
        QVERIFY2(std::abs(largest.height() - 1.1 * first.height()) <= 2, qPrintable(QString::number(largest.height())));
        QVERIFY(QRect(QPoint(), flame.size() * 2).adjusted(1, 1, -1, -1).contains(largest));
        QVERIFY((largest.center() - first.center()).manhattanLength() <= 2);
        beat.setCurrentTime(260);
        QCOMPARE(extentOf(pictureOf(flame, 2)), first);
    }

    void aFlameThatIsLitWhenItIsFirstSeenDoesNotBeat()
    {
        const AnimatingDesktop desktop;
        World world;
        world.track(1, 0);
        world.engine.refresh();
        world.make();
        world.commit(1);
        world.view->show();
        QVERIFY(QTest::qWaitForWindowExposed(world.view.get()));
        World::settle();
        QCOMPARE(world.motion("beat").state(), QAbstractAnimation::Stopped);
    }

    void whatTheFirstRefreshFindsIsNoNews()
    {
        const AnimatingDesktop desktop;
        World world;
        world.track(1, 1);
        world.show();
        world.engine.refresh();
        World::settle();
        QCOMPARE(world.named<SymbolView>("flame").name(), QStringLiteral("flame.fill"));
        QCOMPARE(world.motion("beat").state(), QAbstractAnimation::Stopped);
    }

    void hiddenTheFlameComesToRest()
    {
        const AnimatingDesktop desktop;
        World world;
        world.track(1, 0);
        world.engine.refresh();
        auto &view = world.show();
        world.commit(1);
        view.hide();
        QCOMPARE(world.motion("beat").state(), QAbstractAnimation::Stopped);
    }

    void whereNoAnimationsAreWantedNothingMoves()
    {
        const AnimatingDesktop desktop(0);
        World world;
        world.track(1, 0);
        world.engine.refresh();
        world.show();
        world.commit(1);
        QCOMPARE(world.motion("beat").state(), QAbstractAnimation::Stopped);
        world.showYear(true);
        QCOMPARE(world.motion("fading").state(), QAbstractAnimation::Stopped);
        QVERIFY(!world.view->findChild<FadingPicture *>()->isVisible());
    }

    // What it shows

    void withoutRepositoriesItSaysSo()
    {
        World world;
        world.engine.refresh();
        world.make();
        QCOMPARE(textsIn(*world.view), words({"0", "day streak", "Longest", "0 days", "This week", "0 commits", "Repos",
                                              "0 tracked", "Today", "No commits yet", "Last 7 Days", "Show Year",
                                              "Repositories", "No repositories configured", "Updated 0 sec ago"}));
        QCOMPARE(buttonsIn(*world.view), words({"Show Year", "No repositories configured", "Refresh", "Settings"}));
    }

    void whereThereAreNoRepositoriesAClickLeadsToTheSettings()
    {
        World world;
        world.engine.refresh();
        world.show();
        QTest::mouseClick(textNamed(world, "No repositories configured").parentWidget(), Qt::LeftButton);
        QCOMPARE(world.settingsOpened, 1);
    }

    void aScreenReaderHearsTheStreakWhenTheWindowOpens()
    {
        World world;
        world.track(1, 2);
        world.engine.refresh();
        auto &view = world.show();
        QCOMPARE(view.accessibleDescription(), QStringLiteral("1 day streak, Committed!"));
    }

    void aScreenReaderHearsTheHeadingWithTheButtonInIt()
    {
        World world;
        world.make();
        QCOMPARE(world.named("showYear").accessibleDescription(), QStringLiteral("Last 7 Days"));
        QCOMPARE(world.named("back").accessibleDescription(), QStringLiteral("Last 365 Days"));
    }

    void theScrollBarOfTheYearHasAName()
    {
        World world;
        world.make();
        const auto &area = world.named<QScrollArea>("yearScrollArea");
        QCOMPARE(area.horizontalScrollBar()->accessibleName(), QStringLiteral("Last 365 Days"));
    }

    void everyFigureIsShownFromTopToBottom()
    {
        World world;
        const auto week = commits("2026-11-20", 3) + commits("2026-11-19", 11) + commits("2026-11-16", 1);
        world.engine.track(QStringLiteral("/src/tidewatch"), week, week, "2026-11-20T09:00:00+00:00");
        world.engine.track(QStringLiteral("/src/notes"), "", "", "2026-11-18T12:00:00+00:00");
        world.engine.refresh();
        world.engine.clock.advance(133s);
        world.make();
        QCOMPARE(textsIn(*world.view),
                 words({"2",           "day streak", "Longest",   "2 days",     "This week",
                        "15 commits",  "Repos",      "2 tracked", "Today",      "Committed!",
                        "Last 7 Days", "Show Year",  "Sat, 0",    "Sun, 0",     "Mon, 1",
                        "Tue, 0",      "Wed, 0",     "Thu, 11",   "Fri, 3",     "Repositories",
                        "tidewatch",   "3 today",    "notes",     "2 days ago", "Updated 2 min, 13 sec ago"}));
        QCOMPARE(buttonsIn(*world.view),
                 words({"Show Year", "tidewatch, 3 today", "notes, 2 days ago", "Refresh", "Settings"}));
    }

    void theYearTakesThePlaceOfWeekAndRepositories()
    {
        World world;
        world.track(3, 4);
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        world.make();
        QCOMPARE(textsIn(*world.view), words({"1", "day streak", "Longest", "1 days", "This week", "4 commits", "Repos",
                                              "3 tracked", "Today", "Committed!", "Back", "Last 365 Days", "4 commits",
                                              "•", "1 active days", "Updated 0 sec ago"}));
        QCOMPARE(buttonsIn(*world.view), words({"Back", "Refresh", "Settings"}));
    }

    void aYearWithoutCommitsSaysSo()
    {
        World world;
        world.engine.manager.setShowYearView(true);
        world.make();
        QCOMPARE(world.text("yearCommits"), QStringLiteral("0 commits"));
        QCOMPARE(world.text("activeDays"), QStringLiteral("0 active days"));
    }

    void theTotalsCoverMoreThanTheYearShown()
    {
        World world;
        const auto year = commits("2026-11-20", 2) + commits("2025-01-05", 40);
        world.engine.track(QStringLiteral("/src/old"), commits("2026-11-20", 2), year, "2026-11-20T09:00:00+00:00");
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        world.make();
        QCOMPARE(world.text("yearCommits"), QStringLiteral("42 commits"));
        QCOMPARE(world.text("activeDays"), QStringLiteral("2 active days"));
    }

    void numbersStandAsTheyAreAndWordsStayAsTheyAre_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("none") << 0;
        QTest::newRow("one") << 1;
        QTest::newRow("ninety-nine") << 99;
        QTest::newRow("a thousand") << 1000;
    }

    void numbersStandAsTheyAreAndWordsStayAsTheyAre()
    {
        QFETCH(int, count);
        World world;
        world.locale = "de_DE";
        world.track(1, count);
        world.engine.refresh();
        world.make();
        const auto number = QString::number(count);
        QVERIFY(world.textsOf("header").contains(number + QLatin1String(" commits")));
        QVERIFY(world.textsOf("header").contains(QLatin1String(count > 0 ? "1 days" : "0 days")));
        QVERIFY(world.textsOf("header").contains(QLatin1String("1 tracked")));
        QCOMPARE(world.textsOf("repositories").last(),
                 count > 0 ? number + QLatin1String(" today") : QStringLiteral("No commits"));
        world.engine.manager.setShowYearView(true);
        world.view->renderNow();
        QCOMPARE(world.text("yearCommits"), number + QLatin1String(" commits"));
    }

    void theListShowsTenRepositoriesAndCountsTheRest_data()
    {
        QTest::addColumn<int>("repositories");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("more");
        QTest::newRow("none") << 0 << 0 << "";
        QTest::newRow("three") << 3 << 3 << "";
        QTest::newRow("ten") << 10 << 10 << "";
        QTest::newRow("eleven") << 11 << 10 << "+1 more";
        QTest::newRow("thirty") << 30 << 10 << "+20 more";
    }

    void theListShowsTenRepositoriesAndCountsTheRest()
    {
        QFETCH(int, repositories);
        QFETCH(int, rows);
        QFETCH(QString, more);
        World world;
        world.track(repositories, 0);
        world.engine.refresh();
        world.make();
        const auto made = world.view->findChildren<RepoRow *>();
        QCOMPARE(std::count_if(made.begin(), made.end(), [](auto *row) { return !row->isHidden(); }), rows);
        const auto texts = world.textsOf("repositories");
        QCOMPARE(texts.contains(QLatin1String("No repositories configured")), repositories == 0);
        QCOMPARE(texts.filter(QLatin1String(" more")), more.isEmpty() ? QStringList() : QStringList{more});
        QVERIFY(world.textsOf("header").contains(QStringLiteral("%1 tracked").arg(repositories)));
    }

    void theListFollowsAsRepositoriesComeAndGo()
    {
        World world;
        world.track(11, 0);
        world.engine.refresh();
        world.show();
        const auto all = world.engine.settings.trackedRepositories();
        for (int index = 2; index < all.size(); ++index)
            world.engine.settings.removeRepository(all.at(index));
        world.engine.refresh();
        World::settle();
        QCOMPARE(world.textsOf("repositories"),
                 words({"Repositories", "repository-1", "No commits", "repository-2", "No commits"}));
        world.engine.settings.setTrackedRepositories({});
        world.engine.refresh();
        World::settle();
        QCOMPARE(world.textsOf("repositories"), words({"Repositories", "No repositories configured"}));
    }

    void withAllRepositoriesDisabledItSaysThatThereAreNone()
    {
        World world;
        world.track(2, 1);
        world.engine.refresh();
        world.show();
        auto repositories = world.engine.settings.trackedRepositories();
        for (auto &repository : repositories)
            repository.isEnabled = false;
        world.engine.settings.setTrackedRepositories(repositories);
        world.engine.refresh();
        World::settle();
        QCOMPARE(textsIn(*world.view), words({"0", "day streak", "Longest", "0 days", "This week", "0 commits", "Repos",
                                              "0 tracked", "Today", "No commits yet", "Last 7 Days", "Show Year",
                                              "Repositories", "No repositories configured", "Updated 0 sec ago"}));
    }

    void theStreakIsLargeAndBold()
    {
        World world;
        world.engine.refresh();
        world.show();
        const auto written = paintedTexts(world.named("header"));
        QCOMPARE(written.first().text, QStringLiteral("0"));
        QCOMPARE(written.first().font, style::systemFont(28, QFont::Bold));
        QCOMPARE(written.first().font.pixelSize(), 28);
        QCOMPARE(written.first().color, style::ink(world.view->palette(), Ink::Primary));
        QCOMPARE(written.at(1).text, QStringLiteral("day streak"));
        QCOMPARE(written.at(1).font, style::font(style::TypeStyle::Caption));
        QCOMPARE(written.at(1).color, style::ink(world.view->palette(), Ink::Secondary));
    }

    void whatIsWrittenHasItsSizeAndColour_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QFont>("font");
        QTest::addColumn<QColor>("color");
        using style::TypeStyle;
        const auto palette = lightPalette();
        setFontHeight(13);
        const auto row = [&palette](const char *text, TypeStyle type, const style::Tone &tone) {
            QTest::newRow(text) << QString::fromUtf8(text) << style::font(type) << style::textColor(palette, tone);
        };
        row("Last 7 Days", TypeStyle::Headline, Ink::Secondary);
        row("Show Year", TypeStyle::Caption, Accent::Blue);
        row("Repositories", TypeStyle::Headline, Ink::Secondary);
        row("+1 more", TypeStyle::Caption2, Ink::Secondary);
        row("Updated 0 sec ago", TypeStyle::Caption2, Ink::Tertiary);
        row("Last 365 Days", TypeStyle::Headline, Ink::Secondary);
        row("Back", TypeStyle::Caption, Accent::Blue);
        row("7 commits", TypeStyle::Caption, Ink::Secondary);
        row("•", TypeStyle::Caption, Ink::Tertiary);
        row("1 active days", TypeStyle::Caption, Ink::Secondary);
    }

    void whatIsWrittenHasItsSizeAndColour()
    {
        QFETCH(QString, text);
        World world;
        world.track(11, 7);
        world.engine.refresh();
        world.show();
        auto written = paintedTexts(*world.view);
        world.engine.manager.setShowYearView(true);
        World::settle();
        // The figure of the week in the header reads as the one below the year does.
        written += paintedTexts(world.named("year"));
        const auto found = std::find_if(written.crbegin(), written.crend(),
                                        [&text](const auto &painted) { return painted.text == text; });
        QVERIFY(found != written.crend());
        QTEST(found->font, "font");
        QTEST(found->color, "color");
    }

    void theNumberStandsCloseToItsFlameAndItsCaption()
    {
        World world;
        world.engine.refresh();
        world.show();
        const auto &number = world.named("currentStreak");
        QCOMPARE(number.height(), QFontMetrics(style::systemFont(28, QFont::Bold)).capHeight() + 4);
        const auto &flame = world.named("flame");
        QCOMPARE(number.y() - flame.geometry().marginsRemoved(flame.contentsMargins()).bottom() - 1, 4);
        QCOMPARE(textNamed(world, "day streak").y() - number.geometry().bottom() - 1, 4);
    }

    void theNumberIsNotCutOff()
    {
        World world;
        world.engine.refresh();
        world.show();
        auto &number = world.named<Text>("currentStreak");
        for (int figure = 0; figure < 10; ++figure) {
            number.setText(QString::number(figure));
            const auto picture = pictureOf(number, 1);
            QVERIFY(!isPlain(picture));
            QVERIFY(isPlain(picture.copy(0, 0, picture.width(), 1)));
            QVERIFY(isPlain(picture.copy(0, picture.height() - 1, picture.width(), 1)));
        }
    }

    void whatIsInOneRowStandsOnOneBaseline_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<int>("fontHeight");
        const auto row = [](const char *left, const char *right) {
            for (const int height : {13, 17, 26})
                QTest::addRow("%s, font of %d", left, height)
                    << QString::fromUtf8(left) << QString::fromUtf8(right) << height;
        };
        row("Today", "Committed!");
        row("Last 7 Days", "Show Year");
        row("Repositories", "+1 more");
        row("repository-1", "7 today");
        row("repository-2", "No commits");
        row("Back", "Last 365 Days");
        row("•", "1 active days");
    }

    void whatIsInOneRowStandsOnOneBaseline()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(int, fontHeight);
        setFontHeight(fontHeight);
        World world;
        world.track(11, 7);
        world.engine.refresh();
        world.show();
        auto written = paintedTexts(*world.view);
        world.engine.manager.setShowYearView(true);
        World::settle();
        written += paintedTexts(*world.view);
        const auto first = std::ranges::find(written, left, &PaintedText::text);
        const auto second = std::ranges::find(written, right, &PaintedText::text);
        QVERIFY(first != written.end() && second != written.end());
        QVERIFY(first->place.x() < second->place.x());
        QCOMPARE(second->place.y(), first->place.y());
    }

    void theFlameIsDrawnAsItIsNamed_data()
    {
        QTest::addColumn<int>("today");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QColor>("color");
        const auto palette = lightPalette();
        QTest::newRow("without a commit") << 0 << QStringLiteral("flame") << style::ink(palette, Ink::Secondary);
        QTest::newRow("with a commit") << 1 << QStringLiteral("flame.fill") << style::accent(palette, Accent::Orange);
    }

    void theFlameIsDrawnAsItIsNamed()
    {
        QFETCH(int, today);
        QFETCH(QString, symbol);
        QFETCH(QColor, color);
        World world;
        world.track(1, today);
        world.engine.refresh();
        world.show();
        auto *const flame = world.named("header").findChild<SymbolView *>();
        const auto expected = pictureOfSymbol(symbol, flame->contentsRect(), color, *flame);
        QVERIFY(!isPlain(expected));
        QCOMPARE(pictureOf(*flame, 1), expected);
    }

    void theButtonsOfTheFooterShowTheirSymbols_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<bool>("isEnabled");
        QTest::newRow("refresh") << QByteArray("refresh") << QStringLiteral("arrow.clockwise") << true;
        QTest::newRow("refresh, half transparent")
            << QByteArray("refresh") << QStringLiteral("arrow.clockwise") << false;
        QTest::newRow("settings") << QByteArray("settings") << QStringLiteral("gear") << true;
    }

    void theButtonsOfTheFooterShowTheirSymbols()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, symbol);
        QFETCH(bool, isEnabled);
        World world;
        world.make();
        auto &button = world.named<IconButton>(name.constData());
        button.setEnabled(isEnabled);
        button.resize(button.sizeHint());
        const auto outset = PlainButton::outset();
        const auto place = button.rect().adjusted(outset, outset, -outset, -outset);
        const auto color = style::ink(button.palette(), Ink::Primary);
        const auto expected = pictureOfSymbol(symbol, place, color, button, isEnabled ? 1.0 : 0.5);
        QVERIFY(!isPlain(expected));
        QCOMPARE(pictureOf(button, 1), expected);
    }

    void aLongTimeIsCutAndTheButtonsKeepTheirPlace()
    {
        FooterSection footer;
        footer.setFixedWidth(300);
        footer.setElapsed(QStringLiteral("1 sec"));
        footer.show();
        World::settle();
        const auto place = footer.findChild<QWidget *>(QStringLiteral("refresh"))->geometry();
        footer.setElapsed(QStringLiteral("1 yr, ").repeated(40));
        World::settle();
        QCOMPARE(footer.findChild<QWidget *>(QStringLiteral("refresh"))->geometry(), place);
        QVERIFY(footer.findChild<QWidget *>(QStringLiteral("updated"))->geometry().right() < place.left());
    }

    void theChevronsPointWhereTheyLead()
    {
        World world;
        world.make();
        QCOMPARE(world.named("showYear").findChild<SymbolView *>()->name(), QStringLiteral("chevron.right"));
        QCOMPARE(world.named("back").findChild<SymbolView *>()->name(), QStringLiteral("chevron.left"));
    }

    void theHeaderKeepsItsDistances()
    {
        World world;
        world.engine.refresh();
        world.show();
        const auto &header = world.named("header");
        const auto &symbol = *header.findChild<SymbolView *>();
        const auto flame = symbol.contentsRect().translated(symbol.pos());
        const auto streak = world.named("currentStreak").geometry();
        const auto caption = textNamed(world, "day streak").geometry();
        const auto line = header.findChild<Divider *>()->geometry();
        const auto column = flame.united(streak).united(caption);
        QCOMPARE(column.left(), 16);
        QCOMPARE(column.top(), 16);
        QCOMPARE(header.rect().bottom() - column.bottom(), 16);
        QCOMPARE(streak.top() - flame.bottom() - 1, 4);
        QCOMPARE(caption.top() - streak.bottom() - 1, 4);
        QCOMPARE(line.left() - column.right() - 1, 16);
        QCOMPARE(line.size(), QSize(1, 60));
        QCOMPARE(flame.height(), 45);
    }

    void theStatisticsKeepTheirDistances()
    {
        World world;
        world.engine.refresh();
        world.show();
        const auto &header = world.named("header");
        const auto line = header.findChild<Divider *>()->geometry();
        const auto rows = header.findChildren<StatRow *>();
        QCOMPARE(rows.size(), 4);
        for (int row = 0; row < 4; ++row) {
            QCOMPARE(rows.at(row)->x() - line.right() - 1, 16);
            QCOMPARE(header.rect().right() - rows.at(row)->geometry().right(), 16);
            QVERIFY(row == 0 || rows.at(row)->y() - rows.at(row - 1)->geometry().bottom() - 1 == 8);
        }
        QVERIFY(qAbs(rows.first()->y() + rows.last()->geometry().bottom() - header.rect().bottom()) <= 1);
    }

    void theYearScrollsByAPillThatCanBeSeen_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << lightPalette();
        QTest::newRow("dark") << darkPalette();
    }

    void theYearScrollsByAPillThatCanBeSeen()
    {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        World world;
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        world.show();
        auto *const bar = world.view->findChild<QScrollArea *>(QStringLiteral("yearScrollArea"))->horizontalScrollBar();
        QCOMPARE(bar->height(), 12);
        const auto picture = pictureOf(*bar, 1);
        const auto ground = palette.color(QPalette::Window);
        const auto at = [&](int x, int y) { return picture.pixelColor(x, y); };
        const auto middle = bar->height() / 2;
        // It is scrolled to its end, where today is: nothing is left of it, and no arrow beside it.
        QVERIFY(style::contrast(at(bar->width() - 10, middle), ground) >= 3);
        QCOMPARE(at(5, middle), at(5, 1));
        QCOMPARE(at(bar->width() - 10, middle - 3), at(5, 1));
        QCOMPARE(at(bar->width() - 10, middle + 3), at(5, 1));
    }

    void theListKeepsItsDistances()
    {
        World world;
        world.track(3, 1);
        world.engine.refresh();
        world.show();
        const auto &section = world.named("repositories");
        const auto rows = section.findChildren<RepoRow *>();
        const auto heading = textNamed(world, "Repositories").geometry();
        QCOMPARE(heading.topLeft(), QPoint(16, 16));
        // They reach into the spacing, so that no click falls between two.
        const auto reach = PlainButton::outset();
        QCOMPARE(rows.at(0)->y() + reach - heading.bottom() - 1, 8);
        QCOMPARE(rows.at(1)->y() - rows.at(0)->geometry().bottom() - 1, 8 - 2 * reach);
        QCOMPARE(rows.at(2)->y() - rows.at(1)->geometry().bottom() - 1, 8 - 2 * reach);
        QVERIFY(rows.at(0)->height() >= 24);
        QCOMPARE(rows.at(0)->x(), 16 - PlainButton::outset());
        QCOMPARE(section.rect().right() - rows.at(0)->geometry().right(), 16 - PlainButton::outset());
        QCOMPARE(section.rect().bottom() - rows.at(2)->geometry().bottom() + reach, 16);
    }

    void inPlaceOfTheListStandsATextInTheMiddle()
    {
        World world;
        world.engine.refresh();
        world.show();
        const auto &section = world.named("repositories");
        const auto &text = textNamed(world, "No repositories configured");
        const QRect place(text.mapTo(&section, QPoint()), text.size());
        const auto heading = textNamed(world, "Repositories").geometry();
        QCOMPARE(place.top() - heading.bottom() - 1, 8 + 8);
        QCOMPARE(section.rect().bottom() - place.bottom(), 8 + 16);
        QVERIFY(qAbs(place.left() + place.right() - section.rect().right()) <= 1);
        const auto written = paintedTexts(world.named("repositories")).last();
        QCOMPARE(written.text, QStringLiteral("No repositories configured"));
        QCOMPARE(written.font, style::font(style::TypeStyle::Subheadline));
        QCOMPARE(written.color, style::ink(world.view->palette(), Ink::Secondary));
    }

    void theFooterKeepsItsDistances()
    {
        World world;
        world.engine.refresh();
        world.show();
        const auto &footer = world.named("footer");
        const auto refresh = world.named("refresh").geometry();
        const auto settings = world.named("settings").geometry();
        const auto outset = PlainButton::outset();
        QCOMPARE(world.named("updated").x(), 16);
        QCOMPARE(footer.rect().right() - settings.right(), 16 - outset);
        QCOMPARE(settings.left() + outset - (refresh.right() - outset) - 1, 8);
        QCOMPARE(settings.top(), 8 - outset);
        QCOMPARE(footer.rect().bottom() - settings.bottom(), 8 - outset);
        // 1.4 times the caption's 10 points, and the room around it that can be hit as well.
        QCOMPARE(settings.height(), 14 + 2 * outset);
    }

    void theWeekKeepsItsDistances()
    {
        World world;
        world.track(1, 1);
        world.engine.refresh();
        world.show();
        const auto &week = world.named("week");
        const auto &heading = textNamed(world, "Last 7 Days");
        const auto &chevron = *world.named("showYear").findChild<SymbolView *>();
        const QRect title(heading.mapTo(&week, QPoint()), heading.size());
        const auto &strip = world.named("days");
        QCOMPARE(title.topLeft(), QPoint(16, 16));
        QCOMPARE(strip.y() - title.bottom() - 1, 8);
        QCOMPARE(week.rect().bottom() - strip.geometry().bottom(), 16);
        QCOMPARE(chevron.mapTo(&week, chevron.rect().topRight()).x(), week.width() - 1 - 16);
        QCOMPARE(chevron.x() - textNamed(world, "Show Year").geometry().right() - 1, 8);
        QCOMPARE(chevron.geometry().bottom(), textNamed(world, "Show Year").geometry().bottom());
        QCOMPARE(chevron.color(), style::accentText(week.palette(), Accent::Blue));
    }

    void theYearKeepsItsDistances()
    {
        World world;
        world.track(1, 1);
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        world.show();
        const auto &heading = textNamed(world, "Last 365 Days");
        const auto &year = world.named("year");
        const auto area = world.named("yearScrollArea").geometry();
        const auto commits = world.named("yearCommits").geometry();
        const auto bullet = textNamed(world, "•").geometry();
        const auto &chevron = *world.named("back").findChild<SymbolView *>();
        QCOMPARE(chevron.mapTo(&year, QPoint()).x(), 16);
        QCOMPARE(textNamed(world, "Back").x() - chevron.geometry().right() - 1, 8);
        QCOMPARE(chevron.geometry().bottom(), textNamed(world, "Back").geometry().bottom());
        QCOMPARE(heading.mapTo(&year, QPoint()).y(), 16);
        QCOMPARE(area.top() - heading.mapTo(&year, heading.rect().bottomLeft()).y() - 1, 8);
        QCOMPARE(area.left(), 16);
        QCOMPARE(year.rect().right() - area.right(), 16);
        QCOMPARE(commits.topLeft(), QPoint(16, area.bottom() + 1 + 8));
        QCOMPARE(bullet.left() - commits.right() - 1, 8);
        QCOMPARE(world.named("activeDays").x() - bullet.right() - 1, 8);
        QCOMPARE(year.rect().bottom() - commits.bottom(), 16);
    }

    void aDayWithACommitLightsTheFlame()
    {
        World world;
        world.track(1, 0);
        world.engine.refresh();
        world.show();
        auto *const flame = world.named("header").findChild<SymbolView *>();
        const auto palette = world.view->palette();
        QCOMPARE(flame->name(), QStringLiteral("flame"));
        QCOMPARE(flame->color(), style::ink(palette, Ink::Secondary));
        QVERIFY(textNamed(world, "No commits yet").tone() == style::Tone(Accent::Orange));

        world.engine.script(QStringLiteral("/src/repository-1"), commits("2026-11-20", 1), commits("2026-11-20", 1),
                            "");
        world.engine.refresh();
        World::settle();
        QCOMPARE(flame->name(), QStringLiteral("flame.fill"));
        QCOMPARE(flame->color(), style::accent(palette, Accent::Orange));
        QVERIFY(textNamed(world, "Committed!").tone() == style::Tone(Accent::Green));
    }

    void itIs300PointsWideAndAsHighAsItsContent()
    {
        World world;
        world.engine.refresh();
        auto &view = world.show();
        QCOMPARE(view.width(), 300);
        const auto empty = view.sizeHint().height();
        World full;
        full.track(10, 1);
        full.engine.refresh();
        QVERIFY(full.show().sizeHint().height() > empty + 9 * 18);
    }

    void dividersReachFromEdgeToEdge()
    {
        World world;
        world.track(1, 1);
        world.engine.refresh();
        auto &view = world.show();
        QCOMPARE(fullDividers(view).size(), 3);
        world.engine.manager.setShowYearView(true);
        World::settle();
        QCOMPARE(fullDividers(view).size(), 2);
    }

    void inAHigherWindowTheFooterStaysAtTheLowerEnd()
    {
        World world;
        auto &view = world.make();
        view.setFixedHeight(view.sizeHint().height() + 60);
        view.show();
        World::settle();
        QCOMPARE(world.named("footer").geometry().bottom(), view.rect().bottom());
        world.engine.manager.setShowYearView(true);
        World::settle();
        QCOMPARE(world.named("footer").geometry().bottom(), view.rect().bottom());
        QCOMPARE(fullDividers(view).last().bottom() + 1, world.named("footer").y());
    }

    void theFlameStandsOverItsNumber()
    {
        World world;
        world.engine.refresh();
        world.show();
        const auto &streak = world.named("currentStreak");
        const auto *const flame = world.named("header").findChild<SymbolView *>();
        QVERIFY(qAbs(2 * flame->x() + flame->width() - 2 * streak.x() - streak.width()) <= 1);
        QVERIFY(flame->geometry().bottom() < streak.y());
    }

    // What its controls do

    void theHeadingsLeadToTheYearAndBack()
    {
        World world;
        world.show();
        world.click("showYear");
        QVERIFY(world.engine.manager.showYearView());
        World::settle();
        QVERIFY(world.named("week").isHidden());
        QVERIFY(world.named("year").isVisible());
        QVERIFY(!world.named("repositories").isVisible());
        QVERIFY(world.named("footer").isVisible());
        world.click("back");
        QVERIFY(!world.engine.manager.showYearView());
        World::settle();
        QVERIFY(world.named("week").isVisible());
        QVERIFY(world.named("year").isHidden());
        QVERIFY(world.named("repositories").isVisible());
    }

    void aScreenReaderCanPressEverything()
    {
        World world;
        world.track(1, 1);
        world.engine.refresh();
        world.show();
        pressAccessibly(world.named("showYear"));
        QTRY_VERIFY(world.named("year").isVisible());
        pressAccessibly(world.named("back"));
        QTRY_VERIFY(world.named("week").isVisible());
        pressAccessibly(*world.view->findChild<RepoRow *>());
        QTRY_COMPARE(world.viewer.shown, words({"/src/repository-1"}));
        pressAccessibly(world.named("settings"));
        QTRY_COMPARE(world.settingsOpened, 1);
        QSignalSpy refreshed(&world.engine.manager, &StreakManager::lastRefreshWillChange);
        pressAccessibly(world.named("refresh"));
        QTRY_COMPARE(refreshed.size(), 1);
    }

    void theKeyboardKeepsItsPlaceFromWeekToYearAndBack()
    {
        World world;
        world.show();
        world.named("showYear").setFocus(Qt::TabFocusReason);
        QTest::keyClick(&world.named("showYear"), Qt::Key_Return);
        World::settle();
        QCOMPARE(world.view->focusWidget(), &world.named("back"));
        QTest::keyClick(&world.named("back"), Qt::Key_Space);
        World::settle();
        QCOMPARE(world.view->focusWidget(), &world.named("showYear"));
    }

    void theViewChangesWithoutTakingAFocusThatNobodyGave()
    {
        World world;
        auto &view = world.show();
        if (auto *const focused = view.focusWidget())
            focused->clearFocus();
        world.click("showYear");
        World::settle();
        QCOMPARE(view.focusWidget(), nullptr);
    }

    void theViewChangesWithoutTakingAFocusFromElsewhere()
    {
        World world;
        world.show();
        world.named("refresh").setFocus(Qt::TabFocusReason);
        pressAccessibly(world.named("showYear"));
        QTRY_VERIFY(world.named("back").isVisible());
        QCOMPARE(world.view->focusWidget(), &world.named("refresh"));
    }

    void tabVisitsEveryControlInReadingOrder()
    {
        World world;
        world.track(2, 1);
        world.engine.refresh();
        world.show();
        world.view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(world.view.get()));
        world.named("showYear").setFocus(Qt::TabFocusReason);
        QStringList visited{world.view->focusWidget()->accessibleName()};
        for (int tab = 0; tab < 4; ++tab) {
            QTest::keyClick(world.view->focusWidget(), Qt::Key_Tab);
            visited.append(world.view->focusWidget()->accessibleName());
        }
        QCOMPARE(visited,
                 words({"Show Year", "repository-1, 1 today", "repository-2, No commits", "Refresh", "Settings"}));
    }

    void theGearOpensTheSettings()
    {
        World world;
        world.show();
        world.click("settings");
        QCOMPARE(world.settingsOpened, 1);
    }

    void aRowShowsItsFolder()
    {
        World world;
        world.track(2, 1);
        world.engine.refresh();
        world.show();
        QTest::mouseClick(world.view->findChildren<RepoRow *>().at(1), Qt::LeftButton);
        QCOMPARE(world.viewer.shown, words({"/src/repository-2"}));
    }

    // Refreshing

    void beforeTheFirstRefreshNothingSaysWhenItWas()
    {
        World world;
        world.show();
        QVERIFY(world.named("updated").isHidden());
        QCOMPARE(world.textsOf("footer"), QStringList());
        QCOMPARE(world.engine.timers.live().size(), 2);
    }

    void whileARefreshRunsItsButtonIsHalfTransparentAndInert()
    {
        World world;
        HeldGit git(world);
        world.show();
        auto &button = world.named<IconButton>("refresh");
        QCOMPARE(button.opacity(), 1.0);
        QVERIFY(button.isEnabled());

        world.click("refresh");
        QTRY_VERIFY(!button.isEnabled());
        QCOMPARE(button.opacity(), 0.5);
        QVERIFY(QAccessible::queryAccessibleInterface(&button)->state().disabled);
        world.click("refresh");
        pressAccessibly(button);
        World::settle();
        QTRY_COMPARE(git.asked(), 1);

        git.letGo();
        QTRY_VERIFY(button.isEnabled());
        QCOMPARE(button.opacity(), 1.0);
        QCOMPARE(git.asked(), 1);
    }

    void theRefreshButtonGetsTheKeyboardBack()
    {
        World world;
        HeldGit git(world);
        world.show();
        world.view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(world.view.get()));
        auto &button = world.named<IconButton>("refresh");
        button.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&button, Qt::Key_Space);
        QTRY_VERIFY(!button.isEnabled());
        QCOMPARE(world.view->focusWidget(), nullptr);
        git.letGo();
        QTRY_VERIFY(button.isEnabled());
        QCOMPARE(world.view->focusWidget(), &button);
    }

    void aFocusThatMovedOnMeanwhileStaysWhereItIs()
    {
        World world;
        HeldGit git(world);
        world.show();
        world.view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(world.view.get()));
        auto &button = world.named<IconButton>("refresh");
        button.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&button, Qt::Key_Space);
        QTRY_VERIFY(!button.isEnabled());
        world.named("showYear").setFocus(Qt::TabFocusReason);
        git.letGo();
        QTRY_VERIFY(button.isEnabled());
        QCOMPARE(world.view->focusWidget(), &world.named("showYear"));
    }

    // Following what is published

    void aBurstOfChangesIsRenderedOnce()
    {
        World world;
        world.show();
        const auto before = world.renderings;
        for (const bool isYear : {true, false, true, true, false, true})
            world.engine.manager.setShowYearView(isYear);
        QCOMPARE(world.renderings, before);
        World::settle();
        QCOMPARE(world.renderings, before + 1);
        QVERIFY(world.named("year").isVisible());
    }

    void aRefreshIsRenderedOnceAsItBeginsAndOnceAsItEnds()
    {
        World world;
        world.track(3, 2);
        world.show();
        const auto before = world.renderings;
        world.engine.refresh();
        World::settle();
        QVERIFY(world.renderings - before <= 2);
        QVERIFY(world.textsOf("header").contains(QLatin1String("3 tracked")));
    }

    void onlyWhatChangedIsPainted()
    {
        World world;
        world.track(3, 2);
        world.engine.refresh();
        auto &view = world.show();
        const auto places = placesIn(view);
        world.engine.script(QStringLiteral("/src/repository-1"), commits("2026-11-20", 4), commits("2026-11-20", 4),
                            "2026-11-20T09:00:00+00:00");
        PaintCounter paints;
        world.engine.refresh();
        World::settle();

        QCOMPARE(placesIn(view), places);
        QCOMPARE(paints.of(&textNamed(world, "4 commits")), 1);
        QCOMPARE(paints.of(&textNamed(world, "4 today")), 1);
        QCOMPARE(paints.of(view.findChildren<DayColumn *>().last()), 1);
        QCOMPARE(paints.of(view.findChildren<DayColumn *>().first()), 0);
        QCOMPARE(paints.of(&world.named("currentStreak")), 0);
        QCOMPARE(paints.of(&textNamed(world, "Longest")), 0);
        QCOMPARE(paints.of(&textNamed(world, "repository-2")), 0);
        QCOMPARE(paints.of(&textNamed(world, "Show Year")), 0);
        QCOMPARE(paints.of(&world.named("settings")), 0);
    }

    void onlyTheSectionThatIsShownIsRendered()
    {
        World world;
        world.track(1, 2);
        world.engine.refresh();
        world.show();
        const auto &year = world.named<YearHeatmapView>("yearHeatmap");
        const auto *const today = world.view->findChildren<DayColumn *>().last();
        QCOMPARE(year.cells(), 0);
        world.engine.manager.setShowYearView(true);
        World::settle();
        QCOMPARE(year.cells(), 371);
        world.engine.script(QStringLiteral("/src/repository-1"), commits("2026-11-20", 4), commits("2026-11-20", 4),
                            "2026-11-20T09:00:00+00:00");
        world.engine.refresh();
        World::settle();
        QCOMPARE(world.text("yearCommits"), QStringLiteral("4 commits"));
        QCOMPARE(today->count(), 2);
        world.engine.manager.setShowYearView(false);
        World::settle();
        QCOMPARE(today->count(), 4);
    }

    void aRefreshThatFindsNothingNewPaintsOnlyItsButton()
    {
        World world;
        world.track(3, 2);
        world.engine.refresh();
        auto &view = world.show();
        PaintCounter paints;
        world.engine.refresh();
        World::settle();
        for (const auto *const name : {"header", "week", "repositories", "settings", "updated"})
            QCOMPARE(paints.of(&world.named(name)), 0);
        for (auto *const text : view.findChildren<Text *>())
            QCOMPARE(paints.of(text), 0);
    }

    // Time

    void theTextOfTheLastRefreshCountsOnWhileItIsShown()
    {
        World world;
        world.engine.refresh();
        world.show();
        QCOMPARE(world.text("updated"), QStringLiteral("Updated 0 sec ago"));
        for (int second = 1; second <= 61; ++second) {
            world.engine.clock.advance(1s);
            world.engine.timers.fire(indexOfTick(world));
        }
        QCOMPARE(world.text("updated"), QStringLiteral("Updated 1 min, 1 sec ago"));
    }

    void aTickRendersNothingElse()
    {
        World world;
        world.engine.refresh();
        world.show();
        const auto before = world.renderings;
        PaintCounter paints;
        world.engine.clock.advance(1s);
        world.engine.timers.fire(indexOfTick(world));
        QTRY_COMPARE(paints.of(&world.named("updated")), 1);
        QCOMPARE(world.renderings, before);
        QCOMPARE(paints.of(&world.named("header")), 0);
    }

    void theNextTickComesWhenTheTextIsDueToChange()
    {
        World world;
        world.engine.refresh();
        world.engine.clock.advance(1300ms);
        world.show();
        QCOMPARE(world.engine.timers.live().at(indexOfTick(world)).interval, FakeTimers::Seconds(0.7));
    }

    void aClockThatWasSetBackCountsFromNothing()
    {
        World world;
        world.engine.refresh();
        world.engine.clock.advance(-90500ms);
        world.show();
        QCOMPARE(world.text("updated"), QStringLiteral("Updated 0 sec ago"));
        const auto interval = world.engine.timers.live().at(indexOfTick(world)).interval;
        QVERIFY(interval.count() > 0 && interval.count() <= 1);
    }

    void hiddenItNeedsNoTimer()
    {
        World world;
        world.engine.refresh();
        const auto others = world.engine.timers.live().size();
        auto &view = world.make();
        QCOMPARE(world.engine.timers.live().size(), others);
        view.show();
        QCOMPARE(world.engine.timers.live().size(), others + 2);
        view.hide();
        QCOMPARE(world.engine.timers.live().size(), others);
        world.engine.refresh();
        World::settle();
        QCOMPARE(world.engine.timers.live().size(), others);
    }

    void whatTimeDidWhileItWasHiddenIsShownAtOnce()
    {
        World world;
        world.engine.refresh();
        auto &view = world.show();
        view.hide();
        world.engine.clock.advance(2h + 5min);
        view.show();
        QCOMPARE(world.text("updated"), QStringLiteral("Updated 2 hr, 5 min ago"));
    }

    void atMidnightTheDotLeavesTheStrip()
    {
        World world;
        world.track(1, 1);
        world.engine.refresh();
        world.engine.clock.setNow(instant("2026-11-20T23:59:50Z"));
        auto &view = world.show();
        const auto columns = view.findChildren<DayColumn *>();
        const auto isToday = [](const DayColumn *column) { return column->isToday(); };
        QCOMPARE(std::count_if(columns.begin(), columns.end(), isToday), 1);
        QVERIFY(columns.last()->isToday());

        const auto nextDay = indexOfInterval(world, FakeTimers::Seconds(10));
        world.engine.clock.advance(10s);
        world.engine.timers.fire(nextDay);
        QCOMPARE(std::count_if(columns.begin(), columns.end(), isToday), 0);
        QCOMPARE(world.engine.timers.live().at(indexOfInterval(world, FakeTimers::Seconds(24h))).repeats, false);
    }

    void anotherZoneIsTakenUpAtTheNextRendering()
    {
        World world;
        world.track(1, 1);
        world.engine.refresh();
        world.show();
        QVERIFY(world.textsOf("week").contains(QLatin1String("Fri, 1")));
        world.engine.clock.setZone("America/New_York");
        world.view->renderNow();
        QVERIFY(world.textsOf("week").contains(QLatin1String("Thu, 1")));
        QVERIFY(!world.textsOf("week").contains(QLatin1String("Fri, 1")));
    }

    void anotherLocaleIsTakenUpAtTheNextRendering()
    {
        World world;
        world.track(1, 1);
        world.engine.refresh();
        world.show();
        world.locale = "fr_FR";
        world.view->renderNow();
        QVERIFY2(world.textsOf("week").contains(QLatin1String("ven., 1")),
                 qPrintable(world.textsOf("week").join(u'|')));
        QVERIFY(world.textsOf("week").contains(QLatin1String("Last 7 Days")));
    }

    // The year

    void openingTheYearBringsTodayIntoSight()
    {
        World world;
        world.engine.refresh();
        world.show();
        world.engine.manager.setShowYearView(true);
        World::settle();
        QVERIFY(isTodayInSight(world));
        auto *const bar = world.named<QScrollArea>("yearScrollArea").horizontalScrollBar();
        QVERIFY(bar->isVisible());
        QCOMPARE(world.named("yearScrollArea").height(), 100);
        QCOMPARE(world.named("yearScrollArea").focusPolicy(), Qt::NoFocus);
        bar->setValue(0);
        QVERIFY(!isTodayInSight(world));

        world.engine.manager.setShowYearView(false);
        World::settle();
        world.engine.manager.setShowYearView(true);
        World::settle();
        QVERIFY(isTodayInSight(world));
    }

    void aYearOpenedWhileHiddenBringsTodayIntoSightOnceShown()
    {
        World world;
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        world.show();
        QTRY_VERIFY(isTodayInSight(world));
    }

    void reopeningTheWindowLeavesTheYearWhereItWasScrolledTo()
    {
        World world;
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        auto &view = world.show();
        QTRY_VERIFY(isTodayInSight(world));
        auto *const bar = world.named<QScrollArea>("yearScrollArea").horizontalScrollBar();
        bar->setValue(7);
        view.hide();
        view.show();
        World::settle();
        QCOMPARE(bar->value(), 7);
        QVERIFY(world.named("year").isVisible());
    }

    void aWheelMovesTheYearSideways_data()
    {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QPoint>("turn");
        QTest::addColumn<int>("expected");
        const auto row = [](const char *name, Qt::LayoutDirection direction, Qt::KeyboardModifiers modifiers,
                            QPoint turn,
                            int expected) { QTest::newRow(name) << direction << modifiers << turn << expected; };
        row("up, to the days before", Qt::LeftToRight, {}, {0, 120}, 100 - 36);
        row("down, to the days after", Qt::LeftToRight, {}, {0, -120}, 100 + 36);
        row("up with Shift", Qt::LeftToRight, Qt::ShiftModifier, {0, 120}, 100 - 36);
        row("down with Shift", Qt::LeftToRight, Qt::ShiftModifier, {0, -120}, 100 + 36);
        row("sideways", Qt::LeftToRight, {}, {-120, 0}, 100 + 36);
        row("a little askew", Qt::LeftToRight, {}, {10, -120}, 100 + 36);
        row("as far down as sideways", Qt::LeftToRight, {}, {120, -120}, 100 + 36);
        row("down, written from the right", Qt::RightToLeft, {}, {0, -120}, 100 + 36);
    }

    void aWheelMovesTheYearSideways()
    {
        QFETCH(Qt::LayoutDirection, direction);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QPoint, turn);
        World world;
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        auto &view = world.show();
        view.setLayoutDirection(direction);
        World::settle();
        QTRY_VERIFY(isTodayInSight(world));
        const auto &area = world.named<QScrollArea>("yearScrollArea");
        area.horizontalScrollBar()->setValue(100);
        const QPointF middle = area.viewport()->rect().center();
        QWheelEvent event(middle, area.viewport()->mapToGlobal(middle), {}, turn, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(area.viewport(), &event);
        QTEST(area.horizontalScrollBar()->value(), "expected");
    }

    void theYearFadesTowardsMoreOfIt_data()
    {
        QTest::addColumn<int>("scrolled");
        QTest::addColumn<bool>("isLeftFaded");
        QTest::addColumn<bool>("isRightFaded");
        QTest::newRow("at its beginning") << 0 << false << true;
        QTest::newRow("between") << 90 << true << true;
        QTest::newRow("at its end") << 208 << true << false;
    }

    void theYearFadesTowardsMoreOfIt()
    {
        QFETCH(int, scrolled);
        QFETCH(bool, isLeftFaded);
        QFETCH(bool, isRightFaded);
        World world;
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        world.show();
        QTRY_VERIFY(isTodayInSight(world));
        const auto &area = world.named<QScrollArea>("yearScrollArea");
        area.horizontalScrollBar()->setValue(scrolled);
        const auto picture = pictureOf(*area.viewport(), 1);
        const auto standsOut = [&picture](int x) {
            double best = 1;
            for (int y = 0; y < picture.height(); ++y)
                best = std::max(best, style::contrast(picture.pixelColor(x, y), lightPalette().window().color()));
            return best;
        };
        const auto right = picture.width() - 1;
        QCOMPARE(standsOut(0) < 1.02, isLeftFaded);
        QCOMPARE(standsOut(right) < 1.02, isRightFaded);
        QVERIFY(standsOut(22) > 1.1 && standsOut(right - 22) > 1.1);
    }

    void theDayThatTheKeysHaveReachedIsNotFaded()
    {
        World world;
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        world.show();
        QTRY_VERIFY(isTodayInSight(world));
        auto &year = world.named<YearHeatmapView>("yearHeatmap");
        const auto *const bar = world.named<QScrollArea>("yearScrollArea").horizontalScrollBar();
        year.setFocus();
        for (int week = 0; week < 52; ++week) {
            QTest::keyClick(&year, Qt::Key_Left);
            const auto place = year.rectangleOf(*year.currentPaintedChild()).translated(year.pos());
            QVERIFY(bar->value() == 0 || place.left() >= YearHeatmapView::fade());
        }
        QCOMPARE(bar->value(), 0);
    }

    void writtenFromTheRightTheYearBringsTodayIntoSightToo()
    {
        World world;
        world.engine.refresh();
        auto &view = world.show();
        view.setLayoutDirection(Qt::RightToLeft);
        World::settle();
        world.engine.manager.setShowYearView(true);
        World::settle();
        QTRY_VERIFY(isTodayInSight(world));
    }

    void noDayOfTheYearIsCutOff_data()
    {
        QTest::addColumn<int>("fontHeight");
        QTest::addColumn<int>("scrollBar");
        QTest::newRow("a tiny font") << 7 << 14;
        QTest::newRow("a small font") << 9 << 14;
        QTest::newRow("a usual font") << 13 << 14;
        QTest::newRow("a usual font and a thick scroll bar") << 13 << 21;
        QTest::newRow("a large font") << 40 << 14;
    }

    void noDayOfTheYearIsCutOff()
    {
        QFETCH(int, fontHeight);
        QFETCH(int, scrollBar);
        const ScrollBarsOf thickness(scrollBar);
        setFontHeight(fontHeight);
        World world;
        world.engine.refresh();
        world.engine.manager.setShowYearView(true);
        world.show();
        const auto &heatmap = world.named<YearHeatmapView>("yearHeatmap");
        QTRY_VERIFY(world.named<QScrollArea>("yearScrollArea").horizontalScrollBar()->isVisible());
        QVERIFY2(
            heatmap.parentWidget()->height() >= heatmap.height(),
            qPrintable(QStringLiteral("%1 of %2 pixels").arg(heatmap.parentWidget()->height()).arg(heatmap.height())));
    }

    void noFigureUpToAThousandMillionsIsCutOff_data()
    {
        QTest::addColumn<qint64>("figure");
        for (const qint64 figure : {731LL, 99'999LL, 1'000'000'000LL, -3LL})
            QTest::addRow("%lld", figure) << figure;
    }

    void noFigureUpToAThousandMillionsIsCutOff()
    {
        QFETCH(qint64, figure);
        HeaderSection header;
        header.setFixedWidth(300);
        header.setFigures({731, 731, figure, 1000, false, true});
        header.show();
        World::settle();
        for (const auto *const text : header.findChildren<Text *>())
            QVERIFY2(text->width() >= text->sizeHint().width(), qPrintable(text->text()));
    }

    void theKeyboardOpensNoOtherRepositoryThanItReached()
    {
        World world;
        world.track(2, 1);
        world.engine.refresh();
        world.show();
        world.view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(world.view.get()));
        auto *const second = world.view->findChildren<RepoRow *>().at(1);
        second->setFocus(Qt::TabFocusReason);
        QCOMPARE(second->path(), QStringLiteral("/src/repository-2"));
        world.engine.script(QStringLiteral("/src/repository-2"), commits("2026-11-20", 1), commits("2026-11-20", 1),
                            "2026-11-20T11:00:00+00:00");
        world.engine.refresh();
        World::settle();
        if (auto *const focused = world.view->focusWidget())
            QTest::keyClick(focused, Qt::Key_Return);
        QVERIFY(!world.viewer.shown.contains(QStringLiteral("/src/repository-1")));
    }

    void theFocusStaysWithItsRepository()
    {
        World world;
        world.track(3, 1);
        world.engine.refresh();
        world.show();
        const auto rows = world.view->findChildren<RepoRow *>();
        rows.at(2)->setFocus(Qt::TabFocusReason);
        world.engine.refresh();
        World::settle();
        QCOMPARE(world.view->focusWidget(), rows.at(2));
        rows.at(1)->setFocus(Qt::TabFocusReason);
        const auto path = rows.at(1)->path();
        world.engine.script(path, commits("2026-11-20", 1), commits("2026-11-20", 1), "2026-11-20T11:00:00+00:00");
        world.engine.refresh();
        World::settle();
        QCOMPARE(rows.at(0)->path(), path);
        QCOMPARE(world.view->focusWidget(), rows.at(0));
    }

    void theFocusOfARowThatGoesDoesNotLandOnTheGear()
    {
        World world;
        world.track(2, 1);
        world.engine.refresh();
        world.show();
        world.view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(world.view.get()));
        world.view->findChildren<RepoRow *>().at(1)->setFocus(Qt::TabFocusReason);
        world.engine.settings.removeRepository(world.engine.settings.trackedRepositories().at(1));
        world.engine.refresh();
        World::settle();
        QVERIFY(world.view->focusWidget() != &world.named("settings"));
    }

    // A guest of the desktop

    void aChangeOfTheDesktopIsFollowed_data()
    {
        QTest::addColumn<int>("fontHeight");
        QTest::addColumn<bool>("isDark");
        QTest::newRow("a dark palette") << 13 << true;
        QTest::newRow("a larger font") << 20 << false;
        QTest::newRow("both") << 26 << true;
    }

    void aChangeOfTheDesktopIsFollowed()
    {
        QFETCH(int, fontHeight);
        QFETCH(bool, isDark);
        World world;
        world.track(3, 2);
        world.engine.refresh();
        auto &view = world.show();
        setFontHeight(fontHeight);
        QApplication::setPalette(isDark ? darkPalette() : lightPalette());
        World::settle();

        World fresh;
        fresh.track(3, 2);
        fresh.engine.refresh();
        auto &expected = fresh.show();
        QCOMPARE(view.size(), expected.size());
        QCOMPARE(view.width(), qRound(300 * fontHeight / 13.0));
        for (auto *const each : {&view, &expected}) {
            if (auto *const focused = each->focusWidget())
                focused->clearFocus();
        }
        QCOMPARE(view.grab().toImage(), expected.grab().toImage());
    }

    void theKeyboardKeepsItsPlaceThroughAChangeOfTheFont_data()
    {
        QTest::addColumn<QString>("place");
        for (const auto *const place : {"Show Year", "repository-2, No commits", "Settings", ""})
            QTest::addRow("%s", *place ? place : "nowhere") << QString::fromLatin1(place);
    }

    void theKeyboardKeepsItsPlaceThroughAChangeOfTheFont()
    {
        QFETCH(QString, place);
        World world;
        world.track(2, 1);
        world.engine.refresh();
        world.show();
        const auto nameOfFocus = [&world] {
            const auto *const focused = world.view->focusWidget();
            return focused ? focused->accessibleName() : QString();
        };
        if (auto *const focused = world.view->focusWidget())
            focused->clearFocus();
        for (auto *const button : world.view->findChildren<QAbstractButton *>()) {
            if (!place.isEmpty() && button->accessibleName() == place)
                button->setFocus(Qt::TabFocusReason);
        }
        QCOMPARE(nameOfFocus(), place);
        setFontHeight(20);
        World::settle();
        QCOMPARE(world.view->width(), qRound(300 * 20 / 13.0));
        QCOMPARE(nameOfFocus(), place);
    }

    void writtenFromTheRightItIsMirrored()
    {
        World world;
        world.track(1, 1);
        world.engine.refresh();
        auto &view = world.show();
        view.setLayoutDirection(Qt::RightToLeft);
        World::settle();
        const auto columns = view.findChildren<DayColumn *>();
        QVERIFY(columns.first()->x() > columns.last()->x());
        QVERIFY(world.named("currentStreak").x() > view.width() / 2);
        QCOMPARE(world.named("showYear").findChild<SymbolView *>()->name(), QStringLiteral("chevron.left"));
        QVERIFY(world.named("settings").x() < world.named("refresh").x());
    }

private:
    // Git that waits until it is let go, in the one repository of the world.
    class HeldGit
    {
    public:
        explicit HeldGit(World &world)
        {
            world.track(1, 1);
            world.engine.runner.answerWith(QStringLiteral("/src/repository-1|rev-parse --git-dir"), [this] {
                ++m_asked;
                m_gate.acquire();
                return QByteArray(".git\n");
            });
        }
        ~HeldGit() { letGo(); }
        void letGo() { m_gate.release(); }
        [[nodiscard]] int asked() const { return m_asked; }

    private:
        std::counting_semaphore<> m_gate{0};
        std::atomic<int> m_asked = 0;
    };

    // Another desktop's style for as long as this lives.
    class ScrollBarsOf
    {
    public:
        explicit ScrollBarsOf(int thickness) { QApplication::setStyle(new Style(thickness)); }
        ~ScrollBarsOf() { QApplication::setStyle(QStringLiteral("Fusion")); }

    private:
        class Style : public QProxyStyle
        {
        public:
            explicit Style(int thickness)
                : QProxyStyle(QStringLiteral("Fusion"))
                , m_thickness(thickness)
            {
            }
            int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
            {
                return metric == PM_ScrollBarExtent ? m_thickness : QProxyStyle::pixelMetric(metric, option, widget);
            }

        private:
            int m_thickness;
        };
    };

    static QPoint firstDifference(const QImage &one, const QImage &other)
    {
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x) {
                if (one.pixel(x, y) != other.pixel(x, y))
                    return {x, y};
            }
        }
        qFatal("There is no difference");
    }

    // The smallest rectangle around what is not of the ground's colour.
    static QRect extentOf(const QImage &picture)
    {
        QRect extent;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != picture.pixel(0, 0))
                    extent |= QRect(x, y, 1, 1);
            }
        }
        return extent;
    }

    static void setFontHeight(int pixels)
    {
        auto font = QApplication::font();
        font.setPixelSize(pixels);
        QApplication::setFont(font);
    }

    static Text &textNamed(const World &world, const char *text)
    {
        for (auto *const child : world.view->findChildren<Text *>()) {
            if (child->text() == QString::fromUtf8(text) && child->isVisible())
                return *child;
        }
        qFatal("There is no text %s", text);
    }

    // The lines across, from top to bottom.
    static QList<QRect> fullDividers(const MenuBarView &view)
    {
        QList<QRect> dividers;
        for (auto *const divider : view.findChildren<Divider *>()) {
            if (divider->isVisible() && divider->width() == view.width() && divider->height() == 1)
                dividers.append(QRect(divider->mapTo(&view, QPoint()), divider->size()));
        }
        std::sort(dividers.begin(), dividers.end(), [](auto &one, auto &two) { return one.top() < two.top(); });
        return dividers;
    }

    static bool isTodayInSight(const World &world)
    {
        const auto &heatmap = *world.view->findChild<YearHeatmapView *>();
        const auto today = heatmap.mapTo(heatmap.parentWidget(), QPoint(heatmap.todayX(), 1));
        return heatmap.isVisible() && heatmap.parentWidget()->rect().contains(today);
    }

    static std::size_t indexOfInterval(const World &world, FakeTimers::Seconds interval)
    {
        const auto &live = world.engine.timers.live();
        const auto found = std::find_if(live.begin(), live.end(),
                                        [interval](const auto &timer) { return timer.interval == interval; });
        if (found == live.end())
            qFatal("There is no timer of %g seconds", interval.count());
        return std::size_t(found - live.begin());
    }

    // The tick that moves the text of the last refresh: the only one of a second or less.
    static std::size_t indexOfTick(const World &world)
    {
        const auto &live = world.engine.timers.live();
        const auto found =
            std::find_if(live.begin(), live.end(), [](const auto &timer) { return timer.interval.count() <= 1; });
        if (found == live.end())
            qFatal("Nothing ticks");
        return std::size_t(found - live.begin());
    }
};

VELQUARIN_WINDOW_TEST(TestMenuBarView)
#include "tst_menubarview.moc"
