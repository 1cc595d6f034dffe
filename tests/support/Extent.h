// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QRandomGenerator>
#include <QtGlobal>

namespace velquarin::test {

//! Whether everything is tried, as in the long check, or a fixed sample with one of each kind, as every day. What is
//! said of a change must not depend on the day or on luck: so the sample is always the same.
inline bool wholeRun()
{
    return qgetenv("VELQUARIN_WHOLE") == "1";
}

//! Where the random parts of a test begin: every day at the same place, in the whole run at a fresh one. That one is
//! printed, and VELQUARIN_SEED gives it again.
inline quint32 seedOfRun(quint32 everyday)
{
    if (!wholeRun())
        return everyday;
    const auto wanted = qgetenv("VELQUARIN_SEED");
    const auto seed = wanted.isEmpty() ? QRandomGenerator::system()->generate() : wanted.toUInt();
    qInfo("the same again: VELQUARIN_WHOLE=1 VELQUARIN_SEED=%u", seed);
    return seed;
}

}  // namespace velquarin::test
