// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusMessage>
#include <QVariantMap>

#include <optional>

namespace velquarin {

//! The answer to a call of org.freedesktop.DBus.Properties on an object with one interface of its own, all of
//! whose properties are read-only; nothing for any other call. Unlike the toolkit's own answer it can leave a
//! property out. Source: D-Bus Specification, "org.freedesktop.DBus.Properties"
[[nodiscard]] std::optional<QDBusMessage> answerToPropertiesCall(const QDBusMessage &call, const QString &interface,
                                                                 const QVariantMap &properties);

//! The signal that tells what has changed between two sets of properties; nothing where they are equal.
[[nodiscard]] std::optional<QDBusMessage> propertiesChanged(const QString &path, const QString &interface,
                                                            const QVariantMap &before, const QVariantMap &after);

//! The description of one of our interfaces for introspection: the file of that name in this folder.
[[nodiscard]] QString interfaceDescription(const QString &interface);

//! The names whose values differ, or that only one of the sets has; sorted.
[[nodiscard]] QStringList changedNames(const QVariantMap &before, const QVariantMap &after);

}  // namespace velquarin
