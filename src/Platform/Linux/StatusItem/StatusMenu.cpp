// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusMenu.h"

#include <QCoreApplication>
#include <QMenu>

#include <algorithm>

namespace velquarin {

namespace {

void addEntry(QMenu &menu, const MenuEntry &entry)
{
    if (entry.isSeparator()) {
        menu.addSeparator();
        return;
    }
    auto text = entry.text;
    auto *action = menu.addAction(text.replace(u'&', QLatin1String("&&")));
    if (!entry.keyEquivalent.isEmpty())
        action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + entry.keyEquivalent.toUpper()));
    action->setShortcutVisibleInContextMenu(true);
    if (entry.action)
        QObject::connect(action, &QAction::triggered, &menu, entry.action);
}

bool isOnScreen(QPoint point, const QList<QRect> &screens)
{
    return std::any_of(screens.begin(), screens.end(), [&](const auto &screen) { return screen.contains(point); });
}

// No panel is thicker than this, so a point counted from an item's corner is nearer to the origin.
constexpr QRect besideOrigin(0, 0, 64, 64);

}  // namespace

QList<MenuEntry> withOpenEntry(const QList<MenuEntry> &entries, std::function<void()> open)
{
    const auto text = QCoreApplication::translate("StatusItem", "Open Velquarin");
    return QList<MenuEntry>{{text, {}, std::move(open)}, MenuEntry{}} + entries;
}

void fillMenu(QMenu &menu, const QList<MenuEntry> &entries)
{
    menu.clear();
    menu.setWindowTitle(QCoreApplication::translate("StatusItem", "Velquarin"));
    for (const auto &entry : entries)
        addEntry(menu, entry);
}

QPoint believablePosition(QPoint said, QPoint cursor, const QList<QRect> &screens)
{
    const auto isDoubtful = !isOnScreen(said, screens) || besideOrigin.contains(said);
    return isDoubtful && isOnScreen(cursor, screens) ? cursor : said;
}

}  // namespace velquarin
