// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// How the window behaves while a thousand repositories are found and each of them is stored in a real file.

#include "Platform/Linux/Preferences/JsonPreferencesStore.h"
#include "Services/LaunchAtLogin.h"
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

using namespace velquarin;
using namespace velquarin::test;
using namespace std::chrono_literals;

namespace {

constexpr int many = 1000;
constexpr qint64 mostWorkAllowed = 50;  // ms

//! The real files, and a loop that has to turn now and then while they are looked at.
class WatchedFiles : public PosixFileTree
{
public:
    bool visit(const std::string &path, const Visitor &visitor) const override
    {
        constexpr int nowAndThen = 50;
        if (++m_visits % nowAndThen == 1)
            m_loop.awaitTurn();
        return PosixFileTree::visit(path, visitor);
    }

    [[nodiscard]] bool wereWaitedFor() const { return m_loop.hasStoodStill(); }

private:
    mutable int m_visits = 0;
    mutable LoopWatch m_loop;
};

// The window over settings that are kept in a file.
struct World
{
    QTemporaryDir home;
    JsonPreferencesStore store{home.filePath(QStringLiteral("preferences.json"))};
    FakeProcessRunner runner;
    WatchedFiles files;
    FakeClock clock{instant("2026-11-20T12:00:00Z")};
    FakeTimers timers;
    RecordingOutput output;
    RecordingNotificationCenter center;
    GitService git{runner, files, clock};
    AppSettings settings{store};
    NotificationService notifications{center, store, clock, timers, output};
    StreakManager manager{git, settings, notifications, clock, timers, output};
    RecordingLoginItem loginItem;
    LaunchAtLogin launchAtLogin{loginItem};
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
    World world;
    const auto work = mostWorkDuring([this, &world] {
        world.scanButton()->click();
        world.chooser.confirm(m_folder.path());
        awaitThat([&world] { return world.manager.lastRefresh().has_value(); });
    });
    QVERIFY2(work <= mostWorkAllowed, qPrintable(QString::number(work)));
    QVERIFY(!world.files.wereWaitedFor());
    QVERIFY(world.store.flush(60s));
    QCOMPARE(AppSettings(world.store).trackedRepositories().size(), many);
}

void TestManyRepositories::aDiscoveryThatFindsAThousandNeverHoldsTheWindowUp()
{
    World world;
    const auto work = mostWorkDuring([this, &world] {
        world.settings.addWatchedFolder(m_folder.path(), 5);
        await(world.manager.runAutoDiscovery());
    });
    QVERIFY2(work <= mostWorkAllowed, qPrintable(QString::number(work)));
    QVERIFY(!world.files.wereWaitedFor());
    QCOMPARE(world.settings.trackedRepositories().size(), many);
}

VELQUARIN_WINDOW_TEST(TestManyRepositories)
#include "tst_manyrepositories.moc"
