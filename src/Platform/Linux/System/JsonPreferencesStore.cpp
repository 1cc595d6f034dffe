// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/JsonPreferencesStore.h"

#include "Platform/Linux/System/ConfigHome.h"
#include "Platform/Linux/System/PreferencesFormat.h"
#include "Platform/PathNames.h"

#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

// Long enough to catch all values of one save and most of a burst, short enough to have any change on disk in time.
constexpr auto patience = 20ms;

// Ours under the keys that are ours to change, theirs under all others.
QJsonObject merged(const QJsonObject &ours, QJsonObject theirs, const std::set<QString> &changedKeys)
{
    for (const auto &key : changedKeys) {
        theirs.remove(key);
        if (const auto member = ours.constFind(key); member != ours.constEnd())
            theirs.insert(key, member.value());
    }
    return theirs;
}

}  // namespace

QString defaultPreferencesPath()
{
    return joinPath(configHome(), QStringLiteral("velquarin/preferences.json"));
}

JsonPreferencesStore::JsonPreferencesStore(const QString &path)
    : m_file(path)
    , m_writer([this] { writeNewest(); }, patience)
{
    m_encoded = m_file.load();
    for (auto member = m_encoded.constBegin(); member != m_encoded.constEnd(); ++member)
        m_entries.emplace(member.key(), QJsonValue(member.value()));
}

JsonPreferencesStore::~JsonPreferencesStore()
{
    flush(std::chrono::hours(1));
}

std::optional<PreferenceValue> JsonPreferencesStore::value(const QString &key) const
{
    std::unique_lock lock(m_mutex);
    const auto found = m_entries.find(key);
    if (found == m_entries.end())
        return std::nullopt;
    const auto entry = found->second;
    const QJsonValue earlier = m_encoded.value(key);
    lock.unlock();
    return preferenceOf(entry, earlier);
}

void JsonPreferencesStore::set(const QString &key, PreferenceValue value)
{
    if (!std::holds_alternative<UnreadableValue>(value))
        put(key, Entry(std::in_place_type<PreferenceValue>, std::move(value)));
}

void JsonPreferencesStore::setData(const QString &key, LazyData data)
{
    put(key, Entry(std::in_place_type<LazyData>, std::move(data)));
}

void JsonPreferencesStore::put(const QString &key, Entry entry)
{
    {
        const std::lock_guard lock(m_mutex);
        m_entries.insert_or_assign(key, std::move(entry));
        m_changed.insert(key);
    }
    m_isEverChanged = true;
    m_writer.request();
}

void JsonPreferencesStore::remove(const QString &key)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_entries.erase(key) == 0)
            return;
        m_changed.insert(key);
    }
    m_isEverChanged = true;
    m_writer.request();
}

// The writer makes the copy right before its next write, and does not write until that has worked.
void JsonPreferencesStore::putCopyAside()
{
    const std::lock_guard lock(m_mutex);
    m_isCopyWanted = true;
}

bool JsonPreferencesStore::flush(std::chrono::milliseconds limit)
{
    if (!m_isEverChanged)
        return true;
    m_writer.request();
    return m_writer.finish(limit);
}

void JsonPreferencesStore::writeNewest()
{
    std::unique_lock lock(m_mutex);
    const auto entries = m_entries;
    const auto earlier = m_encoded;
    auto changed = std::exchange(m_changed, {});
    const bool isCopyWanted = std::exchange(m_isCopyWanted, false);
    lock.unlock();

    auto encoded = jsonOf(entries, earlier);
    const auto folderLock = m_file.lock();
    const auto theirs = changed.empty() ? std::nullopt : m_file.changeOfOthers();
    if (theirs)
        encoded = merged(encoded, *theirs, changed);
    if (isCopyWanted)
        m_file.keepCopyOfLoaded();
    const bool isWritten = m_file.write(encodePreferences(encoded));

    lock.lock();
    m_encoded = encoded;
    if (theirs)
        takeOver(encoded, changed);
    if (!isWritten)
        m_changed.merge(changed);
}

// What somebody else wrote is what we hold, but for what was set or removed here.
void JsonPreferencesStore::takeOver(const QJsonObject &written, const std::set<QString> &writtenKeys)
{
    const auto isOurs = [&](const QString &key) { return writtenKeys.contains(key) || m_changed.contains(key); };
    std::erase_if(m_entries, [&](const auto &entry) { return !isOurs(entry.first); });
    for (auto member = written.constBegin(); member != written.constEnd(); ++member) {
        if (!isOurs(member.key()))
            m_entries.emplace(member.key(), QJsonValue(member.value()));
    }
}

std::optional<PreferenceValue> JsonPreferencesStore::preferenceOf(const Entry &entry, const QJsonValue &earlier)
{
    if (const auto *json = std::get_if<QJsonValue>(&entry))
        return preferenceFrom(*json);
    if (const auto *value = std::get_if<PreferenceValue>(&entry))
        return *value;
    if (auto data = std::get<LazyData>(entry)())
        return *std::move(data);
    return earlier.isUndefined() ? std::nullopt : std::optional(preferenceFrom(earlier));
}

std::optional<QJsonValue> JsonPreferencesStore::jsonOf(const Entry &entry, const QJsonValue &earlier)
{
    if (const auto *json = std::get_if<QJsonValue>(&entry))
        return *json;
    if (const auto *value = std::get_if<PreferenceValue>(&entry))
        return jsonFrom(*value);
    if (auto data = std::get<LazyData>(entry)())
        return jsonFrom(*std::move(data));
    return earlier.isUndefined() ? std::nullopt : std::optional(earlier);
}

QJsonObject JsonPreferencesStore::jsonOf(const Entries &entries, const QJsonObject &earlier)
{
    QJsonObject object;
    for (const auto &[key, entry] : entries) {
        if (const auto json = jsonOf(entry, earlier.value(key)))
            object.insert(key, *json);
    }
    return object;
}

}  // namespace velquarin
