// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/TrayWindow.h"

#include "Platform/Linux/Windows/X11Display.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <array>
#include <utility>

namespace velquarin {

namespace {

constexpr QSize sizeAtFirst(24, 24);
constexpr quint32 leastSize = 22;

// The bits of a visual's pixels; 32 have an alpha among them.
quint8 depthOf(const xcb_screen_t *screen, xcb_visualid_t visual)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem != 0; xcb_depth_next(&depths)) {
        const auto *visuals = xcb_depth_visuals(depths.data);
        const auto *end = visuals + xcb_depth_visuals_length(depths.data);
        if (std::any_of(visuals, end, [visual](const auto &each) { return each.visual_id == visual; }))
            return depths.data->depth;
    }
    return screen->root_depth;
}

// Qt counts positions in the screen's pixels from each screen's own corner, and sizes in device-independent ones.
QRect inDeviceIndependentPixels(const QRect &place)
{
    const auto screens = QGuiApplication::screens();
    for (const auto *screen : screens) {
        const auto corner = screen->geometry().topLeft();
        const auto ratio = screen->devicePixelRatio();
        if (QRect(corner, screen->geometry().size() * ratio).contains(place.center()))
            return {corner + (place.topLeft() - corner) / ratio, place.size() / ratio};
    }
    return place;
}

Qt::MouseButton buttonOf(xcb_button_t button)
{
    constexpr std::array known{Qt::NoButton, Qt::LeftButton, Qt::MiddleButton, Qt::RightButton};
    return button < known.size() ? known.at(button) : Qt::NoButton;
}

}  // namespace

// Qt listens to events of the root window, too: its mask is kept.
TrayWindow::TrayWindow(QObject *parent)
    : QObject(parent)
    , m_display(x11Display())
    , m_screen(x11Screen(m_display))
    , m_traySelection(x11Atom(m_display, "_NET_SYSTEM_TRAY_S" + QByteArray::number(x11ScreenNumber())))
    , m_manager(x11Atom(m_display, "MANAGER"))
{
    QCoreApplication::instance()->installNativeEventFilter(this);
    const auto question = xcb_get_window_attributes(m_display, m_screen->root);
    const auto root = x11Owned(xcb_get_window_attributes_reply(m_display, question, nullptr));
    const quint32 events = (root ? root->your_event_mask : 0) | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_display, m_screen->root, XCB_CW_EVENT_MASK, &events);
    dock();
}

TrayWindow::~TrayWindow()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
    undock();
}

void TrayWindow::setPictures(const QList<QImage> &pictures)
{
    m_pictures = pictures;
    paint();
}

// A tray that goes between the two questions is none.
void TrayWindow::dock()
{
    const auto owner = x11SelectionOwner(m_display, m_traySelection);
    if (owner == XCB_WINDOW_NONE || !follow(owner))
        return;
    m_tray = owner;
    makeWindow();
    describeWindow();
    askForPlace();
    xcb_flush(m_display);
}

// A tray that ends hands its windows back to the root window, where nobody shall see ours, or takes them along.
void TrayWindow::undock()
{
    m_tray = XCB_WINDOW_NONE;
    const auto window = std::exchange(m_window, XCB_WINDOW_NONE);
    if (window == XCB_WINDOW_NONE)
        return;
    xcb_discard_reply(m_display, xcb_destroy_window_checked(m_display, window).sequence);
    xcb_free_colormap(m_display, m_colours);
    xcb_flush(m_display);
}

bool TrayWindow::follow(xcb_window_t tray) const
{
    const quint32 events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const auto request = xcb_change_window_attributes_checked(m_display, tray, XCB_CW_EVENT_MASK, &events);
    return !x11Owned(xcb_request_check(m_display, request));
}

