// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/LinuxStatusItem.h"

#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/Linux/StatusItem/DbusMenu.h"
#include "Platform/Linux/StatusItem/SniStatusItem.h"
#include "Platform/Linux/StatusItem/StatusMenu.h"
#include "Platform/Linux/StatusItem/StatusNotifierWatch.h"
#include "Platform/Linux/StatusItem/XEmbedStatusItem.h"
#include "Platform/Linux/Windows/LinuxWindowSystem.h"
#include "Platform/Linux/Windows/MenuWindow.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

namespace velquarin {

namespace {

QList<QRect> screenRectangles()
{
    QList<QRect> rectangles;
    const auto screens = QGuiApplication::screens();
    for (const auto *screen : screens)
        rectangles.append(screen->geometry());
    return rectangles;
}

// They are a thing of X11; asking for one elsewhere only earns warnings.
bool hasTraysOfTheOlderKind()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

}  // namespace

LinuxStatusItem::LinuxStatusItem(SessionBus &bus, QString iconThemePath, QObject *parent)
    : StatusItem(parent)
    , m_bus(bus)
    , m_iconThemePath(std::move(iconThemePath))
{
    connect(&m_bus, &SessionBus::connected, this, &LinuxStatusItem::followBus);
    connect(&m_bus, &SessionBus::disconnected, this, &LinuxStatusItem::loseBus);
    followBus();
}

LinuxStatusItem::~LinuxStatusItem() = default;

// Asking for the connection can make it, which leads here once more before the first call goes on.
void LinuxStatusItem::followBus()
{
    const auto connection = m_bus.connection();
    if (!connection.isConnected()) {
        moveToTray();
        return;
    }
    if (m_watch)
        return;
    m_watch = std::make_unique<StatusNotifierWatch>(connection);
    connect(m_watch.get(), &StatusNotifierWatch::appeared, this, &LinuxStatusItem::moveToBar);
    connect(m_watch.get(), &StatusNotifierWatch::shownChanged, this, &LinuxStatusItem::beSeen);
    connect(m_watch.get(), &StatusNotifierWatch::absent, this, &LinuxStatusItem::moveToTray);
}

void LinuxStatusItem::loseBus()
{
    m_watch.reset();
    moveToTray();
}

// A watcher that took the place of another has to be told of the item as well.
void LinuxStatusItem::moveToBar(const StatusHost &host, bool isShown)
{
    m_host = host;
    const bool stoodThere = m_bar != nullptr;
    beSeen(isShown);
    if (stoodThere)
        m_bar->announce();
}

void LinuxStatusItem::beSeen(bool isShownInBar)
{
    moveTo(isShownInBar ? Place::Bar : Place::BarThatNobodyShows);
}

void LinuxStatusItem::moveToTray()
{
    moveTo(Place::Tray);
}

// Whoever begins to show what the watcher collects finds the item there; until then the tray has it too.
void LinuxStatusItem::moveTo(Place place)
{
    m_place = place;
    if (!m_appearance || place == Place::Unknown)
        return;
    if (place == Place::Tray) {
        m_bar.reset();
        m_barMenu.reset();
    } else {
        standInBar();
    }
    if (place == Place::Bar)
        m_tray.reset();
    else
        showInTray();
}

void LinuxStatusItem::standInBar()
{
    const bool isNew = !m_bar;
    if (isNew)
        makeBar();
    m_bar->setHost(m_host);
    updateBarMenu();
    if (isNew)
        m_bar->announce();
}

void LinuxStatusItem::makeBar()
{
    m_barMenu = std::make_unique<DbusMenu>(m_bus.connection(), m_iconThemePath);
    connect(m_barMenu.get(), &DbusMenu::opened, this, &StatusItem::menuOpened);
    m_bar = std::make_unique<SniStatusItem>(m_bus.connection(), m_iconThemePath, m_host, *m_appearance);
    connect(m_bar.get(), &SniStatusItem::activated, this, &StatusItem::activated);
    connect(m_bar.get(), &SniStatusItem::menuRequested, this, &LinuxStatusItem::popUpMenu);
}

void LinuxStatusItem::showInTray()
{
    if (m_tray || !hasTraysOfTheOlderKind())
        return;
    m_tray = std::make_unique<XEmbedStatusItem>(*m_appearance);
    connect(m_tray.get(), &XEmbedStatusItem::activated, this,
            [this](QPoint position) { Q_EMIT activated(position, {}); });
    connect(m_tray.get(), &XEmbedStatusItem::menuRequested, this, &LinuxStatusItem::popUpMenu);
}

// A lost bus is looked for at every refresh, whether or not there is something new to show.
void LinuxStatusItem::setAppearance(const StatusItemAppearance &appearance)
{
    if (!m_watch)
        followBus();
    const bool isFirst = !m_appearance;
    if (m_appearance == appearance)
        return;
    m_appearance = appearance;
    if (m_bar)
        m_bar->setAppearance(appearance);
    if (m_tray)
        m_tray->setAppearance(appearance);
    if (isFirst)
        moveTo(m_place);
}

void LinuxStatusItem::setMenu(const QList<MenuEntry> &entries)
{
    m_entries = entries;
    updateBarMenu();
}

void LinuxStatusItem::updateBarMenu()
{
    if (!m_barMenu)
        return;
    const auto open = [this] { openFromMenu(); };
    m_barMenu->setEntries(m_host.opensOnlyMenu ? withOpenEntry(m_entries, open) : m_entries);
}

void LinuxStatusItem::openFromMenu()
{
    Q_EMIT openRequested(QCursor::pos(), m_bar ? m_bar->takeActivationToken() : QString());
}

// The dashboard goes first: two that keep every click would be in each other's way.
void LinuxStatusItem::popUpMenu(QPoint position)
{
    Q_EMIT ownMenuOpens();
    if (canPlaceWindows())
        popUpAt(believablePosition(position, QCursor::pos(), screenRectangles()));
    else
        toggleMenuWindow();
}

void LinuxStatusItem::popUpAt(QPoint position)
{
    if (!m_popUp)
        m_popUp = std::make_unique<QMenu>();
    fillMenu(*m_popUp, m_entries);
    matchPanel(*m_popUp, position);
    m_popUp->popup(position);
}

void LinuxStatusItem::toggleMenuWindow()
{
    if (!m_menuWindow)
        m_menuWindow = std::make_unique<MenuWindow>();
    fillMenu(*m_menuWindow, m_entries);
    m_menuWindow->toggle(m_bar ? m_bar->takeActivationToken() : QString());
}

}  // namespace velquarin
