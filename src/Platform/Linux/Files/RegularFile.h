// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velquarin {

//! All of a file of @p mostBytes or fewer. Nothing where it is longer, cannot be read or is no regular file; a fifo or a
//! device in its place is not waited for. Links are followed.
//! Source: open(2), O_NONBLOCK
[[nodiscard]] std::optional<QByteArray> readRegularFile(const QString &path, qint64 mostBytes);

}  // namespace velquarin
