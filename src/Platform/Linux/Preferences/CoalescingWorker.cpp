// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/CoalescingWorker.h"

#include <utility>

#include <csignal>

namespace velquarin {

namespace {

// A thread inherits the signals that are blocked where it is started. This one takes none, so that they all reach the
// main thread, which knows what they mean.
template <typename Function>
std::thread threadWithoutSignals(Function &&function)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(std::forward<Function>(function));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

}  // namespace

CoalescingWorker::CoalescingWorker(std::function<void()> job, std::chrono::milliseconds patience)
    : m_job(std::move(job))
    , m_patience(patience)
{
}

CoalescingWorker::~CoalescingWorker()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        m_isHurried = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void CoalescingWorker::request()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isRequested = true;
    }
    m_changed.notify_all();
    if (!m_thread.joinable())
        m_thread = threadWithoutSignals([this] { serve(); });
}

bool CoalescingWorker::finish(std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(m_mutex);
    m_isHurried = true;
    m_changed.notify_all();
    const auto isDone = m_changed.wait_until(lock, deadline, [this] { return !m_isRequested && !m_isRunning; });
    m_isHurried = false;
    return isDone;
}

void CoalescingWorker::awaitEndOfBurst(std::unique_lock<std::mutex> &lock)
{
    const auto deadline = std::chrono::steady_clock::now() + m_patience;
    m_changed.wait_until(lock, deadline, [this] { return m_isHurried; });
}

void CoalescingWorker::serve()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_isRequested || m_isEnding; });
        if (!m_isRequested)
            return;
        awaitEndOfBurst(lock);
        m_isRequested = false;
        m_isRunning = true;
        lock.unlock();
        m_job();
        lock.lock();
        m_isRunning = false;
        m_changed.notify_all();
    }
}

}  // namespace velquarin
