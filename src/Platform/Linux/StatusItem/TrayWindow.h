// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QImage>
#include <QList>
#include <QObject>
#include <QRect>

#include <xcb/xcb.h>

namespace velquarin {

//! A small window in the X screen's tray of the older kind. It waits for a tray that comes later and follows to the next
//! one; nothing is seen while there is none. Asks nobody but the X server. Only on X11.
//! Source: System Tray Protocol Specification and XEmbed Protocol Specification, freedesktop.org
class TrayWindow : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    explicit TrayWindow(QObject *parent = nullptr);
    ~TrayWindow() override;

    //! What the window shows: the largest picture that fits. Shape: smallest first, at least one, of at most 64 by 64
    //! pixels; in pixels of the screen, whatever its scale.
    void setPictures(const QList<QImage> &pictures);

Q_SIGNALS:
    //! A button was pressed and let go over the window, whose rectangle on the screen this is.
    void clicked(Qt::MouseButton button, QRect place);

    //! The pointer came or went.
    void pointedAt(bool isPointedAt);

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void handle(const xcb_generic_event_t &event);
    void handleClientMessage(const xcb_client_message_event_t &message);
    void handleDestroy(xcb_window_t window);
    void handleConfigure(const xcb_configure_notify_event_t &event);
    void handleExpose(const xcb_expose_event_t &event);
    void handleButtonPress(const xcb_button_press_event_t &event);
    void handleButtonRelease(const xcb_button_release_event_t &event);
    void handleCrossing(const xcb_enter_notify_event_t &event);

    void dock();
    void undock();
    [[nodiscard]] bool follow(xcb_window_t tray) const;
    [[nodiscard]] xcb_visualid_t visualWanted() const;
    void makeWindow();
    void describeWindow() const;
    void askForPlace() const;
    void paint() const;

    xcb_connection_t *m_display;
    xcb_screen_t *m_screen;
    xcb_atom_t m_traySelection;
    xcb_atom_t m_manager;
    xcb_window_t m_tray = XCB_WINDOW_NONE;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_visualid_t m_visual = 0;
    xcb_colormap_t m_colours = XCB_COLORMAP_NONE;
    QSize m_size;
    bool m_isShown = false;    // the tray has taken it
    bool m_isPressed = false;  // a button, over it
    QList<QImage> m_pictures;
};

}  // namespace velquarin
