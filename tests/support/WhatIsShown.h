// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QEvent>
#include <QHash>
#include <QPaintEvent>
#include <QPalette>
#include <QRect>
#include <QRegion>
#include <QWidget>

namespace velquarin::test {

//! Whether a widget was hidden by itself; its window need not be on a screen.
inline bool isHidden(QAccessibleInterface *accessible)
{
    const auto *const widget = qobject_cast<QWidget *>(accessible->object());
    return widget != nullptr ? widget->isHidden() && !widget->isWindow() : bool(accessible->state().invisible);
}

//! The names of all that stands in the accessibility tree below @p widget with one of these roles and is not
//! hidden, in the tree's order.
inline QStringList namesOf(QAccessibleInterface *parent, const QList<QAccessible::Role> &roles)
{
    QStringList names;
    for (int index = 0; index < parent->childCount(); ++index) {
        auto *const child = parent->child(index);
        if (child == nullptr || isHidden(child))
            continue;
        if (roles.contains(child->role()))
            names.append(child->text(QAccessible::Name));
        names.append(namesOf(child, roles));
    }
    return names;
}

inline QStringList namesOf(QWidget &widget, const QList<QAccessible::Role> &roles)
{
    return namesOf(QAccessible::queryAccessibleInterface(&widget), roles);
}

//! Every text that can be read in @p widget.
inline QStringList textsIn(QWidget &widget)
{
    return namesOf(widget, {QAccessible::StaticText});
}

//! Every button that can be pressed or could be, were it enabled.
inline QStringList buttonsIn(QWidget &widget)
{
    return namesOf(widget, {QAccessible::Button});
}

//! Presses a widget the way a screen reader does.
inline void pressAccessibly(QWidget &widget)
{
    auto *const actions = QAccessible::queryAccessibleInterface(&widget)->actionInterface();
    Q_ASSERT(actions != nullptr);
    actions->doAction(QAccessibleActionInterface::pressAction());
}

//! Counts how often each widget of the program is painted while this lives.
class PaintCounter : public QObject
{
public:
    PaintCounter() { qApp->installEventFilter(this); }

    [[nodiscard]] int of(const QWidget *widget) const { return m_paints.value(widget); }
    [[nodiscard]] int ofAll() const
    {
        int sum = 0;
        for (const auto count : m_paints)
            sum += count;
        return sum;
    }
    void forget() { m_paints.clear(); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType())
            ++m_paints[watched];
        return false;
    }

private:
    QHash<const QObject *, int> m_paints;
};

//! What of one widget is painted from now on.
class PaintRecorder : public QObject
{
public:
    explicit PaintRecorder(QWidget &widget) { widget.installEventFilter(this); }
    QRegion region;

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            region += static_cast<QPaintEvent *>(event)->region();
        return false;
    }
};

//! Where everything stands inside of @p widget.
inline QHash<const QWidget *, QRect> placesIn(const QWidget &widget)
{
    QHash<const QWidget *, QRect> places;
    for (const auto *const child : widget.findChildren<QWidget *>())
        places.insert(child, QRect(child->mapTo(&widget, QPoint()), child->size()));
    return places;
}

//! A light and a dark desktop. On the light one all three inks differ.
inline QPalette lightPalette()
{
    QPalette palette(QColor(0xfc, 0xfc, 0xfc), QColor(0xef, 0xf0, 0xf1));
    palette.setColor(QPalette::WindowText, QColor(0x1b, 0x1e, 0x20));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    return palette;
}

inline QPalette darkPalette()
{
    QPalette palette(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
    palette.setColor(QPalette::WindowText, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    return palette;
}

//! A desktop set to high contrast.
inline QPalette contrastPalette(const QColor &text, const QColor &window)
{
    QPalette palette(window, window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    return palette;
}

}  // namespace velquarin::test
