// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

class QHBoxLayout;
class QLayout;

namespace velquarin {

//! A button without a border: what it holds is what it looks like, and its whole rectangle is clickable. Tab, Space and
//! Enter work it; a ring shows that it has the focus. A click does not take the focus from where it is.
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

}  // namespace velquarin
