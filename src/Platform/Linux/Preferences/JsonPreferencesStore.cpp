// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/JsonPreferencesStore.h"

#include "Platform/Linux/Files/ConfigHome.h"
#include "Platform/Linux/Preferences/PreferencesFormat.h"
#include "Platform/PathNames.h"

#include <algorithm>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

// Long enough to catch all values of one save and most of a burst, short enough to have any change on disk in time.
constexpr auto patience = 20ms;

// Ours under the keys that were changed here, theirs under all others. Inserting what is undefined removes the key.
QJsonObject merged(const QJsonObject &ours, QJsonObject theirs, const std::set<QString> &changedKeys)
{
    for (const auto &key : changedKeys)
        theirs.insert(key, ours.value(key));
    return theirs;
}

bool isMoment(const QJsonValue &json)
{
    return std::holds_alternative<Instant>(preferenceFrom(json));
}

// Whether the change of a key replaces a value that is neither what it was here before nor what it is now. Moments are
// noted down by every instance itself: nobody misses an earlier one.
bool isAnyLost(const QJsonObject &theirs, const QJsonObject &before, const QJsonObject &now,
               const std::set<QString> &changedKeys)
{
    return std::any_of(changedKeys.begin(), changedKeys.end(), [&](const QString &key) {
        const auto value = theirs.value(key);
        return !value.isUndefined() && !isMoment(value) && value != before.value(key) && value != now.value(key);
    });
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
    m_own = m_file.load();
    m_encoded = m_own;
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
        m_touched.insert(key);
    }
    m_isEverChanged = true;
    m_writer.request();
}

void JsonPreferencesStore::remove(const QString &key)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_entries.erase(key) == 0 && !m_own.contains(key))
            return;
        m_touched.insert(key);
    }
    m_isEverChanged = true;
    m_writer.request();
}

QFuture<void> JsonPreferencesStore::takeOverChanges()
{
    QPromise<void> look;
    look.start();
    auto done = look.future();
    {
        const std::lock_guard lock(m_mutex);
        m_looks.push_back(std::move(look));
    }
    m_writer.request();
    return done;
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

// Only what differs from what was set here last, or loaded, is ours to write: setting an equal value takes back nothing
// that somebody else has written since.
void JsonPreferencesStore::writeNewest()
{
    std::unique_lock lock(m_mutex);
    const auto touched = std::exchange(m_touched, {});
    auto looks = std::exchange(m_looks, {});
    if (touched.empty() && m_unwritten.empty() && looks.empty())
        return;
    const auto entries = m_entries;
    const auto before = m_own;
    const auto earlier = m_encoded;
    const bool isCopyWanted = std::exchange(m_isCopyWanted, false);
    lock.unlock();

    auto now = before;
    for (const auto &key : touched) {
        now.insert(key, jsonOf(entries, key, before.value(key)));
        if (now.value(key) != before.value(key))
            m_unwritten.insert(key);
    }
    if (isCopyWanted)
        m_file.keepCopyOfLoaded();
    const auto encoded = write(before, now, earlier);

    lock.lock();
    m_own = now;
    m_encoded = encoded;
    takeOver(encoded);
    lock.unlock();
    for (auto &look : looks)
        look.finish();
}

// Returns what the file holds, or would hold if it could be written.
QJsonObject JsonPreferencesStore::write(const QJsonObject &before, const QJsonObject &now, const QJsonObject &earlier)
{
    const auto folderLock = m_file.lock();
    const auto theirs = m_file.changeOfOthers().value_or(earlier);
    if (isAnyLost(theirs, before, now, m_unwritten))
        m_file.keepCopyOfPresent();
    auto encoded = merged(now, theirs, m_unwritten);
    if (m_file.write(encodePreferences(encoded)))
        m_unwritten.clear();
    return encoded;
}

// What is in the file is what we hold, but for what was set or removed since, and for what no file can hold.
void JsonPreferencesStore::takeOver(const QJsonObject &encoded)
{
    std::erase_if(m_entries, [&](const auto &entry) {
        const auto *value = std::get_if<PreferenceValue>(&entry.second);
        return !m_touched.contains(entry.first) && (!value || jsonFrom(*value));
    });
    for (auto member = encoded.constBegin(); member != encoded.constEnd(); ++member) {
        if (!m_touched.contains(member.key()))
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

QJsonValue JsonPreferencesStore::jsonOf(const Entries &entries, const QString &key, const QJsonValue &earlier)
{
    const auto found = entries.find(key);
    if (found == entries.end())
        return QJsonValue::Undefined;
    if (const auto *json = std::get_if<QJsonValue>(&found->second))
        return *json;
    if (const auto *value = std::get_if<PreferenceValue>(&found->second))
        return jsonFrom(*value).value_or(QJsonValue::Undefined);
    const auto data = std::get<LazyData>(found->second)();
    return data ? jsonFrom(*data).value_or(QJsonValue::Undefined) : earlier;
}

}  // namespace velquarin
