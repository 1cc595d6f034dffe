// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/NotificationCenter.h"

#include <QPromise>
#include <QStringList>

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

    void setStatus(AuthorizationStatus status) { m_status = status; }
    void grant(bool isGranted) { m_isGranted = isGranted; }
    void failToAsk(const char *reason) { m_askError = NotificationError(reason); }
    void accept(bool isAccepted)
    {
        m_isAccepted = isAccepted;
        m_addError.reset();
    }
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
    [[nodiscard]] const QList<QList<NotificationCategory>> &categorySets() const { return m_categorySets; }
    [[nodiscard]] const QList<NotificationRequest> &added() const { return m_added; }
    [[nodiscard]] const QStringList &withdrawn() const { return m_withdrawn; }

    [[nodiscard]] QFuture<AuthorizationStatus> authorizationStatus() override
    {
        ++m_statusQuestions;
        return reply(m_status, std::nullopt);
    }

    [[nodiscard]] QFuture<bool> requestAuthorization() override
    {
        ++m_leaveQuestions;
        return reply(m_isGranted, m_askError);
    }

    void setCategories(const QList<NotificationCategory> &categories) override { m_categorySets << categories; }

    [[nodiscard]] QFuture<bool> add(const NotificationRequest &request) override
    {
        m_added << request;
        return reply(m_isAccepted, m_addError);
    }

    void withdraw(const QString &requestIdentifier) override { m_withdrawn << requestIdentifier; }

private:
    using Error = std::optional<NotificationError>;

    template <typename T>
    QFuture<T> reply(T value, Error error)
    {
        const auto promise = std::make_shared<QPromise<T>>();
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

    AuthorizationStatus m_status = AuthorizationStatus::Authorized;
    bool m_isGranted = true;
    bool m_isAccepted = true;
    Error m_askError;
    Error m_addError;
    bool m_holdsAnswers = false;
    std::vector<std::function<void()>> m_held;
    int m_statusQuestions = 0;
    int m_leaveQuestions = 0;
    QList<QList<NotificationCategory>> m_categorySets;
    QList<NotificationRequest> m_added;
    QStringList m_withdrawn;
};

}  // namespace velquarin::test
