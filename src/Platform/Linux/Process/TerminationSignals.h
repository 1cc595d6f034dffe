// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>

#include <functional>

namespace velquarin {

//! Turns SIGTERM, SIGINT and SIGHUP into a call on the main loop, so that the program ends in its ordinary way.
//! Make it before the first thread starts: threads inherit that these signals are blocked.
//! Source: signalfd(2)
class TerminationSignals
{
public:
    explicit TerminationSignals(std::function<void()> onSignal);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

private:
    int m_descriptor;
    QSocketNotifier m_notifier;
};

//! Blocks the signals above for the calling thread and all it starts; to be called first of all.
void blockTerminationSignals();

}  // namespace velquarin
