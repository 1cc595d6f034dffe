// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/TerminationSignals.h"

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

namespace velquarin {

namespace {

sigset_t terminationSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const auto number : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signals, number);
    return signals;
}

int openDescriptor()
{
    const auto signals = terminationSignals();
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

void drain(int descriptor)
{
    signalfd_siginfo information = {};
    while (read(descriptor, &information, sizeof information) > 0)
        continue;
}

}  // namespace

void blockTerminationSignals()
{
    const auto signals = terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : m_descriptor(openDescriptor())
    , m_notifier(m_descriptor, QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier,
                     [descriptor = m_descriptor, onSignal = std::move(onSignal)] {
                         drain(descriptor);
                         onSignal();
                     });
}

TerminationSignals::~TerminationSignals()
{
    m_notifier.setEnabled(false);
    close(m_descriptor);
}

}  // namespace velquarin
