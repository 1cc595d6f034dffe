// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

namespace velquarin {

//! How the count reaches the eye on a status bar.
enum class CountDisplay {
    Label,   //!< the bar writes a text beside a symbolic icon
    Wide,    //!< the bar shows a picture twice as wide as high
    Square,  //!< the bar shows square pictures only: the number is part of the picture
};

//! What has to be known about the program that shows the item. The default suits a program nobody knows.
struct StatusHost
{
    CountDisplay display = CountDisplay::Square;
    bool opensOnlyMenu = false;    //!< a left click never reaches us, it opens the menu
    bool breaksOnLabel = false;    //!< the item disappears as soon as there is a label, even an empty one
    bool wantsMultiplied = false;  //!< it takes the colours of a picture for multiplied with their alpha already
    friend bool operator==(const StatusHost &, const StatusHost &) = default;
};

//! The host behind the process that owns the watcher's name.
//! Shape:  @p processName as /proc/PID/comm has it, without the line's end and cut after 15 characters; empty
//!         where it cannot be read. @p currentDesktop is XDG_CURRENT_DESKTOP and decides only then.
//! Source: docs/decisions/0004-status-item.md
[[nodiscard]] StatusHost statusHost(QByteArrayView processName, const QString &currentDesktop);

//! The host that a process of this machine is, looked up in /proc. A process that has ended or may not be
//! looked at is told by the desktop in the environment. Source: proc(5)
[[nodiscard]] StatusHost statusHostOfProcess(uint processId);

}  // namespace velquarin
