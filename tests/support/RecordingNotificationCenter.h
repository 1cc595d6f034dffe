// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/NotificationCenter.h"

#include <QCoroFuture>
#include <QPromise>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velquarin::test {

//! A notification centre that shows nothing and keeps what was asked of it. It answers at once, or, once
//! holdAnswers() was called, when the test says so; the answer is the one that was set when it was asked.
class RecordingNotificationCenter : public NotificationCenter
{
    Q_OBJECT
public:
    using NotificationCenter::NotificationCenter;

    void setAuthorized(bool isAuthorized) { m_isAuthorized = isAuthorized; }
    void grant(bool isGranted) { m_isGranted = isGranted; }
    void failToAsk(const char *reason) { m_askError = NotificationError(reason); }
    void accept() { m_addError.reset(); }
    void failToAdd(const char *reason) { m_addError = NotificationError(reason); }

    void holdAnswers() { m_holdsAnswers = true; }

    //! Gives all the answers that were held back.
    void answer()
    {
        for (const auto &give : std::exchange(m_held, {}))
            give();
    }

    [[nodiscard]] int statusQuestions() const { return m_statusQuestions; }
    [[nodiscard]] int leaveQuestions() const { return m_leaveQuestions; }
    [[nodiscard]] const QList<NotificationCategory> &categories() const { return m_categories; }
    [[nodiscard]] const QList<NotificationRequest> &added() const { return m_added; }
    [[nodiscard]] const QStringList &withdrawn() const { return m_withdrawn; }

    [[nodiscard]] QCoro::Task<bool> isAuthorized() override
    {
        ++m_statusQuestions;
        const auto answer = reply(m_isAuthorized, {});
        co_return co_await answer;
    }

    [[nodiscard]] QCoro::Task<bool> requestAuthorization() override
    {
        ++m_leaveQuestions;
        const auto answer = reply(m_isGranted, m_askError);
        co_return co_await answer;
    }

    void setCategory(const NotificationCategory &category) override { m_categories << category; }

    [[nodiscard]] QCoro::Task<> add(NotificationRequest request) override
    {
        m_added << request;
        const auto answer = reply(true, m_addError);
        co_await answer;
    }

    void withdraw() override { m_withdrawn << m_added.constLast().identifier; }

private:
    using Error = std::optional<NotificationError>;

    QFuture<bool> reply(bool value, const Error &error)
    {
        const auto promise = std::make_shared<QPromise<bool>>();
        promise->start();
        const auto give = [promise, value, error] {
            if (error)
                promise->setException(std::make_exception_ptr(*error));
            else
                promise->addResult(value);
            promise->finish();
        };
        if (m_holdsAnswers)
            m_held.emplace_back(give);
        else
            give();
        return promise->future();
    }

    bool m_isAuthorized = true;
    bool m_isGranted = true;
    Error m_askError;
    Error m_addError;
    bool m_holdsAnswers = false;
    std::vector<std::function<void()>> m_held;
    int m_statusQuestions = 0;
    int m_leaveQuestions = 0;
    QList<NotificationCategory> m_categories;
    QList<NotificationRequest> m_added;
    QStringList m_withdrawn;
};

}  // namespace velquarin::test
