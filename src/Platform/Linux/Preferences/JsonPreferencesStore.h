// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Preferences/PreferencesFile.h"
#include "Platform/PreferencesStore.h"

#include <QJsonObject>
#include <QPromise>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace velquarin {

//! "velquarin/preferences.json" below the folder of the user's configuration.
[[nodiscard]] QString defaultPreferencesPath();

//! The preferences as one JSON file, which is read when the store is made and written on a thread that sleeps
//! otherwise, once for all changes that come close together. What somebody else, a second instance of the user, has written under keys that were not
//! changed here since is taken over at the next write, or when asked for.
//! Source: docs/decisions/0002-preferences-file.md
class JsonPreferencesStore final : public PreferencesStore
{
public:
    explicit JsonPreferencesStore(const QString &path);

    //! Writes what is pending, however long that takes.
    ~JsonPreferencesStore() override;

    [[nodiscard]] std::optional<PreferenceValue> value(const QString &key) const override;

    //! A value equal to the one that was last set here, or loaded, is no change: at the next write the key gets what
    //! somebody else has written since. A value that JSON cannot hold (jsonFrom() tells which) leaves the key empty.
    void set(const QString &key, PreferenceValue value) override;

    void remove(const QString &key) override;
    [[nodiscard]] QFuture<void> takeOverChanges() override;
    void putCopyAside() override;

    //! Blocks until all changes are on disk, as far as that can be, or @p limit is over; what could not be written before
    //! is tried again. For the end of the program. Returns whether it was done in time.
    bool flush(std::chrono::milliseconds limit);

private:
    void put(const QString &key, const QJsonValue &value);
    void wakeWriter();
    void serve();
    void writeNewest(std::unique_lock<std::mutex> &lock);
    [[nodiscard]] QJsonObject withNewest(const std::set<QString> &touched);
    [[nodiscard]] QJsonObject withChangesOfOthers(const QJsonObject &before, const QJsonObject &now,
                                                  const QJsonObject &earlier);

    mutable std::mutex m_mutex;
    std::condition_variable m_woken;      // of anything that the writer or who waits for it looks at
    bool m_isDue = false;                 // guarded by m_mutex: a run is wanted that has not begun
    bool m_isRunning = false;             // guarded by m_mutex
    bool m_isHurried = false;             // guarded by m_mutex: nobody waits for the end of a burst
    bool m_isEnding = false;              // guarded by m_mutex
    std::map<QString, QJsonValue> m_set;  // guarded by m_mutex: set here and not yet in m_merged; undefined: removed
    QJsonObject m_merged;                 // guarded by m_mutex: the values as the writer last put them together
    QJsonObject m_own;                    // guarded by m_mutex: what the writer last knew to be set here, or loaded
    std::set<QString> m_touched;          // guarded by m_mutex: what was set or removed since the last write
    bool m_isCopyWanted = false;          // guarded by m_mutex
    std::vector<QPromise<void>> m_looks;  // guarded by m_mutex: who waits for what others have written
    bool m_isEverChanged = false;         // main thread only
    std::set<QString> m_unwritten;        // the writer's: the keys that were changed here and are not in the file yet
    PreferencesFile m_file;               // the writer's, once the constructor is done
    std::thread m_writer;                 // from the first change on
};

}  // namespace velquarin
