// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/Popover.h"

#include "Views/Controls/Accessibility.h"
#include "Views/Controls/Style.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWindow>

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

constexpr double contentWidth = 300;
constexpr double leastHeight = 350;
constexpr double itemExtent = 24;
constexpr double unseenPanel = 64;
constexpr double gap = 4;
// Panels that float are drawn a little beyond what they reserve.
constexpr double gapToUnseenPanel = 8;
constexpr double cornerRadiusOfManaged = 10;
constexpr double cornerRadiusWithShadow = 12;
constexpr double slide = 6;
constexpr int openingTime = 90;  // ms

// A press on the item takes the activation away, and the click is reported at its release.
constexpr auto pressToRelease = 250ms;

// No hand opens the popover and then the menu in that time, and no bar takes so long to tell of its menu.
constexpr auto wordOfMenu = 250ms;

QList<ScreenArea> screenAreas()
{
    QList<ScreenArea> areas;
    const auto screens = QGuiApplication::screens();
    for (const auto *screen : screens)
        areas.append({screen->geometry(), screen->availableGeometry()});
    return areas;
}

QScreen *screenOf(QPoint point)
{
    auto *screen = QGuiApplication::screenAt(point);
    return screen ? screen : QGuiApplication::primaryScreen();
}

Qt::WindowFlags flagsOn(const WindowSystem &windowSystem)
{
    return Qt::FramelessWindowHint | (windowSystem.placesWindows ? Qt::Popup : Qt::Tool);
}

Qt::ScrollBarPolicy scrollBarWhere(bool isNeeded)
{
    return isNeeded ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
}

}  // namespace

Popover::Popover(QWidget *content, WindowSystem windowSystem)
    : QWidget(nullptr, flagsOn(windowSystem))
    , m_windowSystem(std::move(windowSystem))
    , m_opening(*this, QStringLiteral("opening"), openingTime, [this] { comeIn(); })
{
    setUpWindow();
    setUpContent(content);
}

void Popover::setUpWindow()
{
    setAccessibleRole(*this, QAccessible::Window);
    setObjectName(QStringLiteral("popover"));
    setWindowTitle(QStringLiteral("Velquarin"));
    setAccessibleName(windowTitle());
    // The click that closes it is over: an icon of our own in a tray would open it again.
    setAttribute(Qt::WA_NoMouseReplay);
    setTranslucent(!m_windowSystem.placesWindows);
}

// The surface is painted by the window; what lies on it lets it through.
void Popover::setUpContent(QWidget *content)
{
    m_scrollArea = new QScrollArea(this);
    readScrollAreaWhole(*m_scrollArea);
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setWidget(content);
    m_scrollArea->verticalScrollBar()->setAccessibleName(windowTitle());
    m_scrollArea->horizontalScrollBar()->setAccessibleName(windowTitle());
    m_scrollArea->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    // What changes inside of the content is told to it, what it asks for itself to what it lies on.
    content->installEventFilter(this);
    m_scrollArea->viewport()->installEventFilter(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->addWidget(m_scrollArea);
}

void Popover::toggle(QPoint position, const QString &activationToken)
{
    if (isVisible()) {
        hide();
        return;
    }
    if (!wasJustDeactivated())
        openNear(position, activationToken);
}

void Popover::openNear(QPoint position, const QString &activationToken)
{
    const auto click = clickedPoint(position, m_windowSystem.knowsPointer ? QCursor::pos() : position, screenAreas());
    if (click)
        openAt(steadyClick(m_click, *click, style::points(itemExtent)), activationToken);
    else
        open(activationToken);
}

void Popover::open(const QString &activationToken)
{
    const auto *screen = QGuiApplication::primaryScreen();
    const auto area = screen ? ScreenArea{screen->geometry(), screen->availableGeometry()} : ScreenArea{};
    openAt(m_click.value_or(likelyItem(area, layoutDirection())), activationToken);
}

void Popover::giveWayToMenu()
{
    if (!hasJustOpened())
        hide();
}

void Popover::openAt(QPoint click, const QString &activationToken)
{
    m_click = click;
    m_pressedElsewhere.reset();
    if (!isVisible()) {
        leaveFocusNowhere();
        castShadow(m_windowSystem.placesWindows && m_windowSystem.blendsWindows());
    }
    fit();
    catchClicks();
    m_windowSystem.showWithToken(activationToken, [this] {
        show();
        raise();
        activateWindow();
    });
    m_sinceOpening.start();
}

// Windows are made with an alpha channel or without, and painting on one takes longer.
void Popover::castShadow(bool castsShadow)
{
    if (std::exchange(m_castsShadow, castsShadow) == castsShadow)
        return;
    destroy();
    setTranslucent(castsShadow);
}

void Popover::setTranslucent(bool isTranslucent)
{
    setAttribute(Qt::WA_TranslucentBackground, isTranslucent);
    setAttribute(Qt::WA_NoSystemBackground, isTranslucent);
}

// X11 does not hear of clicks over the windows of others there, nor of the focus that they take. So a window of ours that
// nobody sees lies below the popover, and wherever the click comes, it comes to us.
void Popover::catchClicks()
{
    if (!m_windowSystem.placesWindows || m_windowSystem.knowsPointer || m_clickCatcher)
        return;
    m_clickCatcher = std::make_unique<QWidget>(nullptr, Qt::ToolTip | Qt::FramelessWindowHint);
    m_clickCatcher->setAttribute(Qt::WA_TranslucentBackground);
    m_clickCatcher->setAttribute(Qt::WA_ShowWithoutActivating);
    m_clickCatcher->setGeometry(QGuiApplication::primaryScreen()->virtualGeometry());
    m_clickCatcher->show();
}

// Qt would give the focus to what had it last time, or to the first thing that takes it.
void Popover::leaveFocusNowhere()
{
    if (auto *last = focusWidget())
        last->clearFocus();
    setFocus(Qt::PopupFocusReason);
}

int Popover::contentHeight() const
{
    const auto *content = m_scrollArea->widget();
    return std::max(content->sizeHint().height(), content->minimumSizeHint().height());
}

PopoverDimensions Popover::dimensions() const
{
    return {.width = style::points(contentWidth),
            .contentHeight = contentHeight(),
            .leastHeight = style::points(leastHeight),
            .item = style::points(m_windowSystem.anchorWindow ? unseenPanel : itemExtent),
            .gap = style::points(gap),
            .scrollBar = m_scrollArea->verticalScrollBar()->sizeHint().width()};
}

void Popover::fit()
{
    const auto dimensions = this->dimensions();
    const auto place = placePopover(*m_click, screenAreas(), dimensions);
    // Else it would be squeezed to its least height before it is scrolled.
    m_scrollArea->widget()->setMinimumHeight(place.scrolls ? dimensions.contentHeight : 0);
    m_scrollArea->setVerticalScrollBarPolicy(scrollBarWhere(place.scrolls));
    m_scrollArea->setHorizontalScrollBarPolicy(scrollBarWhere(place.scrollsSideways));
    setContentsMargins(m_castsShadow ? PopoverShadow::margins() : QMargins());
    setFixedSize(place.rectangle.size().grownBy(contentsMargins()));
    standAt(place.rectangle);
}

// On Wayland the place is not ours to say, unless by edges. How thick the panel is, the compositor knows.
void Popover::standAt(const QRect &place)
{
    m_place = place;
    if (m_windowSystem.placesWindows) {
        comeIn();
    } else if (m_windowSystem.anchorWindow) {
        create();
        windowHandle()->setScreen(screenOf(*m_click));
        const auto anchor = anchorPopover(*m_click, place, screenAreas(), style::points(gapToUnseenPanel));
        m_windowSystem.anchorWindow(*windowHandle(), anchor);
    }
}

// Out of the panel, to its place.
void Popover::comeIn()
{
    setWindowOpacity(m_opening.progress());
    const auto ahead =
        awayFromPanel(*m_click, screenAreas()) * qRound(style::points(slide) * (1 - m_opening.progress()));
    move(m_place.marginsAdded(contentsMargins()).topLeft() - ahead);
}

int Popover::cornerRadius() const
{
    if (m_castsShadow)
        return style::points(cornerRadiusWithShadow);
    return m_windowSystem.placesWindows ? 0 : style::points(cornerRadiusOfManaged);
}

bool Popover::wasJustDeactivated() const
{
    return m_sinceDeactivation.isValid() && !m_sinceDeactivation.hasExpired(pressToRelease.count());
}

bool Popover::hasJustOpened() const
{
    return m_sinceOpening.isValid() && !m_sinceOpening.hasExpired(wordOfMenu.count());
}

bool Popover::event(QEvent *event)
{
    if (event->type() == QEvent::WindowDeactivate && !m_windowSystem.placesWindows && isVisible()) {
        m_sinceDeactivation.start();
        hide();
    }
    return QWidget::event(event);
}

bool Popover::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest && isVisible())
        fit();
    return QWidget::eventFilter(watched, event);
}

