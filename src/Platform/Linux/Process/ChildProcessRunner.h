// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Process/ProgramConfinement.h"
#include "Platform/ProcessRunner.h"

#include <sys/types.h>

#include <atomic>

namespace velquarin {

//! Runs programs as child processes of the calling thread, each in a process group of its own, with nothing to read,
//! nowhere to complain to, no core dump and at most 2 GiB of data. A child ends with the thread that started it, and one
//! that prints more than 64 MiB is killed: what it printed until then is its output.
//! Source: execve(2), setrlimit(2), prctl(2) PR_SET_PDEATHSIG
class ChildProcessRunner : public ProcessRunner
{
public:
    bool confine(const QString &program) override;
    ProcessOutput run(const ProcessRequest &request) override;
    void stop() override;

private:
    void prepareChild(pid_t parent) const;
    void killGroup() const;

    ProgramConfinement m_confinement;

    std::atomic<pid_t> m_group = 0;  // of the running child; 0 where there is none
    std::atomic<bool> m_isStopped = false;
};

}  // namespace velquarin
