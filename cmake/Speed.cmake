# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
# What makes building quicker where it is installed, and changes nothing of what is built.
option(VELQUARIN_QUICK_TOOLS "Use mold and ccache where they are installed" ON)
if(VELQUARIN_QUICK_TOOLS)
    find_program(CCACHE ccache)
    find_program(MOLD mold)
endif()
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Precompiled headers are named by their path and time, which this has it believe.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${CCACHE}")
    add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>)
endif()
if(MOLD AND CMAKE_BUILD_TYPE STREQUAL "Debug" AND NOT VELQUARIN_SANITIZE)
    add_link_options(-fuse-ld=mold)
endif()
add_feature_info(ccache CCACHE "compiles nothing twice")
add_feature_info(mold MOLD "links debug builds quickly")
