// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Accessibility.h"

#include "Views/Controls/PaintedChildren.h"

#include <QAccessibleObject>
#include <QAccessibleWidget>
#include <QGuiApplication>
#include <QScrollArea>
#include <QWindow>

#include <algorithm>

namespace velquarin {

namespace {

constexpr auto roleProperty = "accessibleRole";

// A shadow is no part of what is there.
class ContentInterface : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;
    [[nodiscard]] QRect rect() const override
    {
        const auto place = widget()->contentsRect();
        return {widget()->mapToGlobal(place.topLeft()), place.size()};
    }
};

QAccessibleInterface *widgetInterface(const QString & /*className*/, QObject *object)
{
    auto *const widget = qobject_cast<QWidget *>(object);
    const auto property = widget != nullptr ? widget->property(roleProperty) : QVariant();
    if (!property.isValid())
        return nullptr;
    const auto role = QAccessible::Role(property.toInt());
    auto *const withPaintedChildren = makePaintedChildrenInterface(*widget, role);
    return withPaintedChildren != nullptr ? withPaintedChildren : new ContentInterface(widget, role);
}

// A menu is no window to a screen reader, though Qt makes a window for it.
bool isListed(const QWindow &window, const QAccessibleInterface *root)
{
    if (root == nullptr || root->object() == nullptr)
        return false;
    return window.type() != Qt::Popup || root->role() == QAccessible::Window;
}

QList<QAccessibleInterface *> listedWindows()
{
    QList<QAccessibleInterface *> roots;
    const auto windows = QGuiApplication::topLevelWindows();
    for (const auto *window : windows) {
        if (auto *root = window->accessibleRoot(); isListed(*window, root))
            roots.append(root);
    }
    return roots;
}

class ApplicationInterface : public QAccessibleApplication
{
public:
    [[nodiscard]] int childCount() const override { return int(listedWindows().size()); }
    [[nodiscard]] QAccessibleInterface *child(int index) const override { return listedWindows().value(index); }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override
    {
        const auto roots = listedWindows();
        const auto found = std::ranges::find(roots, child->object(), &QAccessibleInterface::object);
        return found == roots.end() ? -1 : int(found - roots.begin());
    }
};

QAccessibleInterface *applicationInterface(const QString & /*className*/, QObject *object)
{
    return object != nullptr && object == QCoreApplication::instance() ? new ApplicationInterface : nullptr;
}

}  // namespace

// Installed once the application object is there, since Qt asks the factory first that was installed last.
void setAccessibleRole(QWidget &widget, QAccessible::Role role)
{
    QAccessible::installFactory(widgetInterface);
    widget.setProperty(roleProperty, int(role));
}

void readScrollAreaWhole(QScrollArea &area)
{
    setAccessibleRole(area, QAccessible::Client);
}

void installAccessibleApplication()
{
    QAccessible::installFactory(applicationInterface);
}

}  // namespace velquarin
