# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
# What Debian builds its own programs with, so that a mistake with memory is an end and not a way in. For the whole
# build, and before the first target. The toolkit has everything compiled for any address; the program asks to be linked
# so.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
add_link_options(LINKER:-z,relro LINKER:-z,now)

# The sanitizers see more than these checks, and do not bear them; without optimisation the last one does nothing.
set(is_optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
if(NOT VELQUARIN_SANITIZE)
    add_compile_options("$<${is_optimised}:-fstack-protector-strong;-Wformat;-Werror=format-security>")
    add_compile_options("$<${is_optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()

# The same source gives the same program, wherever it lies.
add_compile_options("$<${is_optimised}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
add_compile_options("$<${is_optimised}:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>")
