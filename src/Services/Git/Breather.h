// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QElapsedTimer>

namespace velquarin {

//! Keeps a long piece of work on the main thread from holding up the windows: between two steps the work asks whether a
//! pause is due, and waits it out.
class Breather
{
public:
    Breather();

    //! Whether the work has gone on for longer than a window may stand still.
    [[nodiscard]] bool isPauseDue() const;

    //! Goes on at a later turn of the event loop; whoever waits may be gone by then.
    QCoro::Task<> pause();

private:
    QElapsedTimer m_sincePause;
};

}  // namespace velquarin
