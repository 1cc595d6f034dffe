// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QRegularExpression>
#include <QTest>

namespace velquarin::test {

//! For the init() of every test class: a warning that nobody expected fails the test.
inline void failOnAnyWarning()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

}  // namespace velquarin::test
