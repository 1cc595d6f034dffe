// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/HeatmapGeometry.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

constexpr int weeksOfYear = 53;
constexpr int cellsOfYear = weeksOfYear * 7;

HeatmapGeometry year(double pixelsPerPoint = 1, Qt::LayoutDirection direction = Qt::LeftToRight)
{
    return HeatmapGeometry({weeksOfYear, 13, direction}, pixelsPerPoint);
}

void scaleRows()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("one device pixel a point") << 1.0;
    QTest::newRow("one and a quarter") << 1.25;
    QTest::newRow("one and a half") << 1.5;
    QTest::newRow("one and three quarters") << 1.75;
    QTest::newRow("two") << 2.0;
    QTest::newRow("a font a little larger than ours at two") << 2 * 15 / 13.0;
}

}  // namespace

class TestHeatmapGeometry : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void squaresHaveTheirSizeInPoints_data();
    void squaresHaveTheirSizeInPoints();
    void weeksStandSideBySideAndDaysOneBelowTheOther();
    void labelsFollowOneAnotherWhereverTheirMonthsBegin();
    void theGridBeginsBelowTheLabels();
    void theWholePictureHoldsEverySquareAndLabel_data();
    void theWholePictureHoldsEverySquareAndLabel();
    void allSquaresAreAlikeAndNoneTouchesAnother_data();
    void allSquaresAreAlikeAndNoneTouchesAnother();
    void everyPointOfASquareFindsIt_data();
    void everyPointOfASquareFindsIt();
    void betweenAndBeyondTheSquaresIsNothing();
    void fromRightToLeftEverythingIsMirrored();
    void moreLabelsThanWeeksMakeThePictureWider();
    void anEmptyYearHasOnlyItsHeight();
};

void TestHeatmapGeometry::squaresHaveTheirSizeInPoints_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QRect>("secondDayOfSecondWeek");
    QTest::addColumn<QRect>("secondLabel");
    QTest::addColumn<QSize>("size");
    QTest::newRow("at one pixel a point") << 1.0 << QRect(9, 27, 8, 8) << QRect(36, 0, 36, 10) << QSize(476, 80);
    QTest::newRow("at one and a quarter") << 1.25 << QRect(11, 34, 10, 10) << QRect(44, 0, 44, 13) << QSize(582, 99);
    QTest::newRow("at one and a half") << 1.5 << QRect(14, 41, 12, 12) << QRect(56, 0, 56, 15) << QSize(740, 123);
    QTest::newRow("at two") << 2.0 << QRect(18, 54, 16, 16) << QRect(72, 0, 72, 20) << QSize(952, 160);
}

void TestHeatmapGeometry::squaresHaveTheirSizeInPoints()
{
    QFETCH(double, scale);
    const auto geometry = year(scale);
    QTEST(geometry.cell(8), "secondDayOfSecondWeek");
    QTEST(geometry.label(1), "secondLabel");
    QTEST(geometry.size(), "size");
    QCOMPARE(geometry.cornerRadius(), 2 * scale);
}

void TestHeatmapGeometry::weeksStandSideBySideAndDaysOneBelowTheOther()
{
    const auto geometry = year();
    QCOMPARE(geometry.cell(7).topLeft() - geometry.cell(0).topLeft(), QPoint(9, 0));
    QCOMPARE(geometry.cell(1).topLeft() - geometry.cell(0).topLeft(), QPoint(0, 9));
    QCOMPARE(geometry.cell(370).topLeft() - geometry.cell(0).topLeft(), QPoint(52 * 9, 6 * 9));
}

void TestHeatmapGeometry::labelsFollowOneAnotherWhereverTheirMonthsBegin()
{
    const auto geometry = year();
    for (int position = 0; position < 13; ++position)
        QCOMPARE(geometry.label(position), QRect(36 * position, 0, 36, 10));
}

void TestHeatmapGeometry::theGridBeginsBelowTheLabels()
{
    QCOMPARE(year().cell(0).topLeft(), QPoint(0, 18));
}

void TestHeatmapGeometry::theWholePictureHoldsEverySquareAndLabel_data()
{
    scaleRows();
}

