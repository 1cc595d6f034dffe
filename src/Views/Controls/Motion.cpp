// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Motion.h"

#include "Views/Controls/Style.h"

#include <QWidget>

#include <utility>

namespace velquarin {

Motion::Motion(QWidget &widget, const QString &name, int longest, std::function<void()> show)
    : QVariantAnimation(&widget)
    , m_widget(widget)
    , m_longest(longest)
{
    setObjectName(name);
    setDuration(0);
    setStartValue(0.0);
    setEndValue(1.0);
    connect(this, &QVariantAnimation::valueChanged, this, std::move(show));
}

void Motion::begin()
{
    stop();
    setDuration(style::animationTime(m_widget, m_longest));
    start();
}

void Motion::end()
{
    setCurrentTime(duration());
}

}  // namespace velquarin
