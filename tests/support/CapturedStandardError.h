// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QStringList>
#include <QTemporaryFile>

#include <unistd.h>

namespace velquarin::test {

//! While it exists, what the program writes to its standard error goes here and not to the terminal.
class CapturedStandardError
{
public:
    CapturedStandardError()
        : m_before(::dup(STDERR_FILENO))
    {
        if (!m_file.open() || ::dup2(m_file.handle(), STDERR_FILENO) < 0)
            qFatal("standard error cannot be captured");
    }
    CapturedStandardError(const CapturedStandardError &) = delete;
    CapturedStandardError &operator=(const CapturedStandardError &) = delete;
    ~CapturedStandardError()
    {
        ::dup2(m_before, STDERR_FILENO);
        ::close(m_before);
    }

    //! All lines so far.
    [[nodiscard]] QStringList lines() const
    {
        QFile written(m_file.fileName());
        if (!written.open(QIODevice::ReadOnly))
            qFatal("standard error cannot be read back");
        return QString::fromUtf8(written.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

private:
    QTemporaryFile m_file;
    int m_before;
};

}  // namespace velquarin::test
