# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
# What people run is there all day and busy for moments, so its pages in memory count for more than the last instruction.
include(CheckLinkerFlag)
add_compile_options($<$<CONFIG:Release>:-O2>)

# The list of addresses that shift with the program is read whole at each start, and packed it takes a hundredth.
check_linker_flag(CXX LINKER:-z,pack-relative-relocs VELQUARIN_PACKS_RELOCATIONS)
if(VELQUARIN_PACKS_RELOCATIONS)
    add_link_options($<$<CONFIG:Release>:LINKER:-z,pack-relative-relocs>)
endif()
