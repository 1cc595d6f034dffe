// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Settings/ListRow.h"

class QCheckBox;
class QHBoxLayout;

namespace velquarin {

class IconButton;
class RecordTexts;

//! What the rows of both lists share: a check box, the name over the path, and a red bin at the end.
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

    [[nodiscard]] RecordTexts &texts() { return *m_texts; }

    //! What stands behind the texts, from the leading edge on; the bin comes last.
    void addPicker(QWidget *label, QWidget *picker);
    void addBin();

private:
    void forwardEnabling();

    QCheckBox *m_isEnabled;
    RecordTexts *m_texts;
    QHBoxLayout *m_row;
    IconButton *m_remove = nullptr;
    bool m_isStoredEnabled = false;
};

}  // namespace velquarin
