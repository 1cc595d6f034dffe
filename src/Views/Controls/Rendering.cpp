// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Rendering.h"

#include <utility>

namespace velquarin {

Rendering::Rendering(std::function<void()> render, QObject *parent)
    : QObject(parent)
    , m_render(std::move(render))
{
}

void Rendering::soon()
{
    if (std::exchange(m_isDue, true))
        return;
    const auto renderIfStillDue = [this] {
        if (m_isDue)
            now();
    };
    QMetaObject::invokeMethod(this, renderIfStillDue, Qt::QueuedConnection);
}

void Rendering::now()
{
    m_isDue = false;
    m_render();
}

}  // namespace velquarin
