// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PreferencesStore.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace velquarin {

//! The preferences as they are in the file, for a command that answers and leaves no trace: what is set stays in memory,
//! and the file is neither written nor put aside.
class ReadOnlyPreferences final : public PreferencesStore
{
public:
    //! Reads the file, once. One that is missing is empty.
    explicit ReadOnlyPreferences(QString path);

    //! Why what it holds cannot be read; nothing where it could.
    [[nodiscard]] const std::optional<QString> &failure() const { return m_failure; }

    [[nodiscard]] std::optional<PreferenceValue> value(const QString &key) const override;
    void set(const QString &key, PreferenceValue value) override;
    void remove(const QString &key) override;
    [[nodiscard]] QFuture<void> takeOverChanges() override;
    //! A value was found that cannot be read: that is a failure of the whole.
    void putCopyAside() override;

private:
    void load();

    QString m_path;
    QJsonObject m_values;
    std::optional<QString> m_failure;
};

}  // namespace velquarin
