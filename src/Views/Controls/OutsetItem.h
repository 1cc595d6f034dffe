// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <QStyle>
#include <QWidget>
#include <QWidgetItem>

namespace velquarin {

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

    [[nodiscard]] QSize sizeHint() const override { return QWidgetItem::sizeHint().shrunkBy(m_outset); }
    [[nodiscard]] QSize minimumSize() const override { return QWidgetItem::minimumSize().shrunkBy(m_outset); }
    [[nodiscard]] QSize maximumSize() const override { return QWidgetItem::maximumSize().shrunkBy(m_outset); }
    [[nodiscard]] QRect geometry() const override { return QWidgetItem::geometry().marginsRemoved(m_outset); }

    void setGeometry(const QRect &shown) override
    {
        const auto room = shown.marginsAdded(m_outset);
        const auto size = room.size().boundedTo(QWidgetItem::maximumSize());
        widget()->setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, room));
    }

private:
    QMargins m_outset;
};

}  // namespace velquarin
