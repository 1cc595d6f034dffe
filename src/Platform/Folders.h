// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Interface.h"

#include <QString>

#include <functional>

class QObject;

namespace velquarin {

//! Lets the user choose one folder.
class FolderChooser : public Interface
{
public:
    struct Request
    {
        QString message;       //!< what the folder is for
        QString confirmTitle;  //!< what the button that confirms says
    };
    using Chosen = std::function<void(const QString &path)>;

    //! Asks, and returns at once. @p chosen is called once with the path, exactly as the user gave it, or never: when
    //! the user cancels, or @p window goes, to which the question belongs and which rests until it is answered.
    virtual void choose(const Request &request, QObject &window, Chosen chosen) = 0;
};

//! Shows folders to the user in the file manager of the desktop.
class FileViewer : public Interface
{
public:
    //! Opens a window on the folder at @p path; returns at once. A folder that is not there does nothing.
    //! @p makeWay is called once the folder is known to be there and before the window comes, which may be when whoever
    //! asked is gone.
    virtual void reveal(const QString &path, const std::function<void()> &makeWay) = 0;
};

}  // namespace velquarin
