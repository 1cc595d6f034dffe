// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PreferencesStore.h"

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>

#include <optional>

namespace velquarin {

//! The text of a preferences file: one JSON object, a member a key. Source: docs/decisions/0002-preferences-file.md
[[nodiscard]] QByteArray encodePreferences(const QJsonObject &values);

//! Errors: nothing where the text is anything but one JSON object in UTF-8.
[[nodiscard]] std::optional<QJsonObject> decodePreferences(const QByteArray &text);

//! How a value stands in the file. Nothing for what JSON cannot hold: a number that is not finite, a text that
//! is no valid Unicode, a moment outside of the years 1 to 9999; and for UnreadableValue.
[[nodiscard]] std::optional<QJsonValue> jsonFrom(const PreferenceValue &value);

//! The value that stands so in the file; UnreadableValue where it is of none of our forms.
[[nodiscard]] PreferenceValue preferenceFrom(const QJsonValue &json);

}  // namespace velquarin
