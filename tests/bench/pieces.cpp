// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

// What each piece of a refresh takes by itself, in one process and without git. Run by itself, it tells one time a line;
// ./bench reads the same from "-o -,csv".

#include "Models/AppSettings.h"
#include "Platform/Calendar.h"
#include "Platform/Linux/Preferences/JsonPreferencesStore.h"
#include "Services/Git/GitLog.h"
#include "Services/Streak/HeatmapGrid.h"
#include "Services/Streak/MergedHistory.h"
#include "Services/Streak/StreakCalculation.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <chrono>

using namespace velquarin;
using namespace std::chrono_literals;

namespace {

constexpr int daysRead = 730;
constexpr int repositories = 100;
constexpr int commits = 200;
const QDate newest(2026, 11, 20);

QByteArray logOf(int lines)
{
    QByteArray log;
    for (int line = 0; line < lines; ++line)
        log += newest.addDays(-qint64(line) * daysRead / lines).toString(Qt::ISODate).toLatin1() + '\n';
    return log;
}

}  // namespace

class Pieces : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void parse();
    void streak();
    void merge();
    void grid();
    void preferencesRead();
    void preferencesWritten();

private:
    [[nodiscard]] QString makePreferences();

    const Calendar m_calendar{QTimeZone("Europe/Berlin")};
    const Instant m_today = m_calendar.startOf(newest).value();
    QTemporaryDir m_folder;
};

// The days of one log, of which none was looked up before.
void Pieces::parse()
{
    const auto log = logOf(commits);
    QBENCHMARK
    {
        DayStarts starts(m_calendar);
        QCOMPARE(daysFromLog(log, starts).size(), commits);
    }
}

// A commit on each day of two years, the longest run there is to find.
void Pieces::streak()
{
    DayStarts starts(m_calendar);
    const auto days = daysFromLog(logOf(daysRead), starts);
    const std::set<Instant> dates(days.begin(), days.end());
    QBENCHMARK
    {
        QCOMPARE(calculateStreakFromDates(dates, m_calendar, m_today).current, daysRead);
    }
}

// The days of a hundred repositories, made into all figures of a refresh.
void Pieces::merge()
{
    DayStarts starts(m_calendar);
    const auto days = daysFromLog(logOf(commits), starts);
    QBENCHMARK
    {
        MergedHistory history(m_calendar, m_today);
        for (int repository = 0; repository < repositories; ++repository)
            history.addCommits(days);
        QCOMPARE(history.figures().year.first(), repositories);
    }
}

void Pieces::grid()
{
    DayStarts starts(m_calendar);
    MergedHistory history(m_calendar, m_today);
    history.addCommits(daysFromLog(logOf(daysRead), starts));
    const auto year = history.figures().year;
    QBENCHMARK
    {
        QCOMPARE(cellCount(gridData(year, m_calendar, m_today)), 371);
    }
}

QString Pieces::makePreferences()
{
    auto path = m_folder.filePath(QStringLiteral("preferences.json"));
    JsonPreferencesStore store(path);
    AppSettings settings(store);
    for (int number = 0; number < repositories; ++number)
        settings.addRepository(QStringLiteral("/src/repository-%1").arg(number), false);
    return path;
}

// From the file to the values in it.
void Pieces::preferencesRead()
{
    const auto path = makePreferences();
    QBENCHMARK
    {
        const JsonPreferencesStore store(path);
        QVERIFY(store.value(QStringLiteral("trackedRepositories")));
    }
}

// From a change to the moment at which it is safe on the disk.
void Pieces::preferencesWritten()
{
    JsonPreferencesStore store(makePreferences());
    AppSettings settings(store);
    double seconds = 300;
    QBENCHMARK
    {
        settings.setRefreshInterval(++seconds);
        QVERIFY(store.flush(10s));
    }
}

QTEST_GUILESS_MAIN(Pieces)
#include "pieces.moc"
