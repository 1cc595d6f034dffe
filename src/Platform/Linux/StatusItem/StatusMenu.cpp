// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusMenu.h"

#include "Platform/Linux/Windows/DesktopAppearance.h"
#include "Platform/Linux/Windows/LinuxWindowSystem.h"

#include <QApplication>
#include <QScreen>

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

constexpr int halfLength = 60;
constexpr int halfWidth = 1;
constexpr int middleGrey = 128;

QImage pictureOf(QPoint click)
{
    auto *screen = QGuiApplication::screenAt(click);
    if (!screen || !isAllX11())
        return {};
    const auto strip = panelStrip(click, screen->geometry()).translated(-screen->geometry().topLeft());
    return screen->grabWindow(0, strip.x(), strip.y(), strip.width(), strip.height()).toImage();
}

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

QRect panelStrip(QPoint click, const QRect &screen)
{
    const auto toSide = std::min(click.x() - screen.left(), screen.right() - click.x());
    const auto toTopOrBottom = std::min(click.y() - screen.top(), screen.bottom() - click.y());
    const auto half = toTopOrBottom <= toSide ? QPoint(halfLength, halfWidth) : QPoint(halfWidth, halfLength);
    return QRect(click - half, click + half) & screen;
}

bool isMostlyDark(const QImage &picture)
{
    qsizetype dark = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            dark += qGray(picture.pixel(x, y)) < middleGrey ? 1 : 0;
    }
    return 2 * dark > qsizetype(picture.width()) * picture.height();
}

void matchPanel(QMenu &menu, QPoint click)
{
    menu.setPalette(QPalette());
    const auto ofDesktop = menu.palette();
    const auto wanted = darkenedWhere(isMostlyDark(pictureOf(click)), ofDesktop);
    if (wanted != ofDesktop)
        menu.setPalette(wanted);
}

}  // namespace velquarin
