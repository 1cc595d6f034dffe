// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QBoxLayout;

namespace velquarin {

class Switch;
class Text;

//! A setting below a title, on a quietly tinted ground. Its row is set once.
class FormSection : public QWidget
{
    Q_OBJECT
public:
    explicit FormSection(const QString &title, QWidget *parent = nullptr);

    void setRow(Switch *control);

    //! A row with something at either edge.
    void setRow(QWidget *leading, QWidget *trailing);

private:
    QBoxLayout *makeRow(int outset = 0);

    Text *m_title;
    QWidget *m_group;
};

}  // namespace velquarin
