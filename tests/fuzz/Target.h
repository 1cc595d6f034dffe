// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

//! Runs one target over one input. A broken law ends the process. Source: libFuzzer
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace velquarin::fuzz {

inline QByteArray bytes(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

//! Ends the process with the law that does not hold.
inline void require(bool holds, const char *law)
{
    if (holds)
        return;
    std::fprintf(stderr, "Broken: %s\n", law);
    std::abort();
}

}  // namespace velquarin::fuzz
