// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

namespace velquarin {

//! Keeps other instances of this program from changing what is in a folder, for as long as it lives. It leaves nothing
//! behind, however the program ends. Source: flock(2)
class FolderLock
{
public:
    //! Waits at most @p patience while another one is held.
    FolderLock(const QString &folder, std::chrono::milliseconds patience);
    ~FolderLock();
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    //! Whether somebody else held it to the end. A folder that nobody can lock, on some network file systems for
    //! instance, is held by nobody.
    [[nodiscard]] bool isHeldByOther() const { return m_isHeldByOther; }

private:
    int m_folder;
    bool m_isHeldByOther = false;
};

}  // namespace velquarin
