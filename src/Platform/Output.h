// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

class QString;

namespace velquarin {

//! Where the program's few diagnostic lines go.
class Output
{
public:
    Output() = default;
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;
    virtual ~Output() = default;

    //! Writes one line as UTF-8 and ends it. A reader that went away is no error.
    virtual void printLine(const QString &line) = 0;
};

}  // namespace velquarin
