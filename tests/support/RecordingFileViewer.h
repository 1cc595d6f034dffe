// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Folders.h"

#include <QStringList>

#include <functional>

namespace velquarin::test {

//! Writes down the folders it was asked to show, as one does that still looks for the latest of them.
class RecordingFileViewer : public FileViewer
{
public:
    void reveal(const QString &path, const std::function<void()> &makeWay) override
    {
        shown.append(path);
        findFolder = makeWay;
    }

    QStringList shown;
    std::function<void()> findFolder;
};

}  // namespace velquarin::test
