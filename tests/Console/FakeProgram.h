// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Platform/RunningProgram.h"

#include <QCoroFuture>
#include <QPromise>

#include <utility>

namespace velquarin::test {

//! A running program that answers when the test says so.
class FakeProgram : public RunningProgram
{
public:
    [[nodiscard]] QCoro::Task<Answer> properties(QStringList names) override
    {
        ++questions;
        askedFor = names;
        if (isPrompt)
            co_return answer;
        m_promise = QPromise<Answer>();
        m_promise.start();
        auto future = m_promise.future();
        co_return co_await future;
    }

    [[nodiscard]] QCoro::Task<State> call(QString /*method*/, QVariantList /*arguments*/) override
    {
        co_return answer.state;
    }

    //! Answers the question that waits.
    void answerNow()
    {
        m_promise.addResult(answer);
        m_promise.finish();
    }

    void change(Answer newAnswer)
    {
        answer = std::move(newAnswer);
        Q_EMIT changed();
    }

    Answer answer;
    bool isPrompt = true;
    int questions = 0;
    QStringList askedFor;

private:
    QPromise<Answer> m_promise;
};

}  // namespace velquarin::test
