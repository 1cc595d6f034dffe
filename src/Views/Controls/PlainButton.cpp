// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/PlainButton.h"

#include "Views/Controls/Style.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

namespace velquarin {

PlainButton::PlainButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::TabFocus);
}

int PlainButton::outset()
{
    return style::points(style::defaultSpacing) / 2;
}

QSize PlainButton::sizeHint() const
{
    return QWidget::sizeHint();
}

QHBoxLayout *PlainButton::makeRow(int verticalPadding)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(outset(), verticalPadding, outset(), verticalPadding);
    row->setSpacing(style::points(style::defaultSpacing));
    return row;
}

void PlainButton::paintEvent(QPaintEvent * /*event*/)
{
    if (!hasFocus())
        return;
    QPainter painter(this);
    style::paintFocusRing(painter, rect(), palette());
}

// A key that is held down is one press, however often the keyboard repeats it.
void PlainButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        QAbstractButton::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        click();
}

QLayout *withoutOutset(PlainButton *button)
{
    auto *const row = new QHBoxLayout;
    const auto besides = style::points(style::defaultPadding) - PlainButton::outset();
    row->setContentsMargins(besides, 0, besides, 0);
    row->addWidget(button);
    return row;
}

}  // namespace velquarin
