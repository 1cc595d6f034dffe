// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace velquarin {

//! A quiet line, one pixel wide and as long as its layout makes it.
class Divider : public QWidget
{
    Q_OBJECT
public:
    explicit Divider(Qt::Orientation orientation, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRectF lineIn(const QPainter &painter) const;

    Qt::Orientation m_orientation;
};

}  // namespace velquarin
