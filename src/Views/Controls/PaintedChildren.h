// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QRect>
#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace velquarin {

//! A part of a widget that is painted and no widget itself, as a screen reader finds it: a tab, a day.
struct PaintedChild
{
    QAccessible::Role role = QAccessible::NoRole;
    QString name;                      //!< without one it is invisible
    QRect place;                       //!< in the widget
    QAccessible::State state;          //!< without what follows from the widget: whether it is seen and has the focus
    QString shortcut = {};             //!< the key that leads to it
    std::function<void()> press = {};  //!< what pressing it does; empty where it cannot be pressed
};

//! What a widget with such parts inherits besides. The widget calls setAccessibleRole() in its constructor.
class PaintedChildren
{
public:
    PaintedChildren() = default;
    PaintedChildren(const PaintedChildren &) = delete;
    PaintedChildren &operator=(const PaintedChildren &) = delete;
    virtual ~PaintedChildren() = default;

    [[nodiscard]] virtual int paintedChildCount() const = 0;

    //! @p index is from 0 to paintedChildCount() - 1.
    [[nodiscard]] virtual PaintedChild paintedChild(int index) = 0;

    [[nodiscard]] virtual std::optional<int> paintedChildAt(QPoint position) const = 0;

    //! The one that has the keyboard's focus while the widget has it.
    [[nodiscard]] virtual std::optional<int> currentPaintedChild() const = 0;
};

//! What a screen reader sees of @p widget; null where it is no PaintedChildren. Children are made when somebody first
//! asks for them.
[[nodiscard]] QAccessibleInterface *makePaintedChildrenInterface(QWidget &widget, QAccessible::Role role);

}  // namespace velquarin
