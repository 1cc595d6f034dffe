// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/NumberDrawing.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;

namespace {

const QString characters = QStringLiteral("0123456789k");

}  // namespace

class TestNumberDrawing : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void allAreOfOneHeightAndStandOnTheBaseline();
    void noTwoAreAlike();
    void charactersStandSideBySide();
    void whatIsNoDigitLeavesNothing();
};

void TestNumberDrawing::allAreOfOneHeightAndStandOnTheBaseline()
{
    for (const auto character : characters) {
        const auto bounds = numberDrawing(character).boundingRect();
        QVERIFY2(qAbs(bounds.bottom()) < 2 && qAbs(bounds.top() + 100) < 2, qPrintable(QString(character)));
        QVERIFY2(bounds.width() > 30 && bounds.width() < 70, qPrintable(QString(character)));
        QVERIFY(qAbs(bounds.left()) < 0.01);
    }
}

void TestNumberDrawing::noTwoAreAlike()
{
    for (const auto one : characters) {
        for (const auto other : characters)
            QCOMPARE(numberDrawing(one) == numberDrawing(other), one == other);
    }
}

void TestNumberDrawing::charactersStandSideBySide()
{
    const auto four = numberDrawing(QStringLiteral("4")).boundingRect().width();
    const auto two = numberDrawing(QStringLiteral("2")).boundingRect().width();
    const auto both = numberDrawing(QStringLiteral("42")).boundingRect().width();
    QVERIFY(both > four + two + 5);
    QVERIFY(both < four + two + 15);
}

void TestNumberDrawing::whatIsNoDigitLeavesNothing()
{
    QVERIFY(numberDrawing({}).isEmpty());
    QVERIFY(numberDrawing(QStringLiteral("-?")).isEmpty());
}

VELQUARIN_TEST(TestNumberDrawing)
#include "tst_numberdrawing.moc"
