// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/HouseStyle.h"

#include "Views/Controls/Style.h"

#include <QApplication>
#include <QComboBox>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>

namespace velquarin {

using style::points;

namespace {

constexpr double buttonHeight = 28;
constexpr double pickerHeight = 24;
constexpr double cornerRadius = 6;
constexpr double paddingOfButton = 12;
constexpr double paddingOfPicker = 8;
constexpr double gapBehindIcon = 6;
constexpr double roomForChevrons = 18;
constexpr double boxSize = 16;
constexpr double boxRadius = 4;
constexpr double stripWidth = 12;
constexpr double narrowStrip = 8;
constexpr double leastPill = 24;
constexpr double paddingOfTip = 5;
constexpr int timeBeforeTip = 400;  // ms

constexpr QRgb groundOfTip = 0xff2a2d31;
constexpr QRgb textOfTip = 0xfff5f6f7;

constexpr auto prominent = "isProminent";
constexpr auto laidOver = "isLaidOver";

bool isEnabled(const QStyleOption &option)
{
    return option.state.testFlag(QStyle::State_Enabled);
}

bool isPressed(const QStyleOption &option)
{
    return option.state.testFlag(QStyle::State_Sunken);
}

bool isHovered(const QStyleOption &option)
{
    return isEnabled(option) && option.state.testFlag(QStyle::State_MouseOver);
}

// The first for what the pointer presses, the second for what it is on.
double shareFor(const QStyleOption &option, double pressed, double hovered, double resting)
{
    if (isPressed(option))
        return pressed;
    return isHovered(option) ? hovered : resting;
}

// The active colours, as everywhere: what cannot be used is drawn half transparent.
QColor ink(const QStyleOption &option)
{
    return style::ink(option.palette, style::Ink::Primary);
}

QColor raisedGround(const QStyleOption &option)
{
    if (style::isDark(option.palette))
        return style::mix(style::ground(option.palette), ink(option), shareFor(option, 0.22, 0.17, 0.12));
    return style::mix(Qt::white, ink(option), shareFor(option, 0.10, 0.05, 0));
}

QColor edge(const QStyleOption &option)
{
    const auto share = style::isHighContrast(option.palette) ? 1.0 : 0.2;
    return style::mix(style::ground(option.palette), ink(option), share);
}

// White stands on it.
QColor accentGround(const QStyleOption &option, double leastContrast)
{
    return style::mix(style::accentFill(option.palette, leastContrast), Qt::black, shareFor(option, 0.22, 0.1, 0));
}

void setUp(QPainter &painter, const QStyleOption &option)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled(option) ? 1 : 0.5);
}

void paintRounded(QPainter &painter, const QRectF &rect, const QColor &ground, const QPen &pen, double radius)
{
    const auto inset = pen.style() == Qt::NoPen ? 0 : pen.widthF() / 2;
    painter.setPen(pen);
    painter.setBrush(ground);
    painter.drawRoundedRect(style::onWholePixels(painter, rect).adjusted(inset, inset, -inset, -inset), points(radius),
                            points(radius));
}

// In the dark the ground alone says enough.
QPen edgePen(const QStyleOption &option)
{
    const bool isEdged = !style::isDark(option.palette) || style::isHighContrast(option.palette);
    return isEdged ? QPen(edge(option), 1) : QPen(Qt::NoPen);
}

void paintRing(QPainter &painter, const QStyleOption &option, const QColor &ground)
{
    if (option.state.testFlag(QStyle::State_HasFocus))
        style::paintFocusRing(painter, option.rect, style::desktopAccentOn(ground, option.palette));
}

bool isLaidOver(const QWidget *bar)
{
    return bar != nullptr && bar->property(laidOver).toBool();
}

// A pill on a group keeps clear of its round corners.
int endsOf(const QWidget *bar)
{
    return isLaidOver(bar) ? points(3) : 0;
}

bool isProminent(const QWidget *widget)
{
    return widget != nullptr && widget->property(prominent).toBool();
}

// The ring has the accent's colour: on a ground of that it is white, and a little way in.
void paintProminent(QPainter &painter, const QStyleOptionButton &button)
{
    paintRounded(painter, button.rect, accentGround(button, 4.5), Qt::NoPen, cornerRadius);
    if (button.state.testFlag(QStyle::State_HasFocus))
        paintRounded(painter, button.rect.adjusted(2, 2, -2, -2), Qt::transparent, QPen(Qt::white, 1.5), boxRadius);
}

