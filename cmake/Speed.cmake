# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
# What makes building quicker where it is installed, and changes nothing of what is built.
option(VELQUARIN_QUICK_TOOLS "Use mold and ccache where they are installed" ON)
find_program(VELQUARIN_CCACHE ccache)
find_program(VELQUARIN_MOLD mold)
if(VELQUARIN_QUICK_TOOLS AND VELQUARIN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Precompiled headers are named by their path and time, which this has it believe.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${VELQUARIN_CCACHE}")
    add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>)
endif()
if(VELQUARIN_QUICK_TOOLS AND VELQUARIN_MOLD AND CMAKE_BUILD_TYPE STREQUAL "Debug" AND NOT VELQUARIN_SANITIZE)
    add_link_options(-fuse-ld=mold)
endif()
add_feature_info(ccache VELQUARIN_CCACHE "compiles nothing twice")
add_feature_info(mold VELQUARIN_MOLD "links debug builds quickly")
