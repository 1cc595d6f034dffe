// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/GuestStyle.h"

#include "Views/Controls/HouseStyle.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <utility>

namespace velquarin {

namespace {

// Of the application: a desktop may change its style at any time.
constexpr auto isMotionReduced = "isMotionReduced";

bool isAlt(const QEvent *event)
{
    return static_cast<const QKeyEvent *>(event)->key() == Qt::Key_Alt;
}

}  // namespace

void GuestStyle::install()
{
    // Under a style sheet the application's style is Qt's own for sheets, and this one lies beneath.
    if (qApp->findChild<GuestStyle *>() != nullptr)
        return;
    auto *const style = QApplication::style();
    QApplication::setStyle(new GuestStyle(HouseStyle::isWantedFor(*style) ? new HouseStyle(style) : style));
}

void GuestStyle::setReducedMotion(bool isReduced)
{
    qApp->setProperty(isMotionReduced, isReduced);
}

// Under the name of the style that it is around: some desktops look whether theirs is in force.
GuestStyle::GuestStyle(QStyle *style)
    : QProxyStyle(style)
{
    setObjectName(style->objectName());
    QCoreApplication::instance()->installEventFilter(this);
    // Not before the other is in force whole.
    connect(this, &QObject::destroyed, qApp, &GuestStyle::install, Qt::QueuedConnection);
}

int GuestStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *result) const
{
    const bool isWithoutMotion = hint == SH_Widget_Animation_Duration && qApp->property(isMotionReduced).toBool();
    if (isWithoutMotion || (hint == SH_UnderlineShortcut && !m_isAltHeld))
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, result);
}

// A window that loses the focus does not hear any more that the key is up again.
bool GuestStyle::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && isAlt(event))
        setHeld(true);
    else if (event->type() == QEvent::WindowDeactivate || (event->type() == QEvent::KeyRelease && isAlt(event)))
        setHeld(false);
    return QProxyStyle::eventFilter(watched, event);
}

void GuestStyle::setHeld(bool isHeld)
{
    if (std::exchange(m_isAltHeld, isHeld) == isHeld)
        return;
    const auto windows = QApplication::topLevelWidgets();
    for (auto *const window : windows)
        window->update();
}

}  // namespace velquarin
