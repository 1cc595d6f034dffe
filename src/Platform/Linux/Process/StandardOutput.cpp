// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/StandardOutput.h"

#include "Platform/Linux/Process/StandardDescriptors.h"

#include <QString>

#include <unistd.h>

namespace velquarin {

void StandardOutput::printLine(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    writeWithoutWaiting(STDOUT_FILENO, bytes);
}

}  // namespace velquarin
