// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/AppSettings.h"

#include "Models/SettingsRecords.h"
#include "Platform/PathNames.h"
#include "Platform/PreferencesStore.h"

#include <algorithm>
#include <utility>

namespace velquarin {

namespace {

const QString repositoriesKey = QStringLiteral("trackedRepositories");
const QString watchedFoldersKey = QStringLiteral("watchedFolders");
const QString autoDiscoveryEnabledKey = QStringLiteral("autoDiscoveryEnabled");
const QString refreshIntervalKey = QStringLiteral("refreshInterval");
const QString showStreakKey = QStringLiteral("showStreakInMenuBar");
const QString notifyStreakRiskKey = QStringLiteral("notifyOnStreakRisk");
const QString lastAutoDiscoveryScanKey = QStringLiteral("lastAutoDiscoveryScan");

constexpr double defaultRefreshInterval = 300.0;

// Reads typed values, and remembers whether one was there that could not be read.
class Reader
{
public:
    explicit Reader(const PreferencesStore &store)
        : m_store(store)
    {
    }

    template <typename Value>
    std::optional<Value> value(const QString &key)
    {
        const auto stored = m_store.value(key);
        const auto *typed = stored ? std::get_if<Value>(&*stored) : nullptr;
        m_hasMetUnreadable |= stored && !typed;
        return typed ? std::optional(*typed) : std::nullopt;
    }

    template <typename Record>
    QList<Record> list(const QString &key, std::optional<QList<Record>> (*decode)(const QByteArray &))
    {
        const auto data = value<QByteArray>(key);
        if (!data)
            return {};
        auto records = decode(*data);
        m_hasMetUnreadable |= !records;
        return std::move(records).value_or(QList<Record>());
    }

    [[nodiscard]] bool hasMetUnreadable() const { return m_hasMetUnreadable; }

private:
    const PreferencesStore &m_store;
    bool m_hasMetUnreadable = false;
};

// Records are told apart by their ids, which nobody minds who copies one in the file by hand.
template <typename Record>
QList<Record> withDifferentIds(QList<Record> records)
{
    QSet<QUuid> taken;
    for (auto &record : records) {
        if (taken.contains(record.id))
            record.id = QUuid::createUuid();
        taken.insert(record.id);
    }
    return records;
}

template <typename Record>
bool holdsPath(const QList<Record> &records, const QString &path)
{
    return std::any_of(records.begin(), records.end(), [&](const Record &record) { return record.path == path; });
}

template <typename Record>
QList<Record> without(QList<Record> records, const QUuid &id)
{
    records.removeIf([&](const Record &record) { return record.id == id; });
    return records;
}

}  // namespace

AppSettings::AppSettings(PreferencesStore &store, QObject *parent)
    : QObject(parent)
    , m_store(store)
{
    if (!load())
        m_store.putCopyAside();
    save();
}

// False where a stored value could not be read, which the save that follows is about to replace.
bool AppSettings::load()
{
    Reader reader(m_store);
    m_trackedRepositories = withDifferentIds(reader.list(repositoriesKey, &decodeTrackedRepositories));
    m_watchedFolders = withDifferentIds(reader.list(watchedFoldersKey, &decodeWatchedFolders));
    m_autoDiscoveryEnabled = reader.value<bool>(autoDiscoveryEnabledKey).value_or(true);
    const auto interval = reader.value<double>(refreshIntervalKey).value_or(0.0);
    m_refreshInterval = interval > 0.0 ? interval : defaultRefreshInterval;
    m_showStreakInMenuBar = reader.value<bool>(showStreakKey).value_or(true);
    m_notifyOnStreakRisk = reader.value<bool>(notifyStreakRiskKey).value_or(true);
    m_lastAutoDiscoveryScan = reader.value<Instant>(lastAutoDiscoveryScanKey);
    return !reader.hasMetUnreadable();
}

// The lists go over as copies that share their records: turning them into text is left to whoever writes it.
void AppSettings::save()
{
    m_store.setData(repositoriesKey, [list = m_trackedRepositories] { return encodeTrackedRepositories(list); });
    m_store.setData(watchedFoldersKey, [list = m_watchedFolders] { return encodeWatchedFolders(list); });
    m_store.set(autoDiscoveryEnabledKey, m_autoDiscoveryEnabled);
    m_store.set(refreshIntervalKey, m_refreshInterval);
    m_store.set(showStreakKey, m_showStreakInMenuBar);
    m_store.set(notifyStreakRiskKey, m_notifyOnStreakRisk);
    if (m_lastAutoDiscoveryScan)
        m_store.set(lastAutoDiscoveryScanKey, *m_lastAutoDiscoveryScan);
    else
        m_store.remove(lastAutoDiscoveryScanKey);
}

void AppSettings::setTrackedRepositories(QList<TrackedRepository> repositories)
{
    Q_EMIT trackedRepositoriesWillChange(repositories);
    m_trackedRepositories = std::move(repositories);
    save();
}

void AppSettings::setWatchedFolders(QList<WatchedFolder> folders)
{
    Q_EMIT watchedFoldersWillChange(folders);
    m_watchedFolders = std::move(folders);
    save();
}

void AppSettings::setAutoDiscoveryEnabled(bool isEnabled)
{
    Q_EMIT autoDiscoveryEnabledWillChange(isEnabled);
    m_autoDiscoveryEnabled = isEnabled;
    save();
}

void AppSettings::setRefreshInterval(double seconds)
{
    Q_EMIT refreshIntervalWillChange(seconds);
    m_refreshInterval = seconds;
    save();
}

void AppSettings::setShowStreakInMenuBar(bool isShown)
{
    Q_EMIT showStreakInMenuBarWillChange(isShown);
    m_showStreakInMenuBar = isShown;
    save();
}

void AppSettings::setNotifyOnStreakRisk(bool isWanted)
{
    Q_EMIT notifyOnStreakRiskWillChange(isWanted);
    m_notifyOnStreakRisk = isWanted;
    save();
}

void AppSettings::setLastAutoDiscoveryScan(std::optional<Instant> moment)
{
    Q_EMIT lastAutoDiscoveryScanWillChange(moment);
    m_lastAutoDiscoveryScan = moment;
    save();
}

void AppSettings::addRepository(const QString &path, bool isAutoDiscovered)
{
    if (holdsPath(m_trackedRepositories, path))
        return;
    setTrackedRepositories(
        m_trackedRepositories +
        QList<TrackedRepository>{{QUuid::createUuid(), path, lastPathComponent(path), true, isAutoDiscovered}});
}

void AppSettings::removeRepository(const TrackedRepository &repository)
{
    setTrackedRepositories(without(m_trackedRepositories, repository.id));
}

void AppSettings::addWatchedFolder(const QString &path, qint64 maxDepth)
{
    if (holdsPath(m_watchedFolders, path))
        return;
    setWatchedFolders(m_watchedFolders +
                      QList<WatchedFolder>{{QUuid::createUuid(), path, lastPathComponent(path), true, maxDepth}});
}

void AppSettings::removeWatchedFolder(const WatchedFolder &folder)
{
    setWatchedFolders(without(m_watchedFolders, folder.id));
}

void AppSettings::pruneOrphanedAutoDiscoveredRepos(const QSet<QString> &validPaths)
{
    auto kept = m_trackedRepositories;
    kept.removeIf([&](const TrackedRepository &repository) {
        return repository.isAutoDiscovered && !validPaths.contains(repository.path);
    });
    setTrackedRepositories(std::move(kept));
}

}  // namespace velquarin
