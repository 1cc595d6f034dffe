// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace velquarin {

//! The keys of the group "Desktop Entry" of a desktop entry. Keys are exact: "Name" is not "Name[de]". Of a key that is
//! there twice the last value counts, as it does for GLib.
//! Source: Desktop Entry Specification, "Basic format of the file", "Possible value types"
class DesktopEntry
{
public:
    //! Nothing where @p content is damaged: it begins with another group or with none, or a line is neither a
    //! comment nor a group nor a key with its value.
    [[nodiscard]] static std::optional<DesktopEntry> parse(const QByteArray &content);

    //! Nothing where the key is missing, or its value is no UTF-8 or has an escape sequence that does not exist.
    [[nodiscard]] std::optional<QString> string(const QByteArray &key) const;

    //! The same for a list whose items end with semicolons, the last one's being optional.
    [[nodiscard]] std::optional<QStringList> strings(const QByteArray &key) const;

    //! "true" and "false", and "1" and "0" of old files; nothing where the value is anything else.
    [[nodiscard]] std::optional<bool> boolean(const QByteArray &key) const;

private:
    QHash<QByteArray, QByteArray> m_values;  // as they stand in the file
};

//! @p text as the value of a key of type string.
[[nodiscard]] QByteArray desktopEntryString(const QString &text);

}  // namespace velquarin
