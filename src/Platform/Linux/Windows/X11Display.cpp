// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/X11Display.h"

#include <QApplication>
#include <QCursor>

#include <algorithm>
#include <xcb/xcb_renderutil.h>
#include <xcb/xtest.h>

namespace velquarin {

namespace {

// The server's copy of an image, which the caller has to free.
xcb_pixmap_t pixmapOf(xcb_connection_t *display, xcb_window_t beside, const QImage &image)
{
    const auto pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const auto width = quint16(pixels.width());
    const auto height = quint16(pixels.height());
    const auto pixmap = xcb_generate_id(display);
    const auto context = xcb_generate_id(display);
    xcb_create_pixmap(display, 32, pixmap, beside, width, height);
    xcb_create_gc(display, context, pixmap, 0, nullptr);
    xcb_put_image(display, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width, height, 0, 0, 0, 32,
                  quint32(pixels.sizeInBytes()), pixels.constBits());
    xcb_free_gc(display, context);
    return pixmap;
}

// What the server draws from or on, which the caller has to free.
xcb_render_picture_t pictureOf(xcb_connection_t *display, xcb_drawable_t drawable, xcb_render_pictformat_t format)
{
    const auto picture = xcb_generate_id(display);
    xcb_render_create_picture(display, picture, drawable, format, 0, nullptr);
    return picture;
}

// The server is told of buttons as they lie on the device, and left-handed people have them stand for others. Zero where
// none stands for the right one.
quint8 rightButton(xcb_connection_t *display)
{
    constexpr quint8 rightOne = 3;
    const auto reply = x11Owned(xcb_get_pointer_mapping_reply(display, xcb_get_pointer_mapping(display), nullptr));
    if (!reply)
        return 0;
    const auto *first = xcb_get_pointer_mapping_map(reply.get());
    const auto *end = first + xcb_get_pointer_mapping_map_length(reply.get());
    const auto *found = std::find(first, end, rightOne);
    return found == end ? quint8(0) : quint8(found - first + 1);
}

}  // namespace

// Qt's platform without a screen has the interface and no display behind it.
xcb_connection_t *x11Display()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

int x11ScreenNumber()
{
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0)
        std::free(host);  // NOLINT(cppcoreguidelines-no-malloc): the library has it from malloc
    return screen;
}

xcb_screen_t *x11Screen(xcb_connection_t *display)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(display));
    for (int number = x11ScreenNumber(); number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

xcb_atom_t x11Atom(xcb_connection_t *display, const QByteArray &name)
{
    const auto question = xcb_intern_atom(display, 0, quint16(name.size()), name.constData());
    const auto reply = x11Owned(xcb_intern_atom_reply(display, question, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t x11SelectionOwner(xcb_connection_t *display, xcb_atom_t selection)
{
    const auto question = xcb_get_selection_owner(display, selection);
    const auto reply = x11Owned(xcb_get_selection_owner_reply(display, question, nullptr));
    return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

bool x11HasCompositor()
{
    auto *display = x11Display();
    if (!display)
        return false;
    static const auto selection = x11Atom(display, "_NET_WM_CM_S" + QByteArray::number(x11ScreenNumber()));
    return x11SelectionOwner(display, selection) != XCB_WINDOW_NONE;
}

void x11PaintOver(xcb_connection_t *display, xcb_window_t window, xcb_visualid_t visual, const QImage &image, QPoint at)
{
    const auto *formats = xcb_render_util_query_formats(display);
    const auto *ofImage = xcb_render_util_find_standard_format(formats, XCB_PICT_STANDARD_ARGB_32);
    const auto *ofWindow = xcb_render_util_find_visual_format(formats, visual);
    if (!ofImage || !ofWindow)
        return;
    const auto pixmap = pixmapOf(display, window, image);
    const auto source = pictureOf(display, pixmap, ofImage->id);
    const auto target = pictureOf(display, window, ofWindow->format);
    xcb_render_composite(display, XCB_RENDER_PICT_OP_OVER, source, XCB_RENDER_PICTURE_NONE, target, 0, 0, 0, 0,
                         qint16(at.x()), qint16(at.y()), quint16(image.width()), quint16(image.height()));
    xcb_render_free_picture(display, target);
    xcb_render_free_picture(display, source);
    xcb_free_pixmap(display, pixmap);
}

void x11RepeatRightClick(QPoint position)
{
    if ((QCursor::pos() - position).manhattanLength() >= QApplication::startDragDistance())
        return;
    auto *display = x11Display();
    const auto *extension = display ? xcb_get_extension_data(display, &xcb_test_id) : nullptr;
    if (!extension || extension->present == 0)
        return;
    const auto button = rightButton(display);
    if (button == 0)
        return;
    for (const auto type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
        xcb_test_fake_input(display, quint8(type), button, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    xcb_flush(display);
}

}  // namespace velquarin
