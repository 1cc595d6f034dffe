// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QObject>

#include <functional>

class QEvent;
class QLayout;

namespace velquarin {

//! Renders once for any number of changes, on the next turn of the event loop: by then the values that were announced
//! are stored.
class Rendering : public QObject
{
    Q_OBJECT
public:
    explicit Rendering(std::function<void()> render, QObject *parent = nullptr);

    void soon();

    //! At once, and no more for the changes before.
    void now();

    //! At once where it is due, which is what it returns.
    bool nowIfDue();

private:
    std::function<void()> m_render;
    bool m_isDue = false;
};

//! Builds a widget's content anew, on the next turn of the event loop, when the desktop's font or style changes: all sizes
//! follow them.
class Rebuilding
{
public:
    explicit Rebuilding(std::function<void()> rebuild);

    //! What is built is built for the font of this moment.
    void noteFont();

    //! To be called from the widget's changeEvent().
    void follow(const QEvent &change);

    void soon() { m_rendering.soon(); }

    //! At once where it is due, which is what it returns.
    bool nowIfDue() { return m_rendering.nowIfDue(); }

private:
    Rendering m_rendering;
    QFont m_builtFor;
};

//! Deletes all widgets that @p layout holds.
void discardContent(QLayout &layout);

}  // namespace velquarin
