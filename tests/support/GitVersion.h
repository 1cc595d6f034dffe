// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/TempRepository.h"

#include <QVersionNumber>

namespace velquarin::test {

//! The version of the git that is installed: 2.39.5.
inline QVersionNumber gitVersion()
{
    static const auto version = QVersionNumber::fromString(QString::fromLatin1(
        RealGit(QDir::rootPath()).run({QStringLiteral("version")}).sliced(QByteArrayView("git version ").size())));
    return version;
}

}  // namespace velquarin::test
