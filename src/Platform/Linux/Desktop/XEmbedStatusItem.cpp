// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Desktop/XEmbedStatusItem.h"

#include "Platform/Linux/Desktop/PanelGround.h"
#include "Platform/Linux/Desktop/StatusIconPainter.h"
#include "Platform/Linux/Desktop/StatusMenu.h"
#include "Platform/Linux/Desktop/StatusWords.h"

#include <QCursor>

namespace velquarin {

namespace {

QIcon iconOf(const StatusItemAppearance &appearance)
{
    QIcon icon;
    const auto images = squareIcons(appearance);
    for (const auto &image : images)
        icon.addPixmap(QPixmap::fromImage(image));
    return icon;
}

QString toolTipOf(const StatusItemAppearance &appearance)
{
    const auto words = statusWords(appearance);
    return words.detail.isEmpty() ? words.headline : words.headline + u'\n' + words.detail;
}

}  // namespace

XEmbedStatusItem::XEmbedStatusItem(const StatusItemAppearance &appearance, const QList<MenuEntry> &entries,
                                   QObject *parent)
    : QObject(parent)
{
    connect(&m_icon, &QSystemTrayIcon::activated, this, &XEmbedStatusItem::react);
    setAppearance(appearance);
    setMenu(entries);
    connect(&m_menu, &QMenu::aboutToShow, this, [this] { matchPanel(m_menu, QCursor::pos()); });
    m_icon.setContextMenu(&m_menu);
    m_icon.show();
}

void XEmbedStatusItem::setAppearance(const StatusItemAppearance &appearance)
{
    m_icon.setIcon(iconOf(appearance));
    m_icon.setToolTip(toolTipOf(appearance));
}

void XEmbedStatusItem::setMenu(const QList<MenuEntry> &entries)
{
    fillMenu(m_menu, entries);
}

// The second press of a double click has a name of its own, but to the user it is one more click.
void XEmbedStatusItem::react(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Context || reason == QSystemTrayIcon::Unknown)
        return;
    const auto place = m_icon.geometry();
    Q_EMIT activated(place.isValid() ? place.center() : QCursor::pos());
}

}  // namespace velquarin
