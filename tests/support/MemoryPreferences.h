// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PreferencesStore.h"

#include <QMap>
#include <QPromise>
#include <QStringList>

#include <utility>

namespace velquarin::test {

//! A store without a disk, which notes down what is done to it.
class MemoryPreferences : public PreferencesStore
{
public:
    MemoryPreferences() = default;
    explicit MemoryPreferences(QMap<QString, PreferenceValue> stored)
        : values(std::move(stored))
    {
    }

    [[nodiscard]] std::optional<PreferenceValue> value(const QString &key) const override
    {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(*found);
    }

    void set(const QString &key, PreferenceValue value) override
    {
        operations.append(QStringLiteral("set ") + key);
        values.insert(key, value);
    }

    void remove(const QString &key) override
    {
        operations.append(QStringLiteral("remove ") + key);
        values.remove(key);
    }

    [[nodiscard]] QFuture<void> takeOverChanges() override
    {
        QPromise<void> promise;
        promise.start();
        promise.finish();
        return promise.future();
    }

    void putCopyAside() override
    {
        operations.append(QStringLiteral("put copy aside"));
        copyAside = values;
    }

    QMap<QString, PreferenceValue> values;
    std::optional<QMap<QString, PreferenceValue>> copyAside;  //!< what was there when a copy was last asked for
    QStringList operations;                                   //!< "set key", "remove key", "put copy aside", in order
};

}  // namespace velquarin::test
