// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Files/PosixFileTree.h"

#include <QSemaphore>

namespace velquarin::test {

//! A disk that does not answer before it is let.
class SlowTree : public PosixFileTree
{
public:
    bool visit(const std::string &path, const Visitor &visitor) const override
    {
        isAsked.release();
        mayAnswer.acquire();
        return PosixFileTree::visit(path, visitor);
    }
    mutable QSemaphore isAsked;
    mutable QSemaphore mayAnswer;
};

}  // namespace velquarin::test
