// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProcessRunner.h"

#include <QHash>
#include <QList>

#include <functional>
#include <mutex>

namespace velquarin::test {

//! Answers by script in place of running programs, and keeps what was asked. What has no answer cannot be launched.
class FakeProcessRunner : public ProcessRunner
{
public:
    using Answer = std::function<QByteArray()>;

    //! What the command prints; arguments are given as one text with blanks between.
    void answer(const QString &arguments, const QByteArray &output)
    {
        answerWith(arguments, [output] { return output; });
    }

    //! What the command prints in that folder; it goes before what it prints anywhere.
    void answerIn(const QString &directory, const QString &arguments, const QByteArray &output)
    {
        answerWith(directory + u'|' + arguments, [output] { return output; });
    }

    void answerWith(const QString &arguments, const Answer &answer)
    {
        const std::lock_guard lock(m_mutex);
        m_answers.insert(arguments, answer);
    }

    //! All commands so far, in order.
    [[nodiscard]] QStringList commands() const
    {
        const std::lock_guard lock(m_mutex);
        QStringList texts;
        for (const auto &request : m_requests)
            texts << request.arguments.join(u' ');
        return texts;
    }

    [[nodiscard]] QList<ProcessRequest> requests() const
    {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }

    void forget()
    {
        const std::lock_guard lock(m_mutex);
        m_requests.clear();
    }

    void setConfines(bool confines)
    {
        const std::lock_guard lock(m_mutex);
        m_confines = confines;
    }

    bool confine(const QString & /*program*/) override
    {
        const std::lock_guard lock(m_mutex);
        return m_confines;
    }

    ProcessOutput run(const ProcessRequest &request) override { return {answerTo(request)(), 0}; }

    void stop() override {}

private:
    Answer answerTo(const ProcessRequest &request)
    {
        const std::lock_guard lock(m_mutex);
        m_requests.append(request);
        const auto arguments = request.arguments.join(u' ');
        auto found = m_answers.constFind(request.directory + u'|' + arguments);
        if (found == m_answers.constEnd())
            found = m_answers.constFind(arguments);
        if (found == m_answers.constEnd())
            throw LaunchError("no such program");
        return *found;
    }

    mutable std::mutex m_mutex;
    QHash<QString, Answer> m_answers;
    QList<ProcessRequest> m_requests;
    bool m_confines = false;
};

}  // namespace velquarin::test
