// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/AnimatingStyle.h"
#include "support/Engine.h"
#include "support/Offscreen.h"
#include "support/RecordingFileViewer.h"
#include "support/TestProgram.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/Symbols.h"
#include "Views/Dashboard/MenuBarView.h"

#include <QApplication>
#include <QTest>

#include <functional>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

const QString busy = QStringLiteral("/src/busy");
const QString quiet = QStringLiteral("/src/quiet");

QByteArray commits(const char *day, int count)
{
    return (QByteArray(day) + '\n').repeated(count);
}

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

// What a widget without parts is known by.
QString nameOf(const QWidget &widget)
{
    const auto *const symbol = qobject_cast<const SymbolView *>(&widget);
    if (symbol != nullptr)
        return symbol->name();
    return widget.objectName() == QLatin1String("yearHeatmap") ? widget.objectName() : widget.accessibleName();
}

QList<QWidget *> partsWithoutParts(const QWidget &widget)
{
    auto all = widget.findChildren<QWidget *>();
    all.removeIf([](const QWidget *part) { return !part->findChildren<QWidget *>().isEmpty(); });
    return all;
}

// A dashboard on the screen; today is Friday, 20 November 2026. One repository has commits on five days of October and
// from Tuesday to yesterday, the other has none.
struct World
{
    Engine engine;
    RecordingFileViewer viewer;
    std::unique_ptr<MenuBarView> view;

    World()
    {
        engine.settings.addRepository(busy, false);
        engine.settings.addRepository(quiet, false);
        busyToday(0);
        engine.script(quiet, "", "", "");
        engine.refresh();
        view = std::make_unique<MenuBarView>(
            engine.manager, engine.clock, engine.timers, viewer, [] {}, [] { return QByteArray("en_US"); });
    }

    void show() const
    {
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            qFatal("The dashboard does not come up");
        settle();
    }

    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    void busyToday(int count, int onAnOldDay = 1)
    {
        auto week = commits("2026-11-20", count);
        for (const auto *const day : {"2026-11-19", "2026-11-18", "2026-11-17"})
            week += commits(day, 2);
        auto year = week + commits("2026-10-05", onAnOldDay);
        for (const auto *const day : {"2026-10-01", "2026-10-02", "2026-10-03", "2026-10-04"})
            year += commits(day, 1);
        engine.script(busy, week, year, count > 0 ? "2026-11-20T09:00:00+00:00" : "2026-11-19T09:00:00+00:00");
    }
};

using Change = std::function<void(World &)>;

}  // namespace

//! A value that changes while the dashboard is shown: what shows it is painted once, and everything else is left alone.
class TestDashboardPaints : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarningOfOurs();
        // What is painted once shall not be painted again on its way.
        QApplication::setStyle(new AnimatingStyle(0));
        QApplication::setPalette(lightPalette());
        auto font = QApplication::font();
        font.setPixelSize(13);
        QApplication::setFont(font);
    }

    void aChangePaintsOnceWhatShowsItAndNothingElse_data()
    {
        QTest::addColumn<bool>("isYear");
        QTest::addColumn<Change>("prepare");
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("painted");

        const Change nothing = [](World &) {};
        const Change refresh = [](World &world) { world.engine.refresh(); };
        const Change announceAll = [](World &world) {
            world.engine.manager.setShowYearView(world.engine.manager.showYearView());
        };
        QTest::newRow("an equal value") << false << nothing << announceAll << QStringList();
        QTest::newRow("the first commit of the day")
            << false << Change([](World &world) { world.busyToday(1); }) << refresh
            << texts({"flame.fill", "4", "7 commits", "Committed!", "Fri, 1", "1 today"});
        QTest::newRow("another commit of the day") << false << Change([](World &world) {
            world.busyToday(1);
            world.engine.refresh();
            world.busyToday(2);
        }) << refresh << texts({"8 commits", "Fri, 2", "2 today"});
        QTest::newRow("the last commit of one repository")
            << false << Change([](World &world) { world.engine.script(quiet, "", "", "2026-11-10T12:00:00+00:00"); })
            << refresh << texts({"1 wk. ago"});
        QTest::newRow("the day of an old commit, which the week does not show")
            << false << Change([](World &world) { world.busyToday(0, 4); }) << refresh << QStringList();
        QTest::newRow("the day of an old commit in the year")
            << true << Change([](World &world) { world.busyToday(0, 4); }) << refresh
            << texts({"yearHeatmap", "14 commits"});
        QTest::newRow("the longest streak")
            << false << Change([](World &world) { world.busyToday(0, 0); }) << refresh << texts({"4 days"});
        QTest::newRow("the time of the last refresh") << false << Change([](World &world) {
            world.engine.clock.advance(90s);
            world.view->renderNow();
        }) << refresh << texts({"Updated 0 sec ago"});
    }

    void aChangePaintsOnceWhatShowsItAndNothingElse()
    {
        QFETCH(bool, isYear);
        QFETCH(Change, prepare);
        QFETCH(Change, change);
        QFETCH(QStringList, painted);
        World world;
        world.engine.manager.setShowYearView(isYear);
        prepare(world);
        world.show();
        const auto places = placesIn(*world.view);

        PaintCounter paints;
        change(world);
        World::settle();
        QCOMPARE(paintedParts(world, paints), sorted(painted));
        QCOMPARE(movedParts(world, places, painted), QStringList());
    }

    // In a window that has room for either view; one that has to grow is painted whole.
    void aChangeOfTheViewLeavesHeaderAndFooterAlone()
    {
        World world;
        world.view->setFixedHeight(600);
        world.show();
        for (const bool isYear : {true, false}) {
            const auto places = placesIn(*world.view);
            PaintCounter paints;
            world.engine.manager.setShowYearView(isYear);
            World::settle();
            for (const auto *const name : {"header", "footer"}) {
                for (const auto *const part :
                     partsWithoutParts(*world.view->findChild<QWidget *>(QLatin1String(name)))) {
                    QCOMPARE(paints.of(part), 0);
                    QCOMPARE(placesIn(*world.view).value(part), places.value(part));
                }
            }
        }
    }

private:
    static QStringList texts(std::initializer_list<const char *> texts)
    {
        QStringList all;
        for (const auto *const text : texts)
            all.append(QString::fromUtf8(text));
        return all;
    }

    // The refresh's own button is told apart: it is dimmed for as long as the refresh runs.
    static QStringList paintedParts(const World &world, const PaintCounter &paints)
    {
        QStringList painted;
        for (const auto *const part : partsWithoutParts(*world.view)) {
            const bool isButton = part->objectName() == QLatin1String("refresh");
            for (int time = 0; !isButton && time < paints.of(part); ++time)
                painted.append(nameOf(*part));
        }
        return sorted(painted);
    }

    static QStringList movedParts(const World &world, const QHash<const QWidget *, QRect> &before,
                                  const QStringList &exceptions)
    {
        const auto after = placesIn(*world.view);
        QStringList moved;
        for (auto place = before.begin(); place != before.end(); ++place) {
            const auto name = nameOf(*place.key());
            if (after.value(place.key()) != place.value() && !exceptions.contains(name))
                moved.append(name);
        }
        return moved;
    }
};

VELQUARIN_WINDOW_TEST(TestDashboardPaints)
#include "tst_dashboardpaints.moc"
