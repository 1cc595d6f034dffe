// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Strict.h"
#include "support/TestProgram.h"
#include "Views/Dashboard/DayColor.h"
#include "Views/Dashboard/RepositoriesSection.h"
#include "Views/Dashboard/YearSection.h"

#include <QTest>

#include <optional>

using namespace velquarin;
using namespace velquarin::test;
using style::Accent;

namespace {

Instant day(int number)
{
    return Instant(std::chrono::hours(24 * number));
}

}  // namespace

class TestDashboardFigures : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }

    void anEmptyYearHasNoCommitsAndNoActiveDays() { QCOMPARE(yearTotals({}), (YearTotals{0, 0})); }

    void everyDayOfTheHistoryCountsHoweverLongAgo()
    {
        QCOMPARE(yearTotals({{day(0), 3}, {day(364), 1}, {day(729), 1000}}), (YearTotals{1004, 3}));
    }

    void aDayWithoutCommitsIsNoActiveDay()
    {
        QCOMPARE(yearTotals({{day(0), 0}, {day(1), -1}, {day(2), 1}}), (YearTotals{0, 1}));
    }

    void onlyWhatTheListLeavesOutIsCounted_data()
    {
        QTest::addColumn<qsizetype>("repositories");
        QTest::addColumn<qsizetype>("leftOut");
        QTest::newRow("none") << qsizetype(0) << qsizetype(0);
        QTest::newRow("three") << qsizetype(3) << qsizetype(0);
        QTest::newRow("ten fill the list") << qsizetype(10) << qsizetype(0);
        QTest::newRow("eleven") << qsizetype(11) << qsizetype(1);
        QTest::newRow("a thousand") << qsizetype(1000) << qsizetype(990);
    }

    void onlyWhatTheListLeavesOutIsCounted()
    {
        QFETCH(qsizetype, repositories);
        QTEST(repositoriesLeftOut(repositories), "leftOut");
    }

    void moreCommitsMakeAFullerSquare_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<Accent>("accent");
        QTest::addColumn<double>("opacity");
        QTest::newRow("no commit is grey") << qint64(0) << Accent::Grey << 0.2;
        QTest::newRow("one") << qint64(1) << Accent::Green << 0.4;
        QTest::newRow("two") << qint64(2) << Accent::Green << 0.4;
        QTest::newRow("three") << qint64(3) << Accent::Green << 0.6;
        QTest::newRow("five") << qint64(5) << Accent::Green << 0.6;
        QTest::newRow("six") << qint64(6) << Accent::Green << 0.8;
        QTest::newRow("ten") << qint64(10) << Accent::Green << 0.8;
        QTest::newRow("eleven is full") << qint64(11) << Accent::Green << 1.0;
        QTest::newRow("a thousand is full") << qint64(1000) << Accent::Green << 1.0;
        QTest::newRow("less than none is full") << qint64(-1) << Accent::Green << 1.0;
    }

    void moreCommitsMakeAFullerSquare()
    {
        QFETCH(qint64, count);
        QTEST(colorForCount(count).accent.value(), "accent");
        QTEST(colorForCount(count).opacity, "opacity");
    }

    void aSquareOfTheYearHasItsColour_data()
    {
        using Shown = std::optional<Accent>;
        constexpr auto grey = Accent::Grey;
        constexpr auto green = Accent::HeatGreen;
        QTest::addColumn<qint64>("count");
        QTest::addColumn<bool>("isInRange");
        QTest::addColumn<Shown>("accent");
        QTest::addColumn<double>("opacity");
        const auto row = [](const char *name, qint64 count, bool isInRange, Shown accent, double opacity) {
            QTest::newRow(name) << count << isInRange << accent << opacity;
        };
        row("no commits are grey", 0, true, grey, 0.15);
        row("one is the palest green", 1, true, green, 0.3);
        row("two are as pale", 2, true, green, 0.3);
        row("three are stronger", 3, true, green, 0.5);
        row("five are as strong as three", 5, true, green, 0.5);
        row("six are stronger again", 6, true, green, 0.7);
        row("ten are as strong as six", 10, true, green, 0.7);
        row("eleven are the strongest", 11, true, green, 0.9);
        row("so are a thousand", 1000, true, green, 0.9);
        row("less than none is clear", -1, true, std::nullopt, 0);
        row("out of range nothing is drawn", -1, false, std::nullopt, 0);
        row("out of range not even commits are drawn", 12, false, std::nullopt, 0);
    }

    void aSquareOfTheYearHasItsColour()
    {
        QFETCH(qint64, count);
        QFETCH(bool, isInRange);
        QFETCH(std::optional<style::Accent>, accent);
        QFETCH(double, opacity);
        QCOMPARE(colorForCount(count, isInRange), (DayColor{accent, opacity}));
    }
};

VELQUARIN_TEST_RUN(velquarin::test::runAlone<TestDashboardFigures>)
#include "tst_dashboardfigures.moc"
