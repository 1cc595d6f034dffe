// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QHBoxLayout;

namespace velquarin {

class Text;

//! What a row says of a record: its name over its path. A path too long for the row has an ellipsis in the middle.
class RecordTexts : public QWidget
{
    Q_OBJECT
public:
    explicit RecordTexts(QWidget *parent = nullptr);

    void setRecord(const QString &name, const QString &path);

    //! Stands behind the name.
    void addBadge(QWidget *badge);

private:
    QHBoxLayout *m_firstLine;
    Text *m_name;
    Text *m_path;
};

}  // namespace velquarin
