// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"
#include "Platform/Interface.h"

#include <QByteArray>
#include <QFuture>
#include <QString>

#include <optional>
#include <variant>

namespace velquarin {

//! Something is stored under the key, but it is of no type that we know.
struct UnreadableValue
{
    friend bool operator==(const UnreadableValue &, const UnreadableValue &) = default;
};

//! A value together with its type, which the store keeps.
using PreferenceValue = std::variant<bool, double, Instant, QByteArray, QString, UnreadableValue>;

//! The user's preferences: typed values under keys. Used from the main thread; never waits for a disk after
//! it has been read. What is set can be read back at once, and is on disk 100 ms later at the latest. Source:
//! docs/decisions/0002-preferences-file.md
class PreferencesStore : public Interface
{
public:
    //! Nothing where the key holds nothing, which is not the same as a stored false or 0.
    [[nodiscard]] virtual std::optional<PreferenceValue> value(const QString &key) const = 0;

    virtual void set(const QString &key, PreferenceValue value) = 0;
    virtual void remove(const QString &key) = 0;

    //! Done once value() answers what the user's other instances have written by now, too; later, through the event loop.
    [[nodiscard]] virtual QFuture<void> takeOverChanges() = 0;

    //! Keeps a copy of what was stored when the program started, before it is written over: called by whoever
    //! found a value that it could not read.
    virtual void putCopyAside() = 0;
};

}  // namespace velquarin
