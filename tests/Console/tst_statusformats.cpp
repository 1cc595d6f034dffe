// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/Reports.h"
#include "Console/StatusFormats.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

StreakReport streak(qint64 current, qint64 longest, bool hasCommittedToday)
{
    StreakReport report;
    report.currentStreak = current;
    report.longestStreak = longest;
    report.hasCommittedToday = hasCommittedToday;
    return report;
}

QJsonObject objectIn(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

}  // namespace

class TestStatusFormats : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aLineForPeople_data();
    void aLineForPeople();
    void jsonTellsAllFigures();
    void jsonOfNothingHasAllMembers();
    void everyObjectIsOneLine();
    void theBarHasANumberAndAState_data();
    void theBarHasANumberAndAState();
};

void TestStatusFormats::aLineForPeople_data()
{
    QTest::addColumn<StreakReport>("report");
    QTest::addColumn<QString>("line");
    QTest::newRow("a commit today") << streak(12, 30, true) << "12 days, longest 30, committed today";
    QTest::newRow("none yet") << streak(12, 30, false) << "12 days, longest 30, no commit today";
    QTest::newRow("one day") << streak(1, 1, true) << "1 day, longest 1, committed today";
    QTest::newRow("no streak") << streak(0, 7, false) << "0 days, longest 7, no commit today";
}

void TestStatusFormats::aLineForPeople()
{
    QFETCH(StreakReport, report);
    QTEST(statusText(report), "line");
}

void TestStatusFormats::jsonTellsAllFigures()
{
    const auto expected = R"({
        "version": 1, "currentStreak": 12, "longestStreak": 30, "committedToday": true, "commitsThisWeek": 14,
        "lastSevenDays": [{"date": "2026-11-19", "commits": 0}, {"date": "2026-11-20", "commits": 3}],
        "days": [{"date": "2025-01-31", "commits": 1}, {"date": "2026-11-20", "commits": 3}],
        "repositories": [
            {"name": "garden", "path": "/home/dev/gärten/\"garden\"", "commitsToday": 3, "commitsThisWeek": 14,
             "lastCommit": "2026-11-20T11:02:03Z"},
            {"name": "empty", "path": "/home/dev/empty", "commitsToday": 0, "commitsThisWeek": 0, "lastCommit": null}],
        "repositoriesWithoutAddress": ["empty"]})";
    QCOMPARE(objectIn(statusJson(fullReport())), objectIn(expected));
}

void TestStatusFormats::jsonOfNothingHasAllMembers()
{
    const auto nothing = objectIn(statusJson(StreakReport()));
    QCOMPARE(nothing.keys(), objectIn(statusJson(fullReport())).keys());
    QCOMPARE(nothing.value(QStringLiteral("days")), QJsonArray());
    QCOMPARE(nothing.value(QStringLiteral("currentStreak")), 0);
}

void TestStatusFormats::everyObjectIsOneLine()
{
    auto report = fullReport();
    report.repositories.first().name = QStringLiteral("two\nlines\r\x1b");
    QVERIFY(!statusJson(report).contains('\n'));
    QVERIFY(!statusWaybar(report).contains('\n'));
    const auto repositories = objectIn(statusJson(report)).value(QStringLiteral("repositories")).toArray();
    QCOMPARE(repositories.first().toObject().value(QStringLiteral("name")).toString(),
             report.repositories.first().name);
}

void TestStatusFormats::theBarHasANumberAndAState_data()
{
    QTest::addColumn<StreakReport>("report");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("tip");
    QTest::newRow("a commit today") << streak(12, 30, true) << "12"
                                    << "committed"
                                    << "12 days, longest 30, committed today\n0 commits this week";
    QTest::newRow("none yet") << streak(12, 30, false) << "12"
                              << "pending"
                              << "12 days, longest 30, no commit today\n0 commits this week";
    QTest::newRow("no streak") << streak(0, 7, false) << ""
                               << "none"
                               << "0 days, longest 7, no commit today\n0 commits this week";
}

void TestStatusFormats::theBarHasANumberAndAState()
{
    QFETCH(StreakReport, report);
    const auto object = objectIn(statusWaybar(report));
    QTEST(object.value(QStringLiteral("text")).toString(), "text");
    QTEST(object.value(QStringLiteral("alt")).toString(), "state");
    QTEST(object.value(QStringLiteral("class")).toString(), "state");
    QTEST(object.value(QStringLiteral("tooltip")).toString(), "tip");
}

VELQUARIN_TEST_RUN(velquarin::test::runAlone<TestStatusFormats>)
#include "tst_statusformats.moc"
