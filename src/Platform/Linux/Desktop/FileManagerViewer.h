// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileViewer.h"

#include <QString>

namespace velquarin {

class SessionBus;

//! Shows folders in the desktop's file manager over the session bus; where there is no bus, or nobody on it who can,
//! in whatever the desktop opens folders with. Nothing here waits: not for the file manager, and not for the folder,
//! which may lie on a disk that does not answer. Source: freedesktop.org file-manager-interface, "ShowFolders"
class FileManagerViewer : public FileViewer
{
public:
    //! @p bus must outlive this.
    explicit FileManagerViewer(SessionBus &bus)
        : m_bus(bus)
    {
    }

    void reveal(const QString &path, const QString &activationToken) override;

private:
    SessionBus &m_bus;
};

}  // namespace velquarin
