// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

class QString;

namespace velquarin {

//! Shows folders to the user in the file manager of the desktop.
class FileViewer
{
public:
    FileViewer() = default;
    FileViewer(const FileViewer &) = delete;
    FileViewer &operator=(const FileViewer &) = delete;
    virtual ~FileViewer() = default;

    //! Opens a window on the folder at @p path; returns at once. A folder that is not there does nothing.
    //! @p activationToken lets the window take the focus; it may be empty.
    virtual void reveal(const QString &path, const QString &activationToken) = 0;
};

}  // namespace velquarin
