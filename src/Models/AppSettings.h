// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/SettingsRecords.h"
#include "Platform/Calendar.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <optional>
#include <utility>

namespace velquarin {

class PreferencesStore;

//! All that the user has set, kept in the preferences store. Main thread only.
//!
//! Every assignment, that of an equal value included, announces the new value, then takes it over, then saves
//! all settings: whoever hears the signal still reads the old value. No operation reports an error; what
//! cannot be read from the store has its default.
class AppSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<velquarin::TrackedRepository> trackedRepositories READ trackedRepositories WRITE
                   setTrackedRepositories NOTIFY trackedRepositoriesWillChange)
    Q_PROPERTY(QList<velquarin::WatchedFolder> watchedFolders READ watchedFolders WRITE setWatchedFolders NOTIFY
                   watchedFoldersWillChange)
    Q_PROPERTY(bool autoDiscoveryEnabled READ autoDiscoveryEnabled WRITE setAutoDiscoveryEnabled NOTIFY
                   autoDiscoveryEnabledWillChange)
    Q_PROPERTY(double refreshInterval READ refreshInterval WRITE setRefreshInterval NOTIFY refreshIntervalWillChange)
    Q_PROPERTY(bool showStreakInMenuBar READ showStreakInMenuBar WRITE setShowStreakInMenuBar NOTIFY
                   showStreakInMenuBarWillChange)
    Q_PROPERTY(
        bool notifyOnStreakRisk READ notifyOnStreakRisk WRITE setNotifyOnStreakRisk NOTIFY notifyOnStreakRiskWillChange)
    Q_PROPERTY(velquarin::CountedAuthors countedAuthors READ countedAuthors WRITE setCountedAuthors NOTIFY
                   countedAuthorsWillChange)
    Q_PROPERTY(velquarin::CountedBranches countedBranches READ countedBranches WRITE setCountedBranches NOTIFY
                   countedBranchesWillChange)
    Q_PROPERTY(std::optional<velquarin::Instant> lastAutoDiscoveryScan READ lastAutoDiscoveryScan WRITE
                   setLastAutoDiscoveryScan NOTIFY lastAutoDiscoveryScanWillChange)