void Popover::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange && isVisible())
        fit();
    QWidget::changeEvent(event);
}

void Popover::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        hide();
    else
        QWidget::keyPressEvent(event);
}

// Qt closes a popup at the press already, and gives the pointer back. The status item would then get the
// release alone, which is a click to many a host, and open the popover again.
void Popover::mousePressEvent(QMouseEvent *event)
{
    m_pressedElsewhere.reset();
    if (!contentsRect().contains(event->position().toPoint()))
        m_pressedElsewhere = event->globalPosition().toPoint();
}

// The popover takes every click while it is open, so no host hears of one with the right button on the item, whose
// menu it was meant for. Only the host knows how far the item reaches. A button that is let go elsewhere is no click.
void Popover::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_pressedElsewhere || event->buttons() != Qt::NoButton)
        return;
    hide();
    const auto position = event->globalPosition().toPoint();
    const bool isClick = (position - *m_pressedElsewhere).manhattanLength() < QApplication::startDragDistance();
    if (event->button() == Qt::RightButton && isClick && m_windowSystem.knowsPointer)
        Q_EMIT rightClickKept(position);
}

void Popover::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const auto ground = palette().color(QPalette::Active, QPalette::Window);
    const auto hairline = 1 / devicePixelRatioF();
    const auto edge = QRectF(contentsRect()).adjusted(hairline / 2, hairline / 2, -hairline / 2, -hairline / 2);
    const auto radius = cornerRadius();
    if (m_castsShadow)
        painter.drawImage(QPointF(), m_shadow.of(contentsRect().size(), radius, devicePixelRatioF(), palette()));
    painter.setPen(QPen(style::divider(palette()), hairline));
    painter.setBrush(ground);
    painter.setRenderHint(QPainter::Antialiasing, radius > 0);
    painter.drawRoundedRect(edge, radius, radius);
}

// Qt closes popups when the application is no longer the active one. On X11 it hears of that late: the focus that a
// dashboard had before, or the settings, would close the one that has just opened. Clicks and Esc find it anyway.
void Popover::closeEvent(QCloseEvent *event)
{
    event->setAccepted(!m_windowSystem.placesWindows);
}

void Popover::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    if (m_castsShadow)
        m_opening.begin();
    Q_EMIT shown();
}

void Popover::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_opening.end();
    m_clickCatcher.reset();
    if (!event->spontaneous())
        Q_EMIT hidden();
}

}  // namespace velquarin
