// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QUuid>
#include <QWidget>

namespace velquarin {

//! One row of a RowList: which record it shows, and its controls from the leading to the trailing edge.
class ListRow : public QWidget
{
    Q_OBJECT
public:
    explicit ListRow(QWidget *parent);

    [[nodiscard]] QUuid id() const { return m_id; }
    [[nodiscard]] const QList<QWidget *> &controls() const { return m_controls; }

    //! Which of the controls has the keyboard's focus; -1 where none has.
    [[nodiscard]] int focusedControl() const;

    //! Whether Tab stops at the row's controls: in a list of a thousand rows it does so in one of them.
    void setTabStop(bool isTabStop);

    //! Whether a line separates it from a next row.
    void setLast(bool isLast);

protected:
    void setId(QUuid id) { m_id = id; }
    void addControl(QWidget *control) { m_controls.append(control); }
    void paintEvent(QPaintEvent *event) override;

private:
    QUuid m_id;
    QList<QWidget *> m_controls;
    bool m_isLast = false;
};

}  // namespace velquarin
