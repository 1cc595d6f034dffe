// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FolderChooser.h"

#include <QString>

namespace velquarin {

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

}  // namespace velquarin
