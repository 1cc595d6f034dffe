// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace velquarin {

//! A word on a blue capsule.
class Badge : public QWidget
{
    Q_OBJECT
public:
    explicit Badge(QString word, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_word;
};

}  // namespace velquarin
