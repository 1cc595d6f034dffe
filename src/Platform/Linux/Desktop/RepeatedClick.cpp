// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Desktop/RepeatedClick.h"

#include <QGuiApplication>
#include <QMouseEvent>

#include <array>
#include <sys/uio.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

namespace velquarin {

namespace {

constexpr quint8 rightButton = 3;

// As the protocol lays it out; the first four bytes are filled in by whoever sends it.
struct FakeInput
{
    std::array<quint8, 4> head = {};
    quint8 type = 0;
    quint8 detail = 0;
    quint16 unused = 0;
    quint32 delay = 0;
    quint32 root = 0;
    std::array<quint32, 2> unusedToo = {};
    std::array<qint16, 2> place = {};
    std::array<quint32, 2> device = {};
};
static_assert(sizeof(FakeInput) == 36);

void send(xcb_connection_t *display, xcb_extension_t *extension, quint8 type)
{
    constexpr quint8 fakeInput = 2;
    FakeInput input;
    input.type = type;
    input.detail = rightButton;
    // The library uses the two before the first one for itself.
    std::array<iovec, 3> parts{};
    parts[2] = {&input, sizeof input};
    const xcb_protocol_request_t request{1, extension, fakeInput, 1};
    xcb_send_request(display, 0, &parts[2], &request);
}

// Where our own icon in a tray gets the click, the toolkit has seen two presses at one place and makes a double click of
// them, which opens no menu.
class PlainPress : public QObject
{
public:
    PlainPress()
        : QObject(QCoreApplication::instance())
    {
        parent()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const bool isDouble = event->type() == QEvent::MouseButtonDblClick;
        if (!isDouble && event->type() != QEvent::MouseButtonPress)
            return false;
        const auto &press = static_cast<const QMouseEvent &>(*event);
        // The press before a double click says that it is one, and goes nowhere.
        if (press.flags().testFlag(Qt::MouseEventCreatedDoubleClick))
            return false;
        parent()->removeEventFilter(this);
        deleteLater();
        if (isDouble)
            sendPress(watched, press);
        return isDouble;
    }

private:
    static void sendPress(QObject *window, const QMouseEvent &press)
    {
        QMouseEvent plain(QEvent::MouseButtonPress, press.position(), press.scenePosition(), press.globalPosition(),
                          press.button(), press.buttons(), press.modifiers());
        plain.setTimestamp(press.timestamp());
        QCoreApplication::sendEvent(window, &plain);
    }
};

}  // namespace

void repeatRightClick()
{
    static xcb_extension_t extension{"XTEST", 0};
    // The toolkit's platform without a screen has the interface and no display behind it.
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    auto *display = x11 ? x11->connection() : nullptr;
    if (display == nullptr)
        return;
    const auto *found = xcb_get_extension_data(display, &extension);
    if (found == nullptr || found->present == 0)
        return;
    new PlainPress;
    send(display, &extension, XCB_BUTTON_PRESS);
    send(display, &extension, XCB_BUTTON_RELEASE);
    xcb_flush(display);
}

}  // namespace velquarin
