// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/AccessibleApplication.h"

#include "Views/Dashboard/Popover.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace velquarin {

namespace {

bool isListed(const QWindow &window, const QAccessibleInterface *root)
{
    if (!root || !root->object())
        return false;
    return window.type() != Qt::Popup || qobject_cast<Popover *>(root->object());
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
        const auto found = std::ranges::find_if(
            roots, [child](const QAccessibleInterface *root) { return root->object() == child->object(); });
        return found == roots.end() ? -1 : int(found - roots.begin());
    }
};

QAccessibleInterface *makeApplicationInterface(const QString & /*className*/, QObject *object)
{
    return object && object == QCoreApplication::instance() ? new ApplicationInterface : nullptr;
}

}  // namespace

void installAccessibleApplication()
{
    QAccessible::installFactory(makeApplicationInterface);
}

}  // namespace velquarin
