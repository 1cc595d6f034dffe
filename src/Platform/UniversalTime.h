// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimeZone>

namespace velquarin {

//! What makes a date and time of Qt one in Greenwich: newer versions no longer take the name of the older.
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
constexpr auto universalTime = Qt::UTC;
#else
constexpr auto universalTime = QTimeZone::UTC;
#endif

}  // namespace velquarin
