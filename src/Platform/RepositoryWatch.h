// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace velquarin {

//! Something on disk that tells of a commit.
struct WatchPlace
{
    enum class Sign {
        Replaced,  //!< another file is moved into the place of the file
        Written,   //!< the file is written to
        Any,       //!< any file is moved there, or a folder made
    };
    QString folder;
    QString name;  //!< of the file in that folder; nothing where any counts
    Sign sign = Sign::Replaced;
    friend bool operator==(const WatchPlace &, const WatchPlace &) = default;
};

//! Hears of commits while they are made, as far as the disk tells: network disks do not. Nothing wakes up while nothing
//! changes.
class RepositoryWatch : public QObject
{
    Q_OBJECT
public:
    //! Watches these places from now on, and no others. Returns whether any of them was not watched until now. Waits for
    //! the disk, and may be called from any thread.
    virtual bool watch(const QList<WatchPlace> &places) = 0;

Q_SIGNALS:
    //! One of the places has changed, or so much has that it was not told. On the thread of this object.
    void changed();
};

}  // namespace velquarin
