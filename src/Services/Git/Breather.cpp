// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/Breather.h"

#include <QCoroTimer>

#include <chrono>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

constexpr qint64 stillness = 8;  // ms, half a frame

}  // namespace

Breather::Breather()
{
    m_sincePause.start();
}

bool Breather::isPauseDue() const
{
    return m_sincePause.hasExpired(stillness);
}

QCoro::Task<> Breather::pause()
{
    co_await QCoro::sleepFor(0ms);
    m_sincePause.restart();
}

}  // namespace velquarin
