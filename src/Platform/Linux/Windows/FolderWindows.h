// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Folders.h"

#include <QString>

#include <functional>
#include <utility>

namespace velquarin {

class SessionBus;

//! Asks with the desktop's own dialog where there is one, else with Qt's. It opens beside the folder
//! that was last chosen in this run, first in the home folder.
class FolderDialog : public FolderChooser
{
public:
    FolderDialog();

    void choose(const Request &request, QObject &window, Chosen chosen) override;

private:
    QString m_place;
};

//! Shows folders in the desktop's file manager over the session bus; where there is no bus, or nobody on it who can,
//! in whatever the desktop opens folders with. Nothing here waits: not for the file manager, and not for the folder,
//! which may lie on a disk that does not answer. Source: freedesktop.org file-manager-interface, "ShowFolders"
class FileManagerViewer : public FileViewer
{
public:
    //! @p bus must outlive this. @p newToken makes an activation token for what the user does just now, an empty one
    //! where there is none to be had.
    explicit FileManagerViewer(
        SessionBus &bus, std::function<QString()> newToken = [] { return QString(); })
        : m_bus(bus)
        , m_newToken(std::move(newToken))
    {
    }

    void reveal(const QString &path, const std::function<void()> &makeWay) override;

private:
    SessionBus &m_bus;
    std::function<QString()> m_newToken;
};

}  // namespace velquarin
