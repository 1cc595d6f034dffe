// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace velquarin {

//! Does one job over and over on a thread of its own, for requests that come in bursts: many that come close
//! together are served by one run, which begins at most @p patience after the first. The thread sleeps while
//! there is nothing to do, and does not exist before the first request.
class CoalescingWorker
{
public:
    //! @p job must not throw, and must not call back.
    CoalescingWorker(std::function<void()> job, std::chrono::milliseconds patience);
    CoalescingWorker(const CoalescingWorker &) = delete;
    CoalescingWorker &operator=(const CoalescingWorker &) = delete;

    //! Serves what is still requested, then ends the thread.
    ~CoalescingWorker();

    //! Wants a run that begins after this call. Returns at once.
    void request();

    //! Blocks until all that was requested is done, at once instead of at the end of its burst. Returns whether it was done
    //! within @p limit.
    bool finish(std::chrono::milliseconds limit);

private:
    void serve();
    void awaitEndOfBurst(std::unique_lock<std::mutex> &lock);

    const std::function<void()> m_job;
    const std::chrono::milliseconds m_patience;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isRequested = false;
    bool m_isRunning = false;
    bool m_isHurried = false;
    bool m_isEnding = false;
    std::thread m_thread;
};

}  // namespace velquarin
