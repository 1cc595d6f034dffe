// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/StartupNotification.h"

#include "Platform/Linux/Windows/X11Display.h"

#include <QCoreApplication>
#include <QInputEvent>
#include <QSysInfo>
#include <QUuid>

#include <algorithm>
#include <iterator>

namespace velquarin {

namespace {

bool isPressOrRelease(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease || type == QEvent::KeyPress ||
           type == QEvent::KeyRelease;
}

// A window that is never seen: the messages of one sender are told from another's by it.
xcb_window_t makeSender(xcb_connection_t *display, xcb_window_t root)
{
    constexpr quint32 isUnmanaged = 1;
    const auto window = xcb_generate_id(display);
    xcb_create_window(display, XCB_COPY_FROM_PARENT, window, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &isUnmanaged);
    return window;
}

// The zero byte at the end belongs to it.
void broadcast(xcb_connection_t *display, const QByteArray &message)
{
    constexpr qsizetype partSize = 20;
    const auto text = message + '\0';
    const auto root = x11Screen(display)->root;
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = makeSender(display, root);
    event.type = x11Atom(display, "_NET_STARTUP_INFO_BEGIN");
    for (qsizetype sent = 0; sent < text.size(); sent += partSize) {
        const auto part = text.mid(sent, partSize).leftJustified(partSize, '\0');
        std::copy(part.begin(), part.end(), std::begin(event.data.data8));
        xcb_send_event(display, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE, reinterpret_cast<const char *>(&event));
        event.type = x11Atom(display, "_NET_STARTUP_INFO");
    }
    // Waits until the server has dealt with it all: of a program that ends right afterwards it drops what it has not yet
    // come to.
    const auto request = xcb_destroy_window_checked(display, event.window);
    static_cast<void>(x11Owned(xcb_request_check(display, request)));
}

}  // namespace

InputTime::InputTime(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

// What it sets off at once is over when the loop turns again; whatever comes later is not the user's doing.
bool InputTime::eventFilter(QObject *watched, QEvent *event)
{
    if (isPressOrRelease(event->type()) && event->spontaneous()) {
        m_time = quint32(static_cast<const QInputEvent *>(event)->timestamp());
        QMetaObject::invokeMethod(
            this, [this] { m_time.reset(); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

QString newStartupId(quint32 userTime)
{
    return QStringLiteral("velquarin-%1-%2-%3_TIME%4")
        .arg(QSysInfo::machineHostName())
        .arg(QCoreApplication::applicationPid())
        .arg(QUuid::createUuid().toString(QUuid::Id128))
        .arg(userTime);
}

QString startupIdOn(const QString &platform, std::optional<quint32> userTime)
{
    return platform == QLatin1String("xcb") && userTime ? newStartupId(*userTime) : QString();
}

QByteArray endOfStartup(const QString &startupId)
{
    auto value = startupId.toUtf8();
    value.replace('\\', "\\\\").replace('"', "\\\"");
    return "remove: ID=\"" + value + '"';
}

void finishStartup(const QString &startupId)
{
    auto *display = x11Display();
    if (display && !startupId.isEmpty())
        broadcast(display, endOfStartup(startupId));
}

}  // namespace velquarin
