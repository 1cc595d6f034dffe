// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Output.h"

#include <QStringList>

namespace velquarin::test {

//! Keeps the lines instead of writing them.
class RecordingOutput : public Output
{
public:
    void printLine(const QString &line) override { m_lines << line; }

    [[nodiscard]] const QStringList &lines() const { return m_lines; }

private:
    QStringList m_lines;
};

}  // namespace velquarin::test
