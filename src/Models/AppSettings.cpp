// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/AppSettings.h"

#include "Models/SettingsRecords.h"
#include "Platform/PathNames.h"
#include "Platform/PreferencesStore.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <type_traits>
#include <utility>

namespace velquarin {

namespace {

// How a setting is stored, and what it is where nothing is stored that can be read and is usable.
template <typename Value>
struct Setting
{
    QString key;
    Value AppSettings::*member;
    Value standard;
    bool (*isUsable)(const Value &value) = [](const Value & /*any*/) { return true; };
};

// How a choice is stored, in the order of its values.
constexpr std::array<const char *, 2> namesOf(CountedAuthors /*any*/)
{
    return {"everyone", "me"};
}

constexpr std::array<const char *, 2> namesOf(CountedBranches /*any*/)
{
    return {"default", "all"};
}

// One of a few named values.
template <typename Value>
concept Choice = std::is_enum_v<Value>;

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
QList<Record> without(QList<Record> records, const QUuid &id)
{
    records.removeIf([&](const Record &record) { return record.id == id; });
    return records;
}

// Whether what is stored can be read as a value of that type, which is there then.
template <typename Value>
bool read(const PreferenceValue &stored, Value &value)
{
    const auto *typed = std::get_if<Value>(&stored);
    if (typed)
        value = *typed;
    return typed != nullptr;
}

bool read(const PreferenceValue &stored, std::optional<Instant> &moment)
{
    return std::holds_alternative<Instant>(stored) && read(stored, moment.emplace());
}

template <typename Record>
bool read(const PreferenceValue &stored, QList<Record> &list)
{
    const auto *data = std::get_if<QByteArray>(&stored);
    auto records = data ? decodeRecords<Record>(*data) : std::nullopt;
    if (!records)
        return false;
    list = withDifferentIds(*std::move(records));
    return true;
}

template <Choice Value>
bool read(const PreferenceValue &stored, Value &value)
{
    const auto *text = std::get_if<QString>(&stored);
    const auto names = namesOf(value);
    const auto *const found =
        std::ranges::find_if(names, [&](const char *name) { return text && *text == QLatin1String(name); });
    if (found != names.end())
        value = Value(found - names.begin());
    return found != names.end();
}

template <typename Value>
void write(PreferencesStore &store, const QString &key, const Value &value)
{
    store.set(key, value);
}

template <Choice Value>
void write(PreferencesStore &store, const QString &key, const Value &value)
{
    store.set(key, QString::fromLatin1(namesOf(value).at(std::size_t(value))));
}

void write(PreferencesStore &store, const QString &key, const std::optional<Instant> &moment)
{
    if (moment)
        store.set(key, *moment);
    else
        store.remove(key);
}

// A list that cannot be made into text leaves what is stored.
template <typename Record>
void write(PreferencesStore &store, const QString &key, const QList<Record> &list)
{
    if (auto data = encodeRecords(list))
        store.set(key, *std::move(data));
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

auto AppSettings::table()
{
    return std::tuple{
        Setting<QList<TrackedRepository>>{
            QStringLiteral("trackedRepositories"), &AppSettings::m_trackedRepositories, {}},
        Setting<QList<WatchedFolder>>{QStringLiteral("watchedFolders"), &AppSettings::m_watchedFolders, {}},
        Setting<bool>{QStringLiteral("autoDiscoveryEnabled"), &AppSettings::m_autoDiscoveryEnabled, true},
        Setting<double>{QStringLiteral("refreshInterval"), &AppSettings::m_refreshInterval, 300.0,
                        [](const double &seconds) { return seconds > 0.0; }},
        Setting<bool>{QStringLiteral("showStreakInMenuBar"), &AppSettings::m_showStreakInMenuBar, true},
        Setting<bool>{QStringLiteral("notifyOnStreakRisk"), &AppSettings::m_notifyOnStreakRisk, true},
        Setting<CountedAuthors>{QStringLiteral("countedAuthors"), &AppSettings::m_countedAuthors, {}},
        Setting<CountedBranches>{QStringLiteral("countedBranches"), &AppSettings::m_countedBranches, {}},
        Setting<std::optional<Instant>>{
            QStringLiteral("lastAutoDiscoveryScan"), &AppSettings::m_lastAutoDiscoveryScan, {}},
    };
}

// False where a stored value could not be read, which the save that follows is about to replace.
bool AppSettings::load()
{
    bool isAllReadable = true;
    const auto loadRow = [&](const auto &row) {
        auto value = row.standard;
        const auto stored = m_store.value(row.key);
        isAllReadable &= !stored || read(*stored, value);
        this->*row.member = row.isUsable(value) ? value : row.standard;
    };
    std::apply([&](const auto &...rows) { (loadRow(rows), ...); }, table());
    return isAllReadable;
}

void AppSettings::save()
{
    std::apply([&](const auto &...rows) { (write(m_store, rows.key, this->*rows.member), ...); }, table());
}

void AppSettings::addRepository(const QString &path, bool isAutoDiscovered)
{
    addRepositories({path}, isAutoDiscovered);
}

QStringList AppSettings::addRepositories(const QStringList &paths, bool isAutoDiscovered)
{
    QSet<QString> known;
    for (const auto &repository : std::as_const(m_trackedRepositories))
        known.insert(repository.path);
    QStringList added;
    auto repositories = m_trackedRepositories;
    for (const auto &path : paths) {
        if (known.contains(path))
            continue;
        known.insert(path);
        added.append(path);
        repositories.append({QUuid::createUuid(), path, lastPathComponent(path), true, isAutoDiscovered});
    }
    if (!added.isEmpty())
        setTrackedRepositories(std::move(repositories));
    return added;
}

void AppSettings::removeRepository(const TrackedRepository &repository)
{
    setTrackedRepositories(without(m_trackedRepositories, repository.id));
}

void AppSettings::addWatchedFolder(const QString &path, qint64 maxDepth)
{
    if (std::ranges::find(m_watchedFolders, path, &WatchedFolder::path) != m_watchedFolders.end())
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
