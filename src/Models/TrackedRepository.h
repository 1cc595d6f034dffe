// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUuid>

namespace velquarin {

//! One local git working tree whose commits count towards the streak.
struct TrackedRepository
{
    QUuid id;                       //!< which record this is, whatever else changes about it
    QString path;                   //!< absolute, exactly as it was given: no normalisation, no links resolved
    QString name;                   //!< what people see
    bool isEnabled = true;          //!< whether refreshes read it
    bool isAutoDiscovered = false;  //!< found under a watched folder; only such records are ever pruned
    friend bool operator==(const TrackedRepository &, const TrackedRepository &) = default;
};

}  // namespace velquarin
