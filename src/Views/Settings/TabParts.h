// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QList>
#include <QString>
#include <QUuid>
#include <QVBoxLayout>
#include <QWidget>

class QPushButton;

namespace velquarin {

class RowList;
class Text;

//! A pop-up of a few values. It may show none of them, and turning the wheel over it scrolls what it stands in instead
//! of choosing something by accident. Keys with Control are its window's. A screen reader finds what it shows under its
//! name, and what it is for in the label whose buddy it is.
class Picker : public QComboBox
{
    Q_OBJECT
public:
    explicit Picker(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};

//! The column of a tab: default padding all round, 16 points between its parts. Where there is so much to say that the
//! window has no room for it, the parts move together before a line of them is cut.
class TabColumn : public QVBoxLayout
{
public:
    explicit TabColumn(QWidget *tab);

    void setGeometry(const QRect &place) override;

private:
    [[nodiscard]] int gaps() const;
};

//! A button with the desktop's look, and a symbol before its title where one is named. @p title may hold a mnemonic.
[[nodiscard]] QPushButton *makeButton(const QString &title, const QString &symbol, QWidget *parent);

//! A row at the end of the column of @p tab, with the default spacing.
[[nodiscard]] QBoxLayout *addRowTo(QWidget &tab);

//! Which records a list has, in their order.
template <typename Record>
[[nodiscard]] QList<QUuid> idsOf(const QList<Record> &records)
{
    QList<QUuid> ids;
    for (const auto &record : records)
        ids.append(record.id);
    return ids;
}

//! A line of red text, empty and hidden.
[[nodiscard]] Text *makeMessage(QWidget *parent);

//! Shows @p text, or hides the line where there is none.
void showLine(Text &line, const QString &text);

//! What an empty list says: a large quiet symbol, a title, an explanation and what to do, in the middle of the room. The
//! button is marked for the style in force as what people will want here.
class EmptyPanel : public QWidget
{
    Q_OBJECT
public:
    struct Words
    {
        QString symbol;
        QString title;
        QString description;
        QString action;
    };

    explicit EmptyPanel(const Words &words, QWidget *parent = nullptr);

    [[nodiscard]] QPushButton *button() const { return m_button; }

private:
    QPushButton *m_button;
};

//! Shows @p list with those records, or @p empty in its place where there are none. A focus that the list then loses
//! goes to @p next.
void showRecords(RowList &list, EmptyPanel &empty, const QList<QUuid> &ids, QWidget &next);

}  // namespace velquarin
