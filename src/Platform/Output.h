// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Interface.h"

class QString;

namespace velquarin {

//! Where the program's few diagnostic lines go.
class Output : public Interface
{
public:
    //! Writes one line as UTF-8 and ends it. A reader that went away is no error.
    virtual void printLine(const QString &line) = 0;
};

}  // namespace velquarin
