// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QBoxLayout;

namespace velquarin {

class Switch;
class Text;

//! A titled group of settings on a quietly tinted ground.
class FormSection : public QWidget
{
    Q_OBJECT
public:
    explicit FormSection(const QString &title, QWidget *parent = nullptr);

    void addRow(Switch *control);

    //! Adds a row with something at either edge.
    void addRow(QWidget *leading, QWidget *trailing);

private:
    QBoxLayout *beginRow(int outset = 0);

    Text *m_title;
    QWidget *m_group;
};

}  // namespace velquarin
