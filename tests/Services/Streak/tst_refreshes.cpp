// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Engine.h"
#include "support/Extent.h"
#include "support/RunnerAt.h"
#include "support/Strict.h"
#include "support/TempRepository.h"
#include "support/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

#include <tuple>

using namespace velquarin;
using namespace velquarin::test;

namespace {

using RealEngine = EngineWith<RunnerAt>;

constexpr qint64 hour = 3'600;
constexpr qint64 day = 24 * hour;
constexpr qint64 morning = 1'792'821'600;  // 2026-10-24T08:00+02:00; the night after it, clocks are set back

struct Extent
{
    int repositories;
    int commits;
    int refreshes;
    int mostProcesses;
};

Extent extent()
{
    return wholeRun() ? Extent{100, 20, 288, 5'000} : Extent{5, 4, 24, 200};
}

// Repositories with two years behind them.
class Village
{
public:
    explicit Village(int count)
    {
        for (int number = 0; number < count; ++number) {
            const auto path = m_folder.filePath(QStringLiteral("repository%1").arg(number));
            QDir().mkpath(path);
            const RealGit git(path);
            git.run({QStringLiteral("init"), QStringLiteral("--quiet"), QStringLiteral("--initial-branch=main")});
            git.run({QStringLiteral("fast-import"), QStringLiteral("--quiet")}, history(number));
            paths << path;
        }
    }

    static void commit(const QString &path, qint64 moment)
    {
        RealGit git(path);
        const auto date = QStringLiteral("@%1 +0200").arg(moment);
        git.set("GIT_AUTHOR_DATE", date);
        git.set("GIT_COMMITTER_DATE", date);
        git.run({QStringLiteral("commit"), QStringLiteral("--quiet"), QStringLiteral("--allow-empty"),
                 QStringLiteral("-m"), QStringLiteral("x")});
    }

    QStringList paths;

private:
    // A commit every ninety hours, at other times of day in each.
    static QByteArray history(qint64 number)
    {
        QByteArray stream;
        for (qint64 step = 199; step > 0; --step) {
            const auto moment = QByteArray::number(morning - step * 90 * hour - number * 1'237);
            stream += "commit refs/heads/main\nauthor A <a@example.org> " + moment +
                      " +0200\ncommitter A <a@example.org> " + moment + " +0200\ndata 1\nx\n";
        }
        return stream;
    }

    QTemporaryDir m_folder;
};

auto figuresOf(const StreakManager &manager)
{
    std::vector<std::pair<Instant, qint64>> week;
    for (const auto &record : manager.commitHistory())
        week.emplace_back(record.date, record.commitCount);
    std::vector<std::tuple<QString, std::optional<Instant>, qint64, qint64>> repositories;
    for (const auto &stats : manager.repositoryStats())
        repositories.emplace_back(stats.path, stats.lastCommitDate, stats.todayCommits, stats.weekCommits);
    return std::tuple(manager.currentStreak(), manager.longestStreak(), manager.hasCommittedToday(),
                      manager.totalCommitsThisWeek(), week, manager.yearHistory(), repositories);
}

auto figuresAt(RealEngine &engine, qint64 moment)
{
    engine.runner.now = moment;
    engine.clock.setNow(Instant(std::chrono::seconds(moment)));
    engine.refresh();
    return figuresOf(engine.manager);
}

std::unique_ptr<RealEngine> engineFor(const QStringList &paths)
{
    auto engine = std::make_unique<RealEngine>();
    engine->clock.setZone("Europe/Berlin");
    engine->settings.setNotifyOnStreakRisk(false);
    engine->settings.addRepositories(paths, false);
    return engine;
}

}  // namespace

class TestRefreshes : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void aDayOfThemAsksLittleAndShowsWhatGitSays();
    void moreRepositoriesThanOneOperationReadsAreAllCounted();
};

void TestRefreshes::aDayOfThemAsksLittleAndShowsWhatGitSays()
{
    qputenv("TZ", "Europe/Berlin");
    const auto all = extent();
    const Village village(all.repositories);
    const auto remembering = engineFor(village.paths);
    int asked = 0;
    for (int number = 0; number < all.refreshes; ++number) {
        const auto now = morning + number * day / all.refreshes;
        if (number * all.commits / all.refreshes != (number + 1) * all.commits / all.refreshes)
            Village::commit(village.paths[number % village.paths.size()], now - 60);
        const auto forgetful = engineFor(village.paths);
        QVERIFY(figuresAt(*remembering, now) == figuresAt(*forgetful, now));
        asked += forgetful->runner.count;
    }
    qInfo("%d processes in place of %d", remembering->runner.count.load(), asked);
    QVERIFY(remembering->manager.currentStreak() > 0);
    QVERIFY(remembering->runner.count <= all.mostProcesses);
}

void TestRefreshes::moreRepositoriesThanOneOperationReadsAreAllCounted()
{
    const Village village(2);
    QStringList paths = village.paths;
    const QTemporaryDir links;
    while (paths.size() < 150) {
        paths << links.filePath(QString::number(paths.size()));
        QVERIFY(QFile::link(village.paths.first(), paths.last()));
    }
    const auto engine = engineFor(paths);
    const auto first = figuresAt(*engine, morning);
    // The moments of the commits are listed.
    QVERIFY(figuresAt(*engine, morning) == first);
    const auto asked = engine->runner.count.load();
    QVERIFY(figuresAt(*engine, morning) == first);
    QCOMPARE(engine->runner.count.load(), asked);
    QCOMPARE(engine->manager.repositoryStats().size(), paths.size());
    Village::commit(paths[1], morning - 60);
    Village::commit(paths[100], morning - 60);
    const auto before = engine->manager.totalCommitsThisWeek();
    static_cast<void>(figuresAt(*engine, morning));
    QCOMPARE(engine->manager.totalCommitsThisWeek(), before + 150);
}

VELQUARIN_TEST(TestRefreshes)
#include "tst_refreshes.moc"
