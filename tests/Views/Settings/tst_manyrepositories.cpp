// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// How the window behaves while a thousand repositories are found and each of them is stored in a real file.

#include "App/LaunchAtLogin.h"
#include "Platform/Linux/System/JsonPreferencesStore.h"
#include "support/Engine.h"
#include "support/Offscreen.h"
#include "support/RecordingLoginItem.h"
#include "support/ScriptedFolderChooser.h"
#include "support/TestProgram.h"
#include "support/Ticker.h"
#include "Views/Settings/SettingsView.h"

#include <QApplication>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

constexpr int many = 1000;
constexpr qint64 longestGapAllowed = 50;  // ms

// The window over settings that are kept in a file.
struct World
{
    QTemporaryDir home;
    JsonPreferencesStore store{home.filePath(QStringLiteral("preferences.json"))};
    FakeProcessRunner runner;
    PosixFileTree files;
    FakeClock clock{instant("2026-11-20T12:00:00Z")};
    FakeTimers timers;
    RecordingOutput output;
    RecordingNotificationCenter center;
    GitService git{runner, files, clock};
    AppSettings settings{store};
    NotificationService notifications{center, store, clock, timers, output};
    StreakManager manager{git, settings, notifications, clock, timers, output};
    RecordingLoginItem loginItem;
    LaunchAtLogin launchAtLogin{loginItem, timers};
    ScriptedFolderChooser chooser;
    SettingsView view{{settings, manager, launchAtLogin, git, chooser, clock, [] { return QByteArray("en_US"); }}};

    World()
    {
        view.show();
        [this] { QVERIFY(QTest::qWaitForWindowExposed(&view)); }();
    }

    [[nodiscard]] QPushButton *scanButton() const
    {
        return view.findChild<QPushButton *>(QStringLiteral("scanFolder"));
    }
};

}  // namespace

class TestManyRepositories : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init() { failOnAnyWarningOfOurs(); }
    void aScanThatFindsAThousandNeverHoldsTheWindowUp();
    void aDiscoveryThatFindsAThousandNeverHoldsTheWindowUp();

private:
    QTemporaryDir m_folder;  // with a thousand repositories in it
};

void TestManyRepositories::initTestCase()
{
    for (int index = 0; index < many; ++index)
        QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("repository-%1/.git").arg(index)));
}

void TestManyRepositories::aScanThatFindsAThousandNeverHoldsTheWindowUp()
{
    std::vector<std::unique_ptr<World>> worlds(3);
    std::ranges::generate(worlds, [] { return std::make_unique<World>(); });
    auto world = worlds.begin();
    const auto gap = gapOf([this, &world] {
        auto &now = **world++;
        now.scanButton()->click();
        now.chooser.confirm(m_folder.path());
        awaitThat([&now] { return now.manager.lastRefresh().has_value(); });
    });
    QVERIFY2(gap <= longestGapAllowed, qPrintable(QString::number(gap)));
    QVERIFY(worlds.front()->store.flush(10s));
    QCOMPARE(AppSettings(worlds.front()->store).trackedRepositories().size(), many);
}

void TestManyRepositories::aDiscoveryThatFindsAThousandNeverHoldsTheWindowUp()
{
    std::vector<std::unique_ptr<World>> worlds(3);
    std::ranges::generate(worlds, [] { return std::make_unique<World>(); });
    auto world = worlds.begin();
    const auto gap = gapOf([this, &world] {
        auto &now = **world++;
        now.settings.addWatchedFolder(m_folder.path(), 5);
        await(now.manager.runAutoDiscovery());
    });
    QVERIFY2(gap <= longestGapAllowed, qPrintable(QString::number(gap)));
    QCOMPARE(worlds.front()->settings.trackedRepositories().size(), many);
}

VELQUARIN_WINDOW_TEST(TestManyRepositories)
#include "tst_manyrepositories.moc"
