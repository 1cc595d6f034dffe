// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/DesktopColors.h"

#include "Platform/Linux/Windows/DarkPalette.h"

#include <QApplication>
#include <QEvent>

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

// Desktops whose palette follows by itself tell of it and of the setting in any order.
constexpr auto desktopsTurn = 300ms;

}  // namespace

DesktopColors::DesktopColors(SessionBus &bus, QObject *parent)
    : QObject(parent)
    , m_setting(bus)
{
    m_desktopsTurn.setSingleShot(true);
    m_desktopsTurn.setInterval(desktopsTurn);
    connect(&m_desktopsTurn, &QTimer::timeout, this, &DesktopColors::follow);
    connect(&m_setting, &ColorSchemeSetting::changed, &m_desktopsTurn, qOverload<>(&QTimer::start));
    qApp->installEventFilter(this);
}

bool DesktopColors::eventFilter(QObject *watched, QEvent *event)
{
    const bool isNewPalette = event->type() == QEvent::ApplicationPaletteChange && watched == qApp;
    if (isNewPalette || event->type() == QEvent::ThemeChange)
        m_desktopsTurn.start();
    return false;
}

// The desktop's own palette comes back first: it is the one to judge.
void DesktopColors::follow()
{
    if (std::exchange(m_isOurs, false))
        QApplication::setPalette(QPalette());
    const auto ofDesktop = QApplication::palette();
    const auto wanted = darkenedWhere(m_setting.asksForDark(), ofDesktop);
    m_isOurs = wanted != ofDesktop;
    if (m_isOurs)
        QApplication::setPalette(wanted);
    m_desktopsTurn.stop();  // what we set ourselves is nothing new of the desktop's
    Q_EMIT looked();
}

}  // namespace velquarin
