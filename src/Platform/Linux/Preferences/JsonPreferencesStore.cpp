// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/JsonPreferencesStore.h"

#include "Platform/Linux/Files/ConfigHome.h"
#include "Platform/Linux/Preferences/PreferencesFormat.h"
#include "Platform/PathNames.h"

#include <algorithm>
#include <csignal>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

// Long enough to catch all values of one save and most of a burst, short enough to have any change on disk in time.
constexpr auto burst = 20ms;

// A thread inherits the signals that are blocked where it is started. This one takes none, so that they all reach the
// main thread, which knows what they mean.
template <typename Function>
std::thread threadWithoutSignals(Function function)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(std::move(function));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

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

std::optional<PreferenceValue> preferenceIn(const QJsonValue &json)
{
    return json.isUndefined() ? std::nullopt : std::optional(preferenceFrom(json));
}

}  // namespace

QString defaultPreferencesPath()
{
    return joinPath(configHome(), QStringLiteral("velquarin/preferences.json"));
}

JsonPreferencesStore::JsonPreferencesStore(const QString &path)
    : m_file(path)
{
    m_own = m_file.load();
    m_merged = m_own;
}

JsonPreferencesStore::~JsonPreferencesStore()
{
    flush(std::chrono::hours(1));
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        m_isHurried = true;
    }
    m_woken.notify_all();
    if (m_writer.joinable())
        m_writer.join();
}

std::optional<PreferenceValue> JsonPreferencesStore::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    const auto set = m_set.find(key);
    return preferenceIn(set == m_set.end() ? m_merged.value(key) : set->second);
}

void JsonPreferencesStore::set(const QString &key, PreferenceValue value)
{
    put(key, jsonFrom(value).value_or(QJsonValue::Undefined));
}

void JsonPreferencesStore::put(const QString &key, const QJsonValue &value)
{
    {
        const std::lock_guard lock(m_mutex);
        m_set.insert_or_assign(key, value);
        m_touched.insert(key);
    }
    m_isEverChanged = true;
    wakeWriter();
}

void JsonPreferencesStore::remove(const QString &key)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_set.contains(key) && !m_merged.contains(key) && !m_own.contains(key))
            return;
    }
    put(key, QJsonValue::Undefined);
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
    wakeWriter();
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
    wakeWriter();
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(m_mutex);
    m_isHurried = true;
    m_woken.notify_all();
    const bool isDone = m_woken.wait_until(lock, deadline, [this] { return !m_isDue && !m_isRunning; });
    m_isHurried = false;
    return isDone;
}

void JsonPreferencesStore::wakeWriter()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isDue = true;
    }
    m_woken.notify_all();
    if (!m_writer.joinable())
        m_writer = threadWithoutSignals([this] { serve(); });
}

void JsonPreferencesStore::serve()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_woken.wait(lock, [this] { return m_isDue || m_isEnding; });
        if (!m_isDue)
            return;
        m_woken.wait_for(lock, burst, [this] { return m_isHurried; });
        m_isDue = false;
        m_isRunning = true;
        writeNewest(lock);
        m_isRunning = false;
        m_woken.notify_all();
    }
}

// Only what differs from what was set here last, or loaded, is ours to write: setting an equal value takes back nothing
// that somebody else has written since.
void JsonPreferencesStore::writeNewest(std::unique_lock<std::mutex> &lock)
{
    const auto touched = std::exchange(m_touched, {});
    auto looks = std::exchange(m_looks, {});
    if (touched.empty() && m_unwritten.empty() && looks.empty())
        return;
    if (std::exchange(m_isCopyWanted, false))
        m_file.keepCopyOfLoaded();
    const auto before = std::exchange(m_own, withNewest(touched));
    const auto now = m_own;
    const auto earlier = m_merged;
    lock.unlock();

    const auto folderLock = m_file.lock();
    const auto all = withChangesOfOthers(before, now, earlier);
    // Nothing of ours is new: a file that somebody edits by hand keeps its layout.
    const bool isOnlyALook = touched.empty() && m_unwritten.empty();
    if (!isOnlyALook && m_file.write(encodePreferences(all)))
        m_unwritten.clear();

    lock.lock();
    m_merged = all;
    std::erase_if(m_set, [this](const auto &item) { return !m_touched.contains(item.first); });
    for (auto &look : looks)
        look.finish();
}

QJsonObject JsonPreferencesStore::withNewest(const std::set<QString> &touched)
{
    auto now = m_own;
    for (const auto &key : touched) {
        now.insert(key, m_set.at(key));
        if (now.value(key) != m_own.value(key))
            m_unwritten.insert(key);
    }
    return now;
}

// Returns what the file holds once ours is written, or would hold if it could be.
QJsonObject JsonPreferencesStore::withChangesOfOthers(const QJsonObject &before, const QJsonObject &now,
                                                      const QJsonObject &earlier)
{
    const auto theirs = m_file.changeOfOthers().value_or(earlier);
    if (isAnyLost(theirs, before, now, m_unwritten))
        m_file.keepCopyOfPresent();
    return merged(now, theirs, m_unwritten);
}

}  // namespace velquarin
