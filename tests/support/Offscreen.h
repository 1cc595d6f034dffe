// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QRegularExpression>
#include <QTest>

namespace velquarin::test {

//! For the init() of a test class that opens windows, in place of failOnAnyWarning(): any warning fails the test, but
//! for what the offscreen platform says of itself whenever a window is raised or takes the keyboard.
inline void failOnAnyWarningOfOurs()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support )")));
}

}  // namespace velquarin::test
