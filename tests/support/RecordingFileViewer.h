// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileViewer.h"

#include <QStringList>

namespace velquarin::test {

//! Writes down the folders it was asked to show.
class RecordingFileViewer : public FileViewer
{
public:
    void reveal(const QString &path, const QString & /*activationToken*/) override { shown.append(path); }

    QStringList shown;
};

}  // namespace velquarin::test