void TestHeatmapGeometry::theWholePictureHoldsEverySquareAndLabel()
{
    QFETCH(double, scale);
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const auto geometry = year(scale, direction);
        const QRect whole({0, 0}, geometry.size());
        QRect all;
        for (int index = 0; index < cellsOfYear; ++index)
            all |= geometry.cell(index);
        for (int position = 0; position < 13; ++position)
            all |= geometry.label(position);
        QCOMPARE(all, whole);
    }
}

void TestHeatmapGeometry::allSquaresAreAlikeAndNoneTouchesAnother_data()
{
    scaleRows();
}

void TestHeatmapGeometry::allSquaresAreAlikeAndNoneTouchesAnother()
{
    QFETCH(double, scale);
    const auto geometry = year(scale);
    const auto size = geometry.cell(0).size();
    const auto gap = geometry.cell(7).left() - geometry.cell(0).right() - 1;
    QVERIFY(size.width() == size.height() && gap >= 1);
    for (int index = 0; index + 7 < cellsOfYear; ++index) {
        QCOMPARE(geometry.cell(index).size(), size);
        QCOMPARE(geometry.cell(index + 7).left() - geometry.cell(index).right() - 1, gap);
        if (index % 7 != 6)
            QCOMPARE(geometry.cell(index + 1).top() - geometry.cell(index).bottom() - 1, gap);
    }
}

void TestHeatmapGeometry::everyPointOfASquareFindsIt_data()
{
    scaleRows();
}

// The law that ties both directions together: a point lies in a square exactly when it is found there.
void TestHeatmapGeometry::everyPointOfASquareFindsIt()
{
    QFETCH(double, scale);
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const auto geometry = year(scale, direction);
        for (int index = 0; index < cellsOfYear; ++index) {
            const auto square = geometry.cell(index);
            for (const auto point : {square.topLeft(), square.bottomRight(), square.topRight(), square.center()})
                QCOMPARE(geometry.cellAt(point), index);
            const auto around = square.adjusted(-1, -1, 1, 1);
            for (const auto point : {around.topLeft(), around.bottomRight(), around.topRight(), around.bottomLeft()})
                QCOMPARE(geometry.cellAt(point), std::nullopt);
        }
    }
}

void TestHeatmapGeometry::betweenAndBeyondTheSquaresIsNothing()
{
    const auto geometry = year();
    for (const auto point : {QPoint(8, 20), QPoint(4, 26), QPoint(4, 5), QPoint(4, 12), QPoint(4, 17), QPoint(-1, 20),
                             QPoint(476, 20), QPoint(4, 80), QPoint(485, 20), QPoint(-9, -9)})
        QCOMPARE(geometry.cellAt(point), std::nullopt);
}

void TestHeatmapGeometry::fromRightToLeftEverythingIsMirrored()
{
    const auto geometry = year(1, Qt::RightToLeft);
    QCOMPARE(geometry.size(), year().size());
    QCOMPARE(geometry.cell(0), QRect(468, 18, 8, 8));
    QCOMPARE(geometry.cell(370), QRect(0, 72, 8, 8));
    QCOMPARE(geometry.label(0), QRect(440, 0, 36, 10));
    QCOMPARE(geometry.label(12), QRect(8, 0, 36, 10));
}

void TestHeatmapGeometry::moreLabelsThanWeeksMakeThePictureWider()
{
    const HeatmapGeometry geometry({2, 1, Qt::LeftToRight}, 1);
    QCOMPARE(geometry.size(), QSize(36, 80));
    QCOMPARE(geometry.cellAt({20, 20}), std::nullopt);
}

void TestHeatmapGeometry::anEmptyYearHasOnlyItsHeight()
{
    const HeatmapGeometry geometry({}, 1);
    QCOMPARE(geometry.size(), QSize(0, 80));
    QCOMPARE(geometry.cellAt({0, 20}), std::nullopt);
}

VELQUARIN_TEST_RUN(velquarin::test::runAlone<TestHeatmapGeometry>)
#include "tst_heatmapgeometry.moc"
