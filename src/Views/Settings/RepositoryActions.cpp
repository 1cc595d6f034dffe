// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RepositoryActions.h"

#include "Models/AppSettings.h"
#include "Platform/Folders.h"
#include "Platform/WhileAlive.h"
#include "Services/Git/GitService.h"
#include "Services/Streak/StreakManager.h"

#include <QCoreApplication>

#include <utility>

namespace velquarin {

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(ScanOutcome)
};

constexpr qint64 depthOfScan = 5;

}  // namespace

ScanOutcome scanOutcome(qsizetype found, qsizetype added)
{
    if (found == 0)
        return {Words::tr("No git repositories found in selected folder"), false};
    if (added == 0)
        return {Words::tr("Found %1 repos, all already tracked").arg(found), false};
    return {std::nullopt, true};
}

RepositoryActions::RepositoryActions(AppSettings &settings, StreakManager &streakManager, GitService &gitService,
                                     FolderChooser &folderChooser, QObject &window)
    : m_settings(settings)
    , m_streakManager(streakManager)
    , m_gitService(gitService)
    , m_folderChooser(folderChooser)
    , m_window(window)
{
}

void RepositoryActions::addRepository()
{
    m_folderChooser.choose({tr("Select a git repository folder"), tr("Add")}, m_window,
                           [this](const QString &path) { checkAndAdd(path); });
}

void RepositoryActions::scanFolder()
{
    m_folderChooser.choose({tr("Select a folder to scan for git repositories"), tr("Scan")}, m_window,
                           [this](const QString &path) { scan(path); });
}

void RepositoryActions::refreshNow()
{
    m_streakManager.refresh();
}

void RepositoryActions::forgetMessage()
{
    setMessage(std::nullopt);
}

QCoro::Task<> RepositoryActions::checkAndAdd(QString path)
{
    const auto check = m_gitService.isGitRepository(path);
    const bool isRepository = co_await whileAlive(this, check);
    if (!isRepository) {
        setMessage(tr("Selected folder is not a git repository"));
        co_return;
    }
    m_settings.addRepository(path, false);
    setMessage(std::nullopt);
    m_streakManager.refresh();
}

QCoro::Task<> RepositoryActions::scan(QString path)
{
    m_isScanning = true;
    m_scanProgress = tr("Scanning...");
    setMessage(std::nullopt);

    const auto walk = m_gitService.scanForRepositories(path, depthOfScan);
    const auto found = co_await whileAlive(this, walk);
    const auto added = m_settings.addRepositories(found, false);
    m_isScanning = false;
    m_scanProgress.reset();
    const auto outcome = scanOutcome(found.size(), added.size());
    setMessage(outcome.message);
    if (outcome.isRefreshDue)
        m_streakManager.refresh();
}

void RepositoryActions::setMessage(std::optional<QString> message)
{
    m_validationError = std::move(message);
    Q_EMIT changed();
}

}  // namespace velquarin
