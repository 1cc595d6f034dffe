// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitConfig.h"
#include "Target.h"

#include <algorithm>

using namespace velquarin;
using namespace velquarin::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto config = gitConfigFrom(bytes(data, size), "/folder", {"/home", "/home/.config"});
    if (!config)
        return 0;
    require(config->files.size() <= 32, "no more files than people have");
    require(std::ranges::all_of(config->files, [](const auto &file) { return file.starts_with('/'); }),
            "each file has a whole path");
    require(std::ranges::includes(config->files, config->extensionOrigins), "extensions stand in files that were read");
    return 0;
}
