// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

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

private:
    std::function<void()> m_render;
    bool m_isDue = false;
};

}  // namespace velquarin
