// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Settings/RowList.h"

class QCheckBox;
class QHBoxLayout;
class QLabel;

namespace velquarin {

class Badge;
class IconButton;
class Picker;
class Text;
struct TrackedRepository;
struct WatchedFolder;

//! What the rows of both lists share: a check box, the name over the path, and a red bin at the end. A path too long for
//! the row has an ellipsis in the middle.
class RecordRow : public ListRow
{
    Q_OBJECT
public:
    explicit RecordRow(QWidget *parent);

Q_SIGNALS:
    //! The user has moved the check box.
    void enablingRequested(QUuid id, bool isEnabled);
    void removalRequested(QUuid id);

protected:
    void showRecord(QUuid id, const QString &name, const QString &path, bool isEnabled);

    //! Stands behind the name.
    Badge *addBadge(const QString &word);

    //! What stands behind the texts, from the leading edge on; the bin comes last.
    void addPicker(QWidget *label, QWidget *picker);
    void addBin();

private:
    void layOutTexts();
    void forwardEnabling();

    QCheckBox *m_isEnabled;
    QWidget *m_texts;
    Text *m_name;
    Text *m_path;
    QHBoxLayout *m_firstLine;
    QHBoxLayout *m_row;
    IconButton *m_remove = nullptr;
    bool m_isStoredEnabled = false;
};

//! One tracked repository, with a badge where it was found automatically.
class RepositoryRow : public RecordRow
{
    Q_OBJECT
public:
    explicit RepositoryRow(QWidget *parent);

    void setRepository(const TrackedRepository &repository);

private:
    Badge *m_auto;
};

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
