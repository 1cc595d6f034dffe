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
