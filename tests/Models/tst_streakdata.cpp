// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/StreakData.h"

#include "Platform/DateTexts.h"
#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

class TestStreakData : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aRepositoryIsCalled_data();
    void aRepositoryIsCalled();
    void withoutACommitItSaysSo();
    void theLastCommitIsToldFromNow();
    void recordsOfTheSameDayAreEqualOnlyWithTheSameIdentity();
};

void TestStreakData::aRepositoryIsCalled_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("by its name") << QStringLiteral("Work") << QStringLiteral("/a/b/my-repo") << QStringLiteral("Work");
    QTest::newRow("by its folder where it has no name")
        << QString() << QStringLiteral("/a/b/my-repo") << QStringLiteral("my-repo");
    QTest::newRow("by its folder, whose slash at the end does not count")
        << QString() << QStringLiteral("/a/src/tool/") << QStringLiteral("tool");
}

void TestStreakData::aRepositoryIsCalled()
{
    QFETCH(QString, name);
    QFETCH(QString, path);
    RepositoryStats stats;
    stats.name = name;
    stats.path = path;
    QTEST(stats.displayName(), "expected");
}

void TestStreakData::withoutACommitItSaysSo()
{
    const DateTexts texts("en_US", calendarIn("UTC"));
    QCOMPARE(RepositoryStats().lastCommitRelative(texts, instant("2026-11-20T12:00:00Z")),
             QStringLiteral("No commits"));
}

void TestStreakData::theLastCommitIsToldFromNow()
{
    const DateTexts texts("en_US", calendarIn("UTC"));
    RepositoryStats stats;
    stats.lastCommitDate = instant("2026-11-20T10:00:00Z");
    QCOMPARE(stats.lastCommitRelative(texts, instant("2026-11-20T12:00:00Z")), QStringLiteral("2 hr. ago"));
}

void TestStreakData::recordsOfTheSameDayAreEqualOnlyWithTheSameIdentity()
{
    const CommitDay day{.date = instant("2026-11-20T00:00:00Z"), .commitCount = 3};
    const CommitDay made{.date = day.date, .commitCount = day.commitCount};
    const auto copy = day;
    QVERIFY(day == copy);
    QVERIFY(!(day == made));
    auto other = day;
    other.commitCount = 4;
    QVERIFY(!(day == other));
}

VELQUARIN_TEST(TestStreakData)
#include "tst_streakdata.moc"
