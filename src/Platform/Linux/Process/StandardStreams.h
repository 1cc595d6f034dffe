// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Output.h"

#include <QByteArrayView>

#include <functional>
#include <optional>
#include <system_error>

class QString;

namespace velquarin {

//! Opens those of standard input, output and error that whoever started the program has closed, on /dev/null: the next
//! file that the program opens would take their place, and be written to. To be called first of all. Returns
//! whether standard output was open.
bool openStandardDescriptors();

//! Writes bytes to a descriptor without ever waiting for its reader: what nobody takes is lost. The process must ignore
//! SIGPIPE.
//! Source: write(2), poll(2), pipe(7)
void writeWithoutWaiting(int descriptor, QByteArrayView bytes);

//! Writes all of @p bytes and waits for whoever reads them. Errors: std::errc::broken_pipe where the reader has gone.
//! Source: write(2)
[[nodiscard]] std::error_code writeWhole(int descriptor, QByteArrayView bytes);

//! Calls @p gone, on a thread of its own, once nobody reads what is written to a descriptor any more: of a pipe, a socket
//! or a terminal; never of a file. Nothing wakes up before.
//! Source: poll(2), POLLERR and POLLHUP
void whenReaderGoes(int descriptor, std::function<void()> gone);

//! How many characters wide the terminal behind a descriptor is; nothing where there is none, or it does not tell.
//! Source: ioctl_tty(2), TIOCGWINSZ
[[nodiscard]] std::optional<int> columnsOf(int descriptor);

//! Standard output, unbuffered. Never waits: what nobody takes is lost. The process must ignore SIGPIPE.
//! Source: write(2), poll(2)
class StandardOutput : public Output
{
public:
    void printLine(const QString &line) override;
};

//! Writes "velquarin: " and @p text as one line on standard error. From any thread; what nobody reads is lost.
void printErrorLine(const QString &text);

}  // namespace velquarin
