// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Settings/RecordRow.h"

class QLabel;

namespace velquarin {

class Picker;
struct WatchedFolder;

//! One watched folder, with how deep it is searched.
class WatchedFolderRow : public RecordRow
{
    Q_OBJECT
public:
    explicit WatchedFolderRow(QWidget *parent);

    void setFolder(const WatchedFolder &folder);

Q_SIGNALS:
    //! The user has chosen another depth, in levels of folders.
    void depthRequested(QUuid id, qint64 maxDepth);

private:
    void chooseDepth(int index);

    QLabel *m_label;
    Picker *m_depth;
    qint64 m_storedDepth = 0;
};

}  // namespace velquarin
