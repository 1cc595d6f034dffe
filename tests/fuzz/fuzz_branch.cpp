// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Files/PosixFileTree.h"
#include "Services/Git/GitQueries.h"
#include "support/FakeClock.h"
#include "support/FakeProcessRunner.h"
#include "Target.h"

#include <algorithm>

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

// The branch that is read when git answers so: what the remote's head is, and what "main" and "master" are found to be.
QString branchFor(const QList<QByteArray> &answers)
{
    test::FakeProcessRunner runner;
    const test::FakeClock clock;
    runner.answer(QStringLiteral("symbolic-ref refs/remotes/origin/HEAD --short"), answers.value(0));
    runner.answer(QStringLiteral("branch --list main"), answers.value(1));
    runner.answer(QStringLiteral("branch --list master"), answers.value(2));
    return GitQueries(runner, PosixFileTree(), clock, {}).getDefaultBranch(QStringLiteral("/somewhere"));
}

bool isControl(QChar character)
{
    return character < QChar(0x20) || character == QChar(0x7f);
}

}  // namespace

// Three answers with 0xFF between them, a byte that no valid answer holds.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto branch = branchFor(bytes(data, size).split('\xFF'));
    require(!branch.isEmpty(), "there always is a branch");
    require(!branch.startsWith(u'-'), "a branch is never an option");
    require(!branch.contains(QLatin1String("@{")), "a branch is never a question to the reflog");
    require(std::ranges::none_of(branch, isControl), "a branch has no control characters");
    return 0;
}
