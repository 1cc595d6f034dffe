// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileViewer.h"

#include <QString>
#include <QStringList>

namespace velquarin::test {

//! Shows nothing and keeps what it was to show.
class RecordingFileViewer : public FileViewer
{
public:
    void reveal(const QString &path, const QString & /*activationToken*/) override { m_revealed << path; }

    [[nodiscard]] const QStringList &revealed() const { return m_revealed; }
private:
    QStringList m_revealed;
};
} // namespace velquarin::test
//! Writes down the folders it was asked to show.
    void reveal(const QString &path, const QString & /*activationToken*/) override { shown.append(path); }
    QStringList shown;
}  // namespace velquarin::test
