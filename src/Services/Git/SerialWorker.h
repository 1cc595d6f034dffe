// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QSemaphore>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <utility>

namespace velquarin {

//! The worker ended before it began this job.
class WorkerStopped : public std::runtime_error
{
public:
    WorkerStopped()
        : std::runtime_error("the program is ending")
    {
    }
};

//! One thread that does jobs one after another, in the order in which they were handed over. Everything but the jobs
//! themselves happens on the thread that made the worker, which must run an event loop: futures are made, settled and
//! watched there, so that the only thing two threads share is a queue under a mutex.
class SerialWorker : public QObject
{
    Q_OBJECT
public:
    SerialWorker();
    ~SerialWorker() override;

    //! Has @p function called on the worker's thread. The future gets what it returns or throws.
    template <typename Function>
    [[nodiscard]] auto run(Function function, const std::optional<QString> &subject = std::nullopt)
        -> QFuture<std::invoke_result_t<Function>>
    {
        using Result = std::invoke_result_t<Function>;
        auto job = std::make_unique<JobReturning<Result>>(std::move(function));
        job->subject = subject;
        auto future = job->future();
        hand(std::move(job));
        return future;
    }

    //! What the job that runs now is about: a long one calls it, on its thread, as often as it comes to something else. Nobody
    //! is told of that; whoever wants to know asks subject().
    void setSubject(const std::optional<QString> &subject);
    [[nodiscard]] std::optional<QString> subject();

    //! Settles what has not begun with WorkerStopped, and takes no more.
    void close();

    //! Lets the running job end, settles all others with WorkerStopped, and takes no more.
    //! Returns whether the thread ended within @p patience.
    bool stop(std::chrono::milliseconds patience);

Q_SIGNALS:
    //! A subject of the job that runs now; nothing while none runs, or one without a subject. Not while it waits.
    void subjectChanged(const std::optional<QString> &subject);

protected:
    //! Tells what runs and settles what has come back. Sent by the worker's thread.
    void customEvent(QEvent *event) override;

private:
    class Job
    {
    public:
        Job() = default;
        Job(const Job &) = delete;
        Job &operator=(const Job &) = delete;
        virtual ~Job() = default;
        virtual void work() = 0;                            // on the worker's thread
        virtual void settle() = 0;                          // on the owner's thread
        virtual void fail(const std::exception_ptr &) = 0;  // on the owner's thread

        std::optional<QString> subject;
    };

    template <typename Result>
    class JobReturning : public Job
    {
    public:
        explicit JobReturning(std::function<Result()> function)
            : m_function(std::move(function))
        {
            m_promise.start();
        }

        [[nodiscard]] QFuture<Result> future() const { return m_promise.future(); }

        void work() override
        {
            try {
                m_result.emplace(m_function());
            } catch (...) {
                m_error = std::current_exception();
            }
        }

        void settle() override
        {
            if (m_error)
                return fail(m_error);
            m_promise.addResult(std::move(*m_result));
            m_promise.finish();
        }

        void fail(const std::exception_ptr &error) override
        {
            m_promise.setException(error);
            m_promise.finish();
        }

    private:
        std::function<Result()> m_function;
        QPromise<Result> m_promise;
        std::optional<Result> m_result;
        std::exception_ptr m_error;
    };

    using Jobs = std::deque<std::unique_ptr<Job>>;

    void hand(std::unique_ptr<Job> job);
    void tellSubject();
    void settleDoneJobs();
    [[nodiscard]] bool endThread(std::chrono::milliseconds patience);
    static void failAll(const Jobs &jobs);
    void work();
    [[nodiscard]] std::unique_ptr<Job> nextJob();
    void handBack(std::unique_ptr<Job> job);
    void callOwner();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Jobs m_waiting;                        // guarded by m_mutex
    Jobs m_done;                           // guarded by m_mutex
    std::optional<QString> m_subject;      // guarded by m_mutex
    bool m_isOwnerCalled = false;          // guarded by m_mutex
    bool m_isStopping = false;             // guarded by m_mutex
    std::optional<QString> m_toldSubject;  // the owner's
    QSemaphore m_ended;                    // holds one once the thread takes no more
    std::thread m_thread;
};

}  // namespace velquarin
