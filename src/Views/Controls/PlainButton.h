// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Style.h"

#include <QAbstractButton>
#include <QMargins>
#include <QStyle>
#include <QVariantAnimation>
#include <QWidget>
#include <QWidgetItem>

class QHBoxLayout;
class QLayout;

namespace velquarin {

//! A button without a border: what it holds is what it looks like, and its whole rectangle is clickable. Tab, Space and
//! Enter work it; a ring shows that it has the focus, and a quiet ground that the pointer is on it, or presses it. A click
//! does not take the focus from where it is.
class PlainButton : public QAbstractButton
{
    Q_OBJECT
public:
    explicit PlainButton(QWidget *parent = nullptr);

    //! How far the rectangle reaches beyond the content on either side, so that the ring does not touch the text: two
    //! that stand at the default spacing share it, and none paints over the other.
    [[nodiscard]] static int outset();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    //! A row for the content, @p verticalPadding logical pixels away from the upper and lower edge.
    QHBoxLayout *makeRow(int verticalPadding);

    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};

//! A row for @p button whose text then stands at the default padding from both edges.
[[nodiscard]] QLayout *withoutOutset(PlainButton *button);

//! A bare symbol that can be pressed: of the caption's size and the text's colour unless it is said otherwise. Disabled,
//! it is half transparent.
class IconButton : public PlainButton
{
    Q_OBJECT
public:
    //! @p accessibleName is what a screen reader says in place of the picture.
    IconButton(QString symbol, const QString &accessibleName, QWidget *parent = nullptr);

    //! @p size in points, of the text it stands beside.
    void setLook(double size, const style::Tone &tone);

    //! Turns the symbol round and round, whole turns and at least one, for as long as that is wanted and somebody sees it.
    //! Where the desktop wants no animations it stands still.
    void setTurning(bool isTurning);

    [[nodiscard]] double opacity() const;
    [[nodiscard]] virtual QColor color() const;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void turnIfWanted();

    QString m_symbol;
    double m_size;
    style::Tone m_tone;
    QVariantAnimation m_turn{this};
    bool m_isTurning = false;
};

//! A widget in a layout that counts what it shows alone: its rectangle reaches @p outset beyond that on every side, into
//! paddings and gaps, where it can be hit as well.
class OutsetItem : public QWidgetItem
{
public:
    OutsetItem(QWidget *widget, int outset)
        : QWidgetItem(widget)
        , m_outset(outset, outset, outset, outset)
    {
    }

    [[nodiscard]] QSize sizeHint() const override { return shown(QWidgetItem::sizeHint()); }
    [[nodiscard]] QSize minimumSize() const override { return shown(QWidgetItem::minimumSize()); }
    [[nodiscard]] QSize maximumSize() const override { return shown(QWidgetItem::maximumSize()); }
    [[nodiscard]] QRect geometry() const override { return QWidgetItem::geometry().marginsRemoved(m_outset); }

    void setGeometry(const QRect &shown) override
    {
        const auto room = shown.marginsAdded(m_outset);
        const auto size = room.size().boundedTo(QWidgetItem::maximumSize());
        widget()->setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, room));
    }

private:
    // What is hidden takes no room, and no less than none.
    [[nodiscard]] QSize shown(QSize size) const { return isEmpty() ? size : size.shrunkBy(m_outset); }

    QMargins m_outset;
};

}  // namespace velquarin