void paintButtonGround(QPainter &painter, const QStyleOptionButton &button, const QWidget *widget)
{
    setUp(painter, button);
    if (isProminent(widget)) {
        paintProminent(painter, button);
        return;
    }
    if (!button.features.testFlag(QStyleOptionButton::Flat) || isHovered(button) || isPressed(button))
        paintRounded(painter, button.rect, raisedGround(button), edgePen(button), cornerRadius);
    paintRing(painter, button, raisedGround(button));
}

QSize iconIn(const QStyleOptionButton &button)
{
    return button.icon.isNull() ? QSize(0, 0) : button.iconSize + QSize(points(gapBehindIcon), 0);
}

void paintButtonLabel(QPainter &painter, const QStyleOptionButton &button, const QWidget &widget)
{
    setUp(painter, button);
    const auto underline = button.fontMetrics.size(Qt::TextShowMnemonic, button.text);
    const auto icon = iconIn(button);
    const QSize size(std::min(icon.width() + underline.width(), button.rect.width()), button.rect.height());
    const auto content = QStyle::alignedRect(button.direction, Qt::AlignCenter, size, button.rect);
    if (!button.icon.isNull()) {
        const auto place =
            QStyle::alignedRect(button.direction, Qt::AlignLeading | Qt::AlignVCenter, button.iconSize, content);
        button.icon.paint(&painter, place, Qt::AlignCenter, isEnabled(button) ? QIcon::Normal : QIcon::Active,
                          QIcon::On);
    }
    const auto text = QStyle::alignedRect(button.direction, Qt::AlignTrailing | Qt::AlignVCenter,
                                          content.size() - QSize(icon.width(), 0), content);
    painter.setPen(isProminent(&widget) ? QColor(Qt::white) : ink(button));
    painter.drawText(text, int(Qt::AlignCenter | Qt::TextSingleLine) | style::mnemonicFlag(widget), button.text);
}

// A box that is not ticked shows by its edge alone: it has to be seen.
void paintBox(QPainter &painter, const QStyleOption &option)
{
    constexpr double edgeWidth = 1.5;
    setUp(painter, option);
    const QRectF place(option.rect);
    if (!option.state.testFlag(QStyle::State_On)) {
        const auto color = style::controlEdge(option.palette);
        paintRounded(painter, place, raisedGround(option), QPen(color, edgeWidth), boxRadius);
        return;
    }
    paintRounded(painter, place, accentGround(option, 3), Qt::NoPen, boxRadius);
    QPainterPath tick;
    tick.moveTo(place.x() + place.width() * 0.24, place.y() + place.height() * 0.52);
    tick.lineTo(place.x() + place.width() * 0.43, place.y() + place.height() * 0.71);
    tick.lineTo(place.x() + place.width() * 0.77, place.y() + place.height() * 0.31);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, place.width() / 8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick);
}

// Around it there is room for the focus ring, and for a pointer that is not so exact.
constexpr double roomAroundBox = 4;

// One that stands beside a text of its own is as Fusion has it.
bool isBareBox(const QStyleOption *option)
{
    const auto *const box = qstyleoption_cast<const QStyleOptionButton *>(option);
    return box != nullptr && box->text.isEmpty() && box->icon.isNull();
}

QRect boxIn(const QStyleOption &option)
{
    const auto room = points(roomAroundBox);
    const QRect box(QPoint(room, (option.rect.height() - points(boxSize)) / 2), QSize(1, 1) * points(boxSize));
    return QStyle::visualRect(option.direction, option.rect, box.translated(option.rect.topLeft()));
}

QRect chevronsIn(const QStyleOption &option)
{
    return QStyle::alignedRect(option.direction, Qt::AlignTrailing | Qt::AlignVCenter,
                               {points(roomForChevrons), option.rect.height()}, option.rect);
}

void paintChevrons(QPainter &painter, const QStyleOption &option)
{
    const auto middle = QRectF(chevronsIn(option)).center();
    const auto half = points(3.5);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink(option), style::scale() * 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const int direction : {-1, 1}) {
        const auto base = middle.y() + direction * half * 0.7;
        const auto tip = middle.y() + direction * half * 1.6;
        painter.drawPolyline(QPolygonF({{middle.x() - half, base}, {middle.x(), tip}, {middle.x() + half, base}}));
    }
}

