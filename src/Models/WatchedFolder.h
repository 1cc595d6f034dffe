// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUuid>

namespace velquarin {

//! One folder under which repositories are found automatically.
struct WatchedFolder
{
    QUuid id;               //!< which record this is, whatever else changes about it
    QString path;           //!< absolute, exactly as it was given
    QString name;           //!< what people see
    bool isEnabled = true;  //!< whether it is scanned
    qint64 maxDepth = 0;    //!< how many levels below the folder a scan goes down
    friend bool operator==(const WatchedFolder &, const WatchedFolder &) = default;
};

}  // namespace velquarin
