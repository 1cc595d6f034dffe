// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/PaintedChildren.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <map>

namespace velquarin {

namespace {

// None either while the widget is being destroyed, when it is of its own class no more.
PaintedChildren *paintedChildrenOf(QObject *widget)
{
    return dynamic_cast<PaintedChildren *>(widget);
}

class ChildInterface final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    ChildInterface(QWidget *widget, int index)
        : m_widget(widget)
        , m_index(index)
        , m_canBePressed(described().press != nullptr)
    {
    }

    [[nodiscard]] int index() const { return m_index; }

    [[nodiscard]] bool isValid() const override { return owner() != nullptr && m_index < owner()->paintedChildCount(); }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override { return m_widget ? m_widget->window()->windowHandle() : nullptr; }
    [[nodiscard]] QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_widget);
    }
    [[nodiscard]] QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface * /*child*/) const override { return -1; }
    [[nodiscard]] QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override {}
    [[nodiscard]] QAccessible::Role role() const override { return described().role; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Accelerator)
            return described().shortcut;
        return kind == QAccessible::Name ? described().name : QString();
    }

    [[nodiscard]] QRect rect() const override
    {
        if (!isValid())
            return {};
        const auto place = described().place;
        return {m_widget->mapToGlobal(place.topLeft()), place.size()};
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        const auto child = described();
        auto state = child.state;
        state.invalid = !isValid();
        if (state.invalid)
            return state;
        state.invisible = !m_widget->isVisible() || child.name.isEmpty();
        state.offscreen = !m_widget->visibleRegion().intersects(child.place);
        state.focusable = state.focusable && !state.invisible;
        state.focused = m_widget->hasFocus() && owner()->currentPaintedChild() == m_index;
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        const bool isForPressing = type == QAccessible::ActionInterface && m_canBePressed;
        return isForPressing ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString &name) override
    {
        if (const auto press = described().press; press && name == pressAction())
            press();
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString & /*name*/) const override { return {}; }

private:
    [[nodiscard]] PaintedChildren *owner() const { return paintedChildrenOf(m_widget); }
    [[nodiscard]] PaintedChild described() const { return isValid() ? owner()->paintedChild(m_index) : PaintedChild(); }

    QPointer<QWidget> m_widget;
    int m_index;
    bool m_canBePressed;
};

class ParentInterface : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    ~ParentInterface() override
    {
        for (const auto &[index, id] : m_children)
            QAccessible::deleteAccessibleInterface(id);
    }

    [[nodiscard]] int childCount() const override { return owner() != nullptr ? owner()->paintedChildCount() : 0; }

    [[nodiscard]] QAccessibleInterface *child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto [entry, isNew] = m_children.try_emplace(index);
        if (isNew)
            entry->second = QAccessible::registerAccessibleInterface(new ChildInterface(widget(), index));
        return QAccessible::accessibleInterface(entry->second);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override
    {
        const auto *const painted = dynamic_cast<const ChildInterface *>(child);
        return painted != nullptr ? painted->index() : -1;
    }

    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override
    {
        return owner() != nullptr ? childOf(owner()->paintedChildAt(widget()->mapFromGlobal(QPoint(x, y)))) : nullptr;
    }

    [[nodiscard]] QAccessibleInterface *focusChild() const override
    {
        const bool hasFocus = owner() != nullptr && widget()->hasFocus();
        return hasFocus ? childOf(owner()->currentPaintedChild()) : nullptr;
    }

private:
    [[nodiscard]] PaintedChildren *owner() const { return paintedChildrenOf(object()); }
    [[nodiscard]] QAccessibleInterface *childOf(std::optional<int> index) const { return child(index.value_or(-1)); }

    mutable std::map<int, QAccessible::Id> m_children;
};

}  // namespace

QAccessibleInterface *makePaintedChildrenInterface(QWidget &widget, QAccessible::Role role)
{
    return paintedChildrenOf(&widget) != nullptr ? new ParentInterface(&widget, role) : nullptr;
}

}  // namespace velquarin