void paintPicker(QPainter &painter, const QStyleOptionComboBox &picker)
{
    painter.save();
    setUp(painter, picker);
    paintRounded(painter, picker.rect, raisedGround(picker), edgePen(picker), cornerRadius);
    paintChevrons(painter, picker);
    paintRing(painter, picker, raisedGround(picker));
    painter.restore();
}

// The whole strip takes clicks; what shows is thinner where the pointer is not near.
void paintPill(QPainter &painter, const QStyleOptionSlider &bar, const QRect &slider)
{
    if (bar.maximum <= bar.minimum)
        return;
    const auto width = points(isPressed(bar) || isHovered(bar) ? 7 : 4);
    const bool isLying = bar.orientation == Qt::Horizontal;
    const QSize size(isLying ? slider.width() : width, isLying ? width : slider.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style::scrollPill(bar.palette, shareFor(bar, 0.75, 0.62, 0.5)));
    painter.drawRoundedRect(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, slider), width / 2.0,
                            width / 2.0);
    painter.restore();
}

QRect sliderIn(const QStyleOptionSlider &bar)
{
    const bool isLying = bar.orientation == Qt::Horizontal;
    const auto room = isLying ? bar.rect.width() : bar.rect.height();
    const auto range = qint64(bar.maximum) - bar.minimum;
    const auto share = int(qint64(room) * bar.pageStep / std::max(range + bar.pageStep, qint64(1)));
    const auto length = range == 0 ? room : std::clamp(share, std::min(points(leastPill), room), room);
    const auto at =
        QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, room - length, bar.upsideDown);
    return isLying ? QRect(bar.rect.x() + at, bar.rect.y(), length, bar.rect.height())
                   : QRect(bar.rect.x(), bar.rect.y() + at, bar.rect.width(), length);
}

QRect partOfBar(const QStyleOptionSlider &bar, QStyle::SubControl part)
{
    const auto slider = sliderIn(bar);
    const bool isLying = bar.orientation == Qt::Horizontal;
    // What there is no button for is nowhere: a press would be taken for one.
    QRect place;
    if (part == QStyle::SC_ScrollBarSlider)
        place = slider;
    else if (part == QStyle::SC_ScrollBarGroove || part == QStyle::SC_ScrollBarSubPage ||
             part == QStyle::SC_ScrollBarAddPage)
        place = bar.rect;
    if (part == QStyle::SC_ScrollBarSubPage)
        isLying ? place.setRight(slider.left() - 1) : place.setBottom(slider.top() - 1);
    else if (part == QStyle::SC_ScrollBarAddPage)
        isLying ? place.setLeft(slider.right() + 1) : place.setTop(slider.bottom() + 1);
    return QStyle::visualRect(bar.direction, bar.rect, place);
}

void paintTip(QPainter &painter, const QStyleOption &option)
{
    painter.fillRect(option.rect, QColor(groundOfTip));
    painter.setPen(style::mix(QColor(groundOfTip), QColor(textOfTip), 0.2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
}

// One for all of them, which the application owns: the bars do not.
QStyle *styleOfPills()
{
    auto *style = qApp->findChild<HouseStyle *>({}, Qt::FindDirectChildrenOnly);
    if (style == nullptr) {
        style = new HouseStyle(QStyleFactory::create(QStringLiteral("fusion")));
        style->setParent(qApp);
    }
    return style;
}

}  // namespace

HouseStyle::HouseStyle(QStyle *fusion)
    : QProxyStyle(fusion)
{
    setObjectName(fusion->objectName());
}

bool HouseStyle::isWantedFor(const QStyle &style)
{
    const bool isFusion = style.objectName().compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0;
    return isFusion && qEnvironmentVariableIsEmpty("QT_STYLE_OVERRIDE");
}

// A bar that Qt takes for opaque would leave there what was below it before.
void HouseStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    if (qobject_cast<QScrollBar *>(widget) != nullptr)
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
    if (!widget->inherits("QTipLabel"))
        return;
    auto palette = widget->palette();
    palette.setColor(QPalette::ToolTipText, QColor(textOfTip));
    widget->setPalette(palette);
    widget->setFont(style::font(style::TypeStyle::Caption));
}

