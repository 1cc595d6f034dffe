// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/ErrorLine.h"

#include "Platform/Linux/Process/StandardDescriptors.h"

#include <QString>

#include <unistd.h>

namespace velquarin {

// Not the toolkit's own logging, which may go to the journal instead.
void printErrorLine(const QString &text)
{
    const QString line = QStringLiteral("velquarin: ") + text + u'\n';
    const auto bytes = line.toUtf8();
    writeWithoutWaiting(STDERR_FILENO, bytes);
}

}  // namespace velquarin
