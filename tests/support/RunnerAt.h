// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Process/ChildProcessRunner.h"

#include <atomic>
#include <functional>

namespace velquarin::test {

//! Real git, at the moment and in the zone (TZ) of the test.
class RunnerAt : public ChildProcessRunner
{
public:
    ProcessOutput run(const ProcessRequest &request) override
    {
        ++count;
        if (before)
            before(request.arguments.first());
        const auto output = runNow(request);
        return meanwhile ? meanwhile(request.arguments.first(), output) : output;
    }

    std::atomic<qint64> now = 0;  //!< seconds since 1970
    std::atomic<int> count = 0;   //!< of the processes so far

    //! What happens between the question and git's start.
    std::function<void(const QString &command)> before;
    //! What happens when git has answered, and what of it arrives.
    std::function<ProcessOutput(const QString &command, const ProcessOutput &output)> meanwhile;

private:
    [[nodiscard]] ProcessOutput runNow(const ProcessRequest &request)
    {
        auto changed = request;
        changed.environment.insert(QStringLiteral("GIT_TEST_DATE_NOW"), QString::number(now));
        changed.environment.insert(QStringLiteral("TZ"), QString::fromLatin1(qgetenv("TZ")));
        return ChildProcessRunner::run(changed);
    }
};

}  // namespace velquarin::test
