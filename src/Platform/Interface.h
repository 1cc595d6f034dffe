// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

namespace velquarin {

//! What is used through references alone, and has an implementation of its own in each desktop and in tests.
class Interface
{
public:
    Interface() = default;
    Interface(const Interface &) = delete;
    Interface &operator=(const Interface &) = delete;
    virtual ~Interface() = default;
};

}  // namespace velquarin
