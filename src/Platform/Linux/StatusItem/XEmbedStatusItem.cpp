// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/XEmbedStatusItem.h"

#include "Platform/Linux/StatusItem/StatusIconPainter.h"

#include <QApplication>
#include <QCursor>
#include <QStyle>
#include <QToolTip>

namespace velquarin {

namespace {

QString explanationOf(const StatusItemAppearance &appearance)
{
    const auto words = statusWords(appearance);
    return words.detail.isEmpty() ? words.headline : words.headline + u'\n' + words.detail;
}

}  // namespace

XEmbedStatusItem::XEmbedStatusItem(const StatusItemAppearance &appearance, QObject *parent)
    : QObject(parent)
{
    connect(&m_window, &TrayWindow::clicked, this, &XEmbedStatusItem::react);
    connect(&m_window, &TrayWindow::pointedAt, this, &XEmbedStatusItem::waitToExplain);
    m_rest.setSingleShot(true);
    connect(&m_rest, &QTimer::timeout, this, &XEmbedStatusItem::explain);
    setAppearance(appearance);
}

XEmbedStatusItem::~XEmbedStatusItem()
{
    waitToExplain(false);
}

void XEmbedStatusItem::setAppearance(const StatusItemAppearance &appearance)
{
    m_window.setPictures(squareIcons(appearance));
    m_explanation = explanationOf(appearance);
}

void XEmbedStatusItem::react(Qt::MouseButton button, QRect place)
{
    waitToExplain(false);
    if (button == Qt::RightButton)
        Q_EMIT menuRequested(QCursor::pos());
    else
        Q_EMIT activated(place.center());
}

void XEmbedStatusItem::waitToExplain(bool isPointedAt)
{
    if (isPointedAt) {
        m_rest.start(QApplication::style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay));
        return;
    }
    m_rest.stop();
    QToolTip::hideText();
}

void XEmbedStatusItem::explain() const
{
    QToolTip::showText(QCursor::pos(), m_explanation);
}

}  // namespace velquarin
