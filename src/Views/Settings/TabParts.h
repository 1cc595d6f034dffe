// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QUuid>

class QBoxLayout;
class QPushButton;
class QWidget;

namespace velquarin {

class Text;

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

}  // namespace velquarin