public:
    //! Loads what @p store holds, which must outlive this, and saves it once, so that the store is complete
    //! from then on. Where a stored value could not be read, the store puts a copy aside first. Of records that share
    //! an id only the first keeps it.
    explicit AppSettings(PreferencesStore &store, QObject *parent = nullptr);

    //! In the order in which they were added.
    [[nodiscard]] QList<TrackedRepository> trackedRepositories() const { return m_trackedRepositories; }
    void setTrackedRepositories(QList<TrackedRepository> repositories)
    {
        assign(m_trackedRepositories, std::move(repositories), &AppSettings::trackedRepositoriesWillChange);
    }

    //! In the order in which they were added.
    [[nodiscard]] QList<WatchedFolder> watchedFolders() const { return m_watchedFolders; }
    void setWatchedFolders(QList<WatchedFolder> folders)
    {
        assign(m_watchedFolders, std::move(folders), &AppSettings::watchedFoldersWillChange);
    }

    [[nodiscard]] bool autoDiscoveryEnabled() const { return m_autoDiscoveryEnabled; }
    void setAutoDiscoveryEnabled(bool isEnabled)
    {
        assign(m_autoDiscoveryEnabled, isEnabled, &AppSettings::autoDiscoveryEnabledWillChange);
    }

    //! Seconds between two refreshes. Any value is taken as it is; one that is not above zero lasts only until
    //! the next start, which makes it 300.
    [[nodiscard]] double refreshInterval() const { return m_refreshInterval; }
    void setRefreshInterval(double seconds)
    {
        assign(m_refreshInterval, seconds, &AppSettings::refreshIntervalWillChange);
    }

    [[nodiscard]] bool showStreakInMenuBar() const { return m_showStreakInMenuBar; }
    void setShowStreakInMenuBar(bool isShown)
    {
        assign(m_showStreakInMenuBar, isShown, &AppSettings::showStreakInMenuBarWillChange);
    }

    [[nodiscard]] bool notifyOnStreakRisk() const { return m_notifyOnStreakRisk; }
    void setNotifyOnStreakRisk(bool isWanted)
    {
        assign(m_notifyOnStreakRisk, isWanted, &AppSettings::notifyOnStreakRiskWillChange);
    }

    [[nodiscard]] CountedAuthors countedAuthors() const { return m_countedAuthors; }
    void setCountedAuthors(CountedAuthors authors)
    {
        assign(m_countedAuthors, authors, &AppSettings::countedAuthorsWillChange);
    }

    [[nodiscard]] CountedBranches countedBranches() const { return m_countedBranches; }
    void setCountedBranches(CountedBranches branches)
    {
        assign(m_countedBranches, branches, &AppSettings::countedBranchesWillChange);
    }

    //! Nothing where no scan was ever made.
    [[nodiscard]] std::optional<Instant> lastAutoDiscoveryScan() const { return m_lastAutoDiscoveryScan; }
    void setLastAutoDiscoveryScan(std::optional<Instant> moment)
    {
        assign(m_lastAutoDiscoveryScan, moment, &AppSettings::lastAutoDiscoveryScanWillChange);
    }

    //! Adds an enabled repository at the end, named after the last component of @p path. One with exactly this
    //! path that is there already stays as it is, and nothing is saved.
    void addRepository(const QString &path, bool isAutoDiscovered);

    //! Adds each of @p paths, as addRepository() does, with one save. Returns those that were not there.
    QStringList addRepositories(const QStringList &paths, bool isAutoDiscovered);

    //! Removes every record with the id of @p repository. Saves whether or not there was one.
    void removeRepository(const TrackedRepository &repository);

    //! Adds an enabled folder at the end, as addRepository() does. A second one with exactly this path is
    //! refused, whatever its depth.
    void addWatchedFolder(const QString &path, qint64 maxDepth);

    //! Removes every record with the id of @p folder. The repositories found under it stay until the next scan
    //! prunes them. Saves whether or not there was one.
    void removeWatchedFolder(const WatchedFolder &folder);

    //! Removes the discovered repositories whose path is not among @p validPaths, letter by letter. What the
    //! user added stays, always. Saves whether or not anything was removed.
    void pruneOrphanedAutoDiscoveredRepos(const QSet<QString> &validPaths);

Q_SIGNALS:
    void trackedRepositoriesWillChange(const QList<velquarin::TrackedRepository> &newValue);
    void watchedFoldersWillChange(const QList<velquarin::WatchedFolder> &newValue);
    void autoDiscoveryEnabledWillChange(bool newValue);
    void refreshIntervalWillChange(double newValue);
    void showStreakInMenuBarWillChange(bool newValue);
    void notifyOnStreakRiskWillChange(bool newValue);
    void countedAuthorsWillChange(velquarin::CountedAuthors newValue);
    void countedBranchesWillChange(velquarin::CountedBranches newValue);
    void lastAutoDiscoveryScanWillChange(const std::optional<velquarin::Instant> &newValue);

private:
    //! One row a setting, in the order in which they are saved.
    static auto table();
    [[nodiscard]] bool load();
    void save();

    template <typename Value, typename Signal>
    void assign(Value &member, Value value, Signal willChange)
    {
        Q_EMIT(this->*willChange)(value);
        member = std::move(value);
        save();
    }

    PreferencesStore &m_store;
    QList<TrackedRepository> m_trackedRepositories;
    QList<WatchedFolder> m_watchedFolders;
    bool m_autoDiscoveryEnabled = false;
    double m_refreshInterval = 0.0;
    bool m_showStreakInMenuBar = false;
    bool m_notifyOnStreakRisk = false;
    CountedAuthors m_countedAuthors = {};
    CountedBranches m_countedBranches = {};
    std::optional<Instant> m_lastAutoDiscoveryScan;
};

}  // namespace velquarin
