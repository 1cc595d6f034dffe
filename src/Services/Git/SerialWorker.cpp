// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/SerialWorker.h"

#include <QCoreApplication>
#include <QEvent>

namespace velquarin {

SerialWorker::SerialWorker()
    : m_thread([this] { work(); })
{
}

SerialWorker::~SerialWorker()
{
    stop(std::chrono::milliseconds(0));
    if (m_thread.joinable())
        m_thread.join();
    settleDoneJobs();
}

void SerialWorker::hand(std::unique_ptr<Job> job)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_isStopping) {
            m_waiting.push_back(std::move(job));
            m_changed.notify_all();
            return;
        }
    }
    job->fail(std::make_exception_ptr(WorkerStopped()));
}

bool SerialWorker::stop(std::chrono::milliseconds patience)
{
    const auto hasEnded = endThread(patience);
    if (hasEnded && m_thread.joinable())
        m_thread.join();
    return hasEnded;
}

void SerialWorker::close()
{
    Jobs neverBegun;
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
        m_waiting.swap(neverBegun);
        m_changed.notify_all();
    }
    failAll(neverBegun);
}

bool SerialWorker::endThread(std::chrono::milliseconds patience)
{
    close();
    // On a clock that nobody sets: whoever quits does not wait longer because the time was put back.
    const auto hasEnded = m_ended.tryAcquire(1, int(patience.count()));
    if (hasEnded)
        m_ended.release();
    return hasEnded;
}

void SerialWorker::failAll(const Jobs &jobs)
{
    for (const auto &job : jobs)
        job->fail(std::make_exception_ptr(WorkerStopped()));
}

// The event carries nothing; its receiver does not look at it.
void SerialWorker::customEvent(QEvent * /*event*/)
{
    tellSubject();
    settleDoneJobs();
}

// What runs now and not what began: a short job may be over before its owner looks.
void SerialWorker::tellSubject()
{
    std::optional<QString> subject;
    {
        const std::lock_guard lock(m_mutex);
        m_isOwnerCalled = false;
        subject = m_subject;
    }
    if (std::exchange(m_toldSubject, subject) != subject)
        Q_EMIT subjectChanged(subject);
}

void SerialWorker::setSubject(const std::optional<QString> &subject)
{
    const std::lock_guard lock(m_mutex);
    m_subject = subject;
}

std::optional<QString> SerialWorker::subject()
{
    const std::lock_guard lock(m_mutex);
    return m_subject;
}

void SerialWorker::settleDoneJobs()
{
    Jobs done;
    {
        const std::lock_guard lock(m_mutex);
        m_done.swap(done);
    }
    for (const auto &job : done)
        job->settle();
}

void SerialWorker::work()
{
    while (auto job = nextJob()) {
        job->work();
        handBack(std::move(job));
    }
    m_ended.release();
}

std::unique_ptr<SerialWorker::Job> SerialWorker::nextJob()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isStopping || !m_waiting.empty(); });
    if (m_waiting.empty())
        return nullptr;
    auto job = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_subject = job->subject;
    if (m_subject)
        callOwner();
    return job;
}

void SerialWorker::handBack(std::unique_ptr<Job> job)
{
    const std::lock_guard lock(m_mutex);
    m_subject.reset();
    m_done.push_back(std::move(job));
    callOwner();
}

// Under the mutex. One event at a time is enough: its receiver takes all that is there.
void SerialWorker::callOwner()
{
    if (!std::exchange(m_isOwnerCalled, true))
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

}  // namespace velquarin