// Trays that can show through their windows say so by a visual with an alpha.
xcb_visualid_t TrayWindow::visualWanted() const
{
    const auto property = x11Atom(m_display, "_NET_SYSTEM_TRAY_VISUAL");
    const auto question = xcb_get_property(m_display, 0, m_tray, property, XCB_ATOM_VISUALID, 0, 1);
    const auto reply = x11Owned(xcb_get_property_reply(m_display, question, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(xcb_visualid_t))
        return m_screen->root_visual;
    return *static_cast<xcb_visualid_t *>(xcb_get_property_value(reply.get()));
}

// Where the tray cannot show through, the window takes the ground of what it is put into. Trays make windows of their
// own with the same colour map.
void TrayWindow::makeWindow()
{
    m_visual = visualWanted();
    const auto depth = depthOf(m_screen, m_visual);
    m_colours = xcb_generate_id(m_display);
    xcb_create_colormap(m_display, XCB_COLORMAP_ALLOC_NONE, m_colours, m_screen->root, m_visual);
    const bool hasAlpha = depth == 32;
    const quint32 ground = hasAlpha ? 0 : quint32(XCB_BACK_PIXMAP_PARENT_RELATIVE);
    const quint32 events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_BUTTON_PRESS |
                           XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;
    const std::array values{ground, quint32{0}, events, m_colours};
    m_window = xcb_generate_id(m_display);
    m_size = sizeAtFirst;
    m_isShown = false;
    m_isPressed = false;
    xcb_create_window(m_display, depth, m_window, m_screen->root, 0, 0, quint16(m_size.width()),
                      quint16(m_size.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, m_visual,
                      (hasAlpha ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP) | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK |
                          XCB_CW_COLORMAP,
                      values.data());
}

// By these trays name, sort and size what they hold. Source: Inter-Client Communication Conventions Manual, "WM_CLASS"
// and "WM_NORMAL_HINTS"
void TrayWindow::describeWindow() const
{
    const auto set = [this](xcb_atom_t property, xcb_atom_t type, quint8 format, quint32 count, const void *data) {
        xcb_change_property(m_display, XCB_PROP_MODE_REPLACE, m_window, property, type, format, count, data);
    };
    const QByteArray name("Velquarin");
    const QByteArray kind("velquarin\0Velquarin\0", 20);
    set(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, quint32(name.size()), name.constData());
    set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, quint32(kind.size()), kind.constData());
    constexpr quint32 hasLeastSize = 1U << 4;
    const std::array<quint32, 18> hints{hasLeastSize, 0, 0, 0, 0, leastSize, leastSize};
    set(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
    constexpr std::array<quint32, 2> wantsToBeShown{0, 1};
    const auto embedding = x11Atom(m_display, "_XEMBED_INFO");
    set(embedding, embedding, 32, wantsToBeShown.size(), wantsToBeShown.data());
}

void TrayWindow::askForPlace() const
{
    constexpr quint32 requestDock = 0;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_tray;
    message.type = x11Atom(m_display, "_NET_SYSTEM_TRAY_OPCODE");
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = requestDock;
    message.data.data32[2] = m_window;
    xcb_send_event(m_display, 0, m_tray, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
}

void TrayWindow::paint() const
{
    if (m_window == XCB_WINDOW_NONE || m_pictures.isEmpty())
        return;
    const auto fits = [this](const QImage &picture) {
        return picture.width() <= m_size.width() && picture.height() <= m_size.height();
    };
    const auto largest = std::find_if(m_pictures.rbegin(), m_pictures.rend(), fits);
    const auto &picture = largest == m_pictures.rend() ? m_pictures.first() : *largest;
    xcb_clear_area(m_display, 0, m_window, 0, 0, 0, 0);
    x11PaintOver(m_display, m_window, m_visual, picture,
                 {(m_size.width() - picture.width()) / 2, (m_size.height() - picture.height()) / 2});
    xcb_flush(m_display);
}

bool TrayWindow::nativeEventFilter(const QByteArray &eventType, void *message, qintptr * /*result*/)
{
    if (eventType == "xcb_generic_event_t")
        handle(*static_cast<const xcb_generic_event_t *>(message));
    return false;
}

void TrayWindow::handle(const xcb_generic_event_t &event)
{
    constexpr unsigned wasSentByAProgram = 0x80;
    switch (event.response_type & ~wasSentByAProgram) {
    case XCB_CLIENT_MESSAGE:
        return handleClientMessage(reinterpret_cast<const xcb_client_message_event_t &>(event));
    case XCB_DESTROY_NOTIFY:
        return handleDestroy(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
    case XCB_CONFIGURE_NOTIFY:
        return handleConfigure(reinterpret_cast<const xcb_configure_notify_event_t &>(event));
    case XCB_EXPOSE:
        return handleExpose(reinterpret_cast<const xcb_expose_event_t &>(event));
    case XCB_BUTTON_PRESS:
        return handleButtonPress(reinterpret_cast<const xcb_button_press_event_t &>(event));
    case XCB_BUTTON_RELEASE:
        return handleButtonRelease(reinterpret_cast<const xcb_button_release_event_t &>(event));
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        return handleCrossing(reinterpret_cast<const xcb_enter_notify_event_t &>(event));
    default:
        return;
    }
}

// A tray that begins tells everybody, by the name that it now owns.
void TrayWindow::handleClientMessage(const xcb_client_message_event_t &message)
{
    if (message.type != m_manager || message.data.data32[1] != m_traySelection || message.data.data32[2] == m_tray)
        return;
    undock();
    dock();
}

// A tray that is being rebuilt may take the window along and stay; one that refuses it is asked no second time.
void TrayWindow::handleDestroy(xcb_window_t window)
{
    if (window == XCB_WINDOW_NONE || (window != m_tray && window != m_window))
        return;
    const bool isRefused = window == m_window && !m_isShown;
    undock();
    if (!isRefused)
        dock();
}

void TrayWindow::handleConfigure(const xcb_configure_notify_event_t &event)
{
    const QSize size(event.width, event.height);
    if (event.window != m_window || size == m_size)
        return;
    m_size = size;
    paint();
}

void TrayWindow::handleExpose(const xcb_expose_event_t &event)
{
    if (event.window != m_window || event.count != 0)
        return;
    m_isShown = true;
    paint();
}

void TrayWindow::handleButtonPress(const xcb_button_press_event_t &event)
{
    if (event.event == m_window)
        m_isPressed = true;
}

// What opens at a click takes the pointer, which belongs to the click until it is let go. A release alone ends what began
// elsewhere.
void TrayWindow::handleButtonRelease(const xcb_button_release_event_t &event)
{
    if (event.event != m_window || !std::exchange(m_isPressed, false))
        return;
    const auto button = buttonOf(event.detail);
    if (button == Qt::NoButton || !QRect(QPoint(), m_size).contains(event.event_x, event.event_y))
        return;
    const QPoint corner(event.root_x - event.event_x, event.root_y - event.event_y);
    Q_EMIT clicked(button, inDeviceIndependentPixels({corner, m_size}));
}

void TrayWindow::handleCrossing(const xcb_enter_notify_event_t &event)
{
    if (event.event == m_window)
        Q_EMIT pointedAt((event.response_type & 0x7f) == XCB_ENTER_NOTIFY);
}

}  // namespace velquarin
