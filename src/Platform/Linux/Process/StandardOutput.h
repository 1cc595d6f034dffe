// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Output.h"

namespace velquarin {

//! Standard output, unbuffered. Never waits: what nobody takes is lost. The process must ignore SIGPIPE.
//! Source: write(2), poll(2)
class StandardOutput : public Output
{
public:
    void printLine(const QString &line) override;
};

}  // namespace velquarin
