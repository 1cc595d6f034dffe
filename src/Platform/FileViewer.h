// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Interface.h"

#include <functional>

class QString;

namespace velquarin {

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
