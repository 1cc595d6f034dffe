// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RepositoryActions.h"

#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

class TestScanOutcome : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void nothingFoundIsSaid();
    void whatIsAllKnownIsCountedByWhatWasFound_data();
    void whatIsAllKnownIsCountedByWhatWasFound();
    void somethingNewNeedsNoWords();
};

void TestScanOutcome::nothingFoundIsSaid()
{
    const ScanOutcome expected{QStringLiteral("No git repositories found in selected folder"), false};
    QCOMPARE(scanOutcome(0, 0), expected);
}

void TestScanOutcome::whatIsAllKnownIsCountedByWhatWasFound_data()
{
    QTest::addColumn<int>("found");
    QTest::addColumn<QString>("message");
    QTest::newRow("one, without a singular") << 1 << QStringLiteral("Found 1 repos, all already tracked");
    QTest::newRow("three") << 3 << QStringLiteral("Found 3 repos, all already tracked");
    QTest::newRow("a thousand, without a separator") << 1000 << QStringLiteral("Found 1000 repos, all already tracked");
}

void TestScanOutcome::whatIsAllKnownIsCountedByWhatWasFound()
{
    QFETCH(int, found);
    QFETCH(QString, message);
    QCOMPARE(scanOutcome(found, 0), (ScanOutcome{message, false}));
}

void TestScanOutcome::somethingNewNeedsNoWords()
{
    QCOMPARE(scanOutcome(5, 1), (ScanOutcome{std::nullopt, true}));
    QCOMPARE(scanOutcome(1, 1), (ScanOutcome{std::nullopt, true}));
}

VELQUARIN_TEST(TestScanOutcome)
#include "tst_scanoutcome.moc"