// Fusion itself would put the ring of a box inside of the box, and that of a button nowhere.
void HouseStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                             const QWidget *widget) const
{
    const auto *const button = qstyleoption_cast<const QStyleOptionButton *>(option);
    const auto *const picker = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    painter->save();
    if (element == CE_PushButtonBevel && button != nullptr) {
        paintButtonGround(*painter, *button, widget);
    } else if (element == CE_PushButtonLabel && button != nullptr && widget != nullptr) {
        paintButtonLabel(*painter, *button, *widget);
    } else if (element == CE_ComboBoxLabel && picker != nullptr && !picker->editable) {
        // It stands on a ground of the window's colours, whatever the palette has for buttons.
        auto shown = *picker;
        shown.palette.setColor(QPalette::ButtonText, ink(*picker));
        setUp(*painter, *picker);
        QProxyStyle::drawControl(element, &shown, painter, widget);
    } else if (element == CE_CheckBox && isBareBox(option)) {
        auto box = *button;
        box.rect = boxIn(box);
        paintBox(*painter, box);
        paintRing(*painter, *button, style::hoveredGround(button->palette));
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
    painter->restore();
}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                               const QWidget *widget) const
{
    painter->save();
    if (element == PE_IndicatorCheckBox)
        paintBox(*painter, *option);
    else if (element == PE_FrameFocusRect)
        style::paintFocusRing(*painter, option->rect, option->palette);
    else if (element == PE_PanelTipLabel)
        paintTip(*painter, *option);
    else
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    painter->restore();
}

void HouseStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                    const QWidget *widget) const
{
    const auto *const picker = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    const auto *const bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (control == CC_ComboBox && picker != nullptr && !picker->editable)
        paintPicker(*painter, *picker);
    else if (control == CC_ScrollBar && bar != nullptr)
        paintPill(*painter, *bar, partOfBar(*bar, SC_ScrollBarSlider).adjusted(0, endsOf(widget), 0, -endsOf(widget)));
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect HouseStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                 const QWidget *widget) const
{
    const auto *const picker = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    if (const auto *const bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
        control == CC_ScrollBar && bar != nullptr)
        return partOfBar(*bar, part);
    if (control == CC_ComboBox && part == SC_ComboBoxEditField && picker != nullptr && !picker->editable) {
        const auto text = picker->rect.adjusted(points(paddingOfPicker), 0, -points(roomForChevrons), 0);
        return visualRect(picker->direction, picker->rect, text);
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect HouseStyle::subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const
{
    if (element == SE_CheckBoxIndicator && isBareBox(option))
        return boxIn(*option);
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize HouseStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                   const QWidget *widget) const
{
    const auto *const button = qstyleoption_cast<const QStyleOptionButton *>(option);
    const auto *const picker = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    if (type == CT_PushButton && button != nullptr) {
        const auto text = button->fontMetrics.size(Qt::TextShowMnemonic, button->text);
        return {iconIn(*button).width() + text.width() + 2 * points(paddingOfButton),
                std::max(points(buttonHeight), text.height() + 2)};
    }
    if (type == CT_ComboBox && picker != nullptr && !picker->editable) {
        return {contents.width() + points(2 * paddingOfPicker + roomForChevrons),
                std::max(points(pickerHeight), contents.height())};
    }
    if (type == CT_CheckBox && isBareBox(option))
        return QProxyStyle::sizeFromContents(type, option, contents, widget)
            .expandedTo(QSize(1, 1) * points(boxSize + 2 * roomAroundBox));
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

int HouseStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return points(boxSize);
    case PM_ScrollBarExtent:
        return points(isLaidOver(widget) ? narrowStrip : stripWidth);
    case PM_ScrollBarSliderMin:
        return points(leastPill);
    case PM_ScrollView_ScrollBarOverlap:
        return isLaidOver(widget) ? points(narrowStrip) : 0;
    case PM_ToolTipLabelFrameWidth:
        return points(paddingOfTip) - 1;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int HouseStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *result) const
{
    if (hint == SH_ToolTip_WakeUpDelay)
        return timeBeforeTip;
    if (hint == SH_ToolTipLabel_Opacity)
        return 255;
    return QProxyStyle::styleHint(hint, option, widget, result);
}

void setProminent(QPushButton &button)
{
    button.setProperty(prominent, true);
}

void makePill(QScrollBar &bar, bool isLaidOver)
{
    bar.setProperty(laidOver, isLaidOver);
    bar.setStyle(styleOfPills());
}

}  // namespace velquarin
