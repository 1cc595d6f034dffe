// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractScrollArea>
#include <QHash>
#include <QList>
#include <QUuid>
#include <QWidget>

#include <functional>
#include <set>

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

    //! Whether the pointer or the keyboard's focus is in it.
    [[nodiscard]] bool isInUse() const { return underMouse() || focusedControl() >= 0; }

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

//! A list of records in rows of one height. Only the rows in sight exist, so that a list of thousands is as quick as a
//! short one. Tab stops at one row, Up, Down, Page Up, Page Down, Home and End go to the same control of another one.
class RowList : public QAbstractScrollArea
{
    Q_OBJECT
public:
    //! @p makeRow makes a row that shows nothing yet. @p fillRow makes it show the record at an index of the list, which
    //! is the same as that of the id in setIds().
    RowList(std::function<ListRow *(QWidget *parent)> makeRow, std::function<void(ListRow &row, int index)> fillRow,
            QWidget *parent = nullptr);

    //! What the list is of: a screen reader says it to whoever comes into it.
    void setTitle(const QString &title);

    //! Which records the list has, in order, each once; rows in sight are filled anew. Where the list stands scrolled
    //! stays; if the row with the focus is gone, the one in its place has it, at the same control.
    void setIds(const QList<QUuid> &ids);

    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] int rowHeight() const;
    [[nodiscard]] int rowsInSight() const;
    [[nodiscard]] int focusedControl() const;
    [[nodiscard]] std::set<int> neededRows() const;
    void updateScrollBar();
    void layoutRows();
    [[nodiscard]] QRect rowsPlace() const;
    void placeRows();
    void orderRows();
    void discardRowsOutOfSight();
    ListRow *rowFor(QUuid id);
    void watch(ListRow *row);
    void setCurrent(int index);
    void focusRow(int index, int control);
    void bringIntoSight(int index);
    [[nodiscard]] int indexAfter(int key) const;

    std::function<ListRow *(QWidget *)> m_makeRow;
    std::function<void(ListRow &, int)> m_fillRow;
    QList<QUuid> m_ids;
    QHash<QUuid, ListRow *> m_rows;
    int m_current = 0;
    bool m_isChangingIds = false;
    mutable int m_rowHeight = 0;
};

}  // namespace velquarin
