// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/OwnReading.h"

#include "Console/StreakReport.h"
#include "Models/AppSettings.h"
#include "Platform/NotificationCenter.h"
#include "Platform/RepositoryWatch.h"
#include "Services/Git/GitService.h"
#include "Services/Reminder/NotificationService.h"
#include "Services/Streak/CommitWatch.h"
#include "Services/Streak/StreakManager.h"

namespace velquarin {

namespace {

// To remind is the business of the program in the status bar.
class NoNotifications final : public NotificationCenter
{
public:
    [[nodiscard]] QCoro::Task<bool> isAuthorized() override { co_return false; }
    [[nodiscard]] QCoro::Task<bool> requestAuthorization() override { co_return false; }
    void setCategory(const NotificationCategory & /*category*/) override {}
    [[nodiscard]] QCoro::Task<> add(NotificationRequest /*request*/) override { co_return; }
    void withdraw() override {}
};

}  // namespace

struct OwnReading::Services
{
    explicit Services(const ReadingPlatform &platform)
        : git(platform.processes, platform.files, platform.clock)
        , settings(platform.preferences)
        , reminder(notifications, platform.preferences, platform.clock, platform.timers, platform.output)
        , manager(git, settings, reminder, platform.clock, platform.timers, platform.output)
        , watch(manager, settings, git, platform.repositoryWatch, platform.timers)
    {
    }

    NoNotifications notifications;
    GitService git;
    AppSettings settings;
    NotificationService reminder;
    StreakManager manager;
    CommitWatch watch;
};

OwnReading::OwnReading(const ReadingPlatform &platform, QObject *parent)
    : QObject(parent)
    , m_clock(platform.clock)
    , m_services(std::make_unique<Services>(platform))
{
    connect(&m_services->manager, &StreakManager::lastRefreshWillChange, this, &OwnReading::tell);
}

OwnReading::~OwnReading() = default;

void OwnReading::start()
{
    m_services->manager.refresh();
}

void OwnReading::tell()
{
    Q_EMIT read(reportOf(m_services->manager, m_clock.calendar()));
}

}  // namespace velquarin
