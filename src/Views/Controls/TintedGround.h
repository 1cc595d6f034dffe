// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace velquarin {

//! A quietly tinted ground with round corners, for what belongs together.
class TintedGround : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *event) override;
};

//! Paints such a ground.
void paintTintedGround(QPainter &painter, const QRectF &rect, const QPalette &palette);

}  // namespace velquarin
