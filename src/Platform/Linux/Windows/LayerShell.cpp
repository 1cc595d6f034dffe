// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/LayerShell.h"

#include <LayerShellQt/Window>
#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>

#include <wayland-client.h>

#include <cstring>
#include <memory>

namespace velquarin {

namespace {

using Layered = LayerShellQt::Window;

constexpr auto clickCatching = QLatin1StringView("clickCatching");

void lookForLayerShell(void *isOffered, wl_registry * /*registry*/, uint32_t /*name*/, const char *interface,
                       uint32_t /*version*/)
{
    if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0)
        *static_cast<bool *>(isOffered) = true;
}

void ignoreRemoval(void * /*data*/, wl_registry * /*registry*/, uint32_t /*name*/) {}

// On a queue of its own: what Qt waits for stays where it is.
bool isOfferedBy(wl_display *display)
{
    bool isOffered = false;
    auto *queue = wl_display_create_queue(display);
    auto *wrapper = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue);
    auto *registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    constexpr wl_registry_listener listener{lookForLayerShell, ignoreRemoval};
    wl_registry_add_listener(registry, &listener, &isOffered);
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
    wl_event_queue_destroy(queue);
    return isOffered;
}

Layered::Anchors anchorsOf(Qt::Edges edges)
{
    Layered::Anchors anchors;
    anchors.setFlag(Layered::AnchorTop, edges.testFlag(Qt::TopEdge));
    anchors.setFlag(Layered::AnchorBottom, edges.testFlag(Qt::BottomEdge));
    anchors.setFlag(Layered::AnchorLeft, edges.testFlag(Qt::LeftEdge));
    anchors.setFlag(Layered::AnchorRight, edges.testFlag(Qt::RightEdge));
    return anchors;
}

Layered &layeredWindow(QWindow &window, Qt::Edges edges)
{
    auto *layered = Layered::get(&window);
    layered->setScope(QStringLiteral("io.velquarin.Velquarin"));
    layered->setAnchors(anchorsOf(edges));
    return *layered;
}

//! Lies over all that panels leave free, shows nothing of itself, and hides another window when it is clicked.
class ClickCatcher : public QRasterWindow
{
public:
    explicit ClickCatcher(QWindow &hidden)
        : m_hidden(hidden)
    {
        auto format = requestedFormat();
        format.setAlphaBufferSize(8);
        setFormat(format);
        setScreen(hidden.screen());
        create();
        layeredWindow(*this, Qt::TopEdge | Qt::BottomEdge | Qt::LeftEdge | Qt::RightEdge)
            .setKeyboardInteractivity(Layered::KeyboardInteractivityNone);
        show();
    }

protected:
    void mousePressEvent(QMouseEvent * /*event*/) override { m_hidden.hide(); }
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(QRect(QPoint(), size()), Qt::transparent);
    }

private:
    QWindow &m_hidden;
};

//! Has a click catcher lie below a window while that is shown.
class ClickCatching : public QObject
{
public:
    explicit ClickCatching(QWindow &window)
        : QObject(&window)
        , m_window(window)
    {
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            m_catcher = std::make_unique<ClickCatcher>(m_window);
        else if (event->type() == QEvent::Hide && m_catcher)
            m_catcher.release()->deleteLater();
        return QObject::eventFilter(watched, event);
    }

private:
    QWindow &m_window;
    std::unique_ptr<ClickCatcher> m_catcher;
};

// KWin gives the keyboard to a window that wants it on demand, and takes it away at a click elsewhere. Others give it to
// such a window only when it is clicked, and never take it from one that insists.
bool givesKeyboardOnDemand()
{
    return qgetenv("XDG_CURRENT_DESKTOP").split(':').contains("KDE");
}

void insistOnKeyboard(QWindow &window, Layered &layered)
{
    layered.setKeyboardInteractivity(Layered::KeyboardInteractivityExclusive);
    layered.setLayer(Layered::LayerOverlay);
    if (!window.findChild<QObject *>(clickCatching))
        (new ClickCatching(window))->setObjectName(clickCatching);
}

void anchorWindow(QWindow &window, const WindowAnchor &anchor)
{
    auto &layered = layeredWindow(window, anchor.edges);
    layered.setMargins(anchor.margins);
    if (givesKeyboardOnDemand())
        layered.setKeyboardInteractivity(Layered::KeyboardInteractivityOnDemand);
    else
        insistOnKeyboard(window, layered);
}

}  // namespace

AnchorWindow layerShellAnchoring()
{
    const auto *application = qGuiApp->nativeInterface<QNativeInterface::QWaylandApplication>();
    return application && isOfferedBy(application->display()) ? AnchorWindow(anchorWindow) : AnchorWindow();
}

}  // namespace velquarin
