// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// How long the dashboard takes to show other figures: ten repositories and a full year, of which every value changes,
// rendered and painted whole into a picture of one pixel a point. What is told is the median of many times.

#include "support/Engine.h"
#include "support/RecordingFileViewer.h"
#include "Views/Dashboard/MenuBarView.h"

#include <QElapsedTimer>
#include <QImage>
#include <QTest>

#include <algorithm>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

constexpr int repositories = 10;
constexpr int days = 365;
constexpr int times = 201;

QString pathOf(int repository)
{
    return QStringLiteral("/src/repository-%1").arg(repository);
}

// The author dates of one repository's commits. Those of the second kind leave today and one day of the past out.
QByteArray logOf(const Engine &engine, int period, bool isSecondKind)
{
    const auto today = engine.clock.calendar().dateOf(engine.clock.now());
    QByteArray log;
    for (int ago = 0; ago < period; ++ago) {
        const bool isFree = isSecondKind && (ago == 0 || ago == 100);
        const auto line = today.addDays(-ago).toString(Qt::ISODate).toLatin1() + '\n';
        log += line.repeated(isFree ? 0 : 1 + (isSecondKind ? ago : ago + 1) % 2);
    }
    return log;
}

// The program's dashboard on figures that can be exchanged behind its back.
struct World
{
    Engine engine;
    RecordingFileViewer viewer;
    std::unique_ptr<MenuBarView> view;

    explicit World(bool isYear)
    {
        for (int number = 0; number < repositories; ++number)
            engine.settings.addRepository(pathOf(number), false);
        exchangeFigures(0);
        engine.manager.setShowYearView(isYear);
        view = std::make_unique<MenuBarView>(engine.manager, engine.clock, engine.timers, viewer, [] {});
        view->show();
        QCoreApplication::processEvents();
    }

    // In silence, so that the rendering is left for later.
    void exchangeFigures(int turn)
    {
        const bool isSecondKind = turn % 2 != 0;
        const QByteArray lastDate = isSecondKind ? "2026-11-19T09:00:00+00:00" : "2026-11-20T09:00:00+00:00";
        for (int number = 0; number < repositories; ++number)
            engine.script(pathOf(number), logOf(engine, 7, isSecondKind), logOf(engine, days, isSecondKind), lastDate);
        const QSignalBlocker silence(engine.manager);
        engine.clock.advance(1s);
        engine.refresh();
    }
};

double millisecondsToShow(MenuBarView &view, QImage &picture)
{
    QElapsedTimer elapsed;
    elapsed.start();
    view.renderNow();
    view.QWidget::render(&picture);
    return double(elapsed.nsecsElapsed()) / 1e6;
}

void tell(QList<double> measured)
{
    std::ranges::sort(measured);
    qInfo("median %.2f ms, from %.2f to %.2f ms, %d times", measured.at(measured.size() / 2), measured.first(),
          measured.last(), int(measured.size()));
    QTest::setBenchmarkResult(1e6 * measured.at(measured.size() / 2), QTest::WalltimeNanoseconds);
}

}  // namespace

class BenchDashboard : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void otherFigures_data()
    {
        QTest::addColumn<bool>("isYear");
        QTest::newRow("in the week") << false;
        QTest::newRow("in the year") << true;
    }

    void otherFigures()
    {
        QFETCH(bool, isYear);
        World world(isYear);
        QImage picture(world.view->size(), QImage::Format_ARGB32_Premultiplied);
        QList<double> measured;
        QImage before;
        for (int turn = 1; turn <= times; ++turn) {
            world.exchangeFigures(turn);
            measured.append(millisecondsToShow(*world.view, picture));
            QVERIFY(picture != std::exchange(before, picture.copy()));
        }
        tell(measured);
    }
};

QTEST_MAIN(BenchDashboard)
#include "dashboard.moc"
