// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Rendering.h"

#include <QApplication>
#include <QEvent>
#include <QLayout>
#include <QWidget>

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
    QMetaObject::invokeMethod(this, &Rendering::nowIfDue, Qt::QueuedConnection);
}

void Rendering::now()
{
    m_isDue = false;
    m_render();
}

bool Rendering::nowIfDue()
{
    const bool isDue = m_isDue;
    if (isDue)
        now();
    return isDue;
}

Rebuilding::Rebuilding(std::function<void()> rebuild)
    : m_rendering(std::move(rebuild))
{
}

void Rebuilding::noteFont()
{
    m_builtFor = QApplication::font();
}

// Where a theme brings another font of its own, Qt tells of its other changes alone.
void Rebuilding::follow(const QEvent &change)
{
    if (QApplication::font() != m_builtFor || change.type() == QEvent::StyleChange)
        soon();
}

void discardContent(QLayout &layout)
{
    while (auto *const item = layout.takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

}  // namespace velquarin
