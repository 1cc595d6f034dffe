# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT

# What every target of ours is compiled with; linked privately, so that it never leaks to a packager's code.
add_library(velquarin_flags INTERFACE)
target_compile_features(velquarin_flags INTERFACE cxx_std_20)
target_compile_options(velquarin_flags INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Wpedantic;-Wshadow;-Wconversion;-Wold-style-cast;-Wnon-virtual-dtor;-Woverloaded-virtual;-fcoroutines>
    $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<BOOL:${VELQUARIN_WARNINGS_AS_ERRORS}>>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Clang 14 has coroutines in C++20 mode without a switch of their own.
    set_property(TARGET velquarin_flags PROPERTY INTERFACE_COMPILE_OPTIONS
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual)
endif()
target_compile_definitions(velquarin_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_STRICT_ITERATORS QT_NO_URL_CAST_FROM_STRING)
target_include_directories(velquarin_flags INTERFACE "${PROJECT_SOURCE_DIR}/src")

# What moc and rcc write is not ours to tidy; the nearest file of this name counts.
file(WRITE "${CMAKE_BINARY_DIR}/.clang-tidy" "Checks: '-*,misc-definitions-in-headers'\n")

# For the whole build: a sanitizer that only some of the objects know reports nonsense.
if(VELQUARIN_SANITIZE)
    add_compile_options(-fsanitize=${VELQUARIN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VELQUARIN_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # Clang 14 cannot assemble a coroutine that carries the data of this check.
        add_compile_options(-fno-sanitize=function)
    endif()
endif()

# Headers of others that most files include, read once a build instead of once a file. Every file still names what it
# needs: the preset "tidy" builds without these.
# add_shared_headers(core LINK Qt6::Core ... HEADERS <QString> ...)
function(add_shared_headers name)
    cmake_parse_arguments(arg "" "" "LINK;HEADERS" ${ARGN})
    set(source "${CMAKE_BINARY_DIR}/shared_headers/${name}.cpp")
    file(WRITE "${source}" "")
    add_library(velquarin_${name}_headers OBJECT "${source}")
    target_link_libraries(velquarin_${name}_headers PRIVATE ${arg_LINK} velquarin_flags)
    target_precompile_headers(velquarin_${name}_headers PRIVATE ${arg_HEADERS})
    set_target_properties(velquarin_${name}_headers PROPERTIES AUTOMOC OFF)
endfunction()

# share_headers(target core)
function(share_headers target name)
    target_precompile_headers(${target} REUSE_FROM velquarin_${name}_headers)
endfunction()

# add_module(NAME Models HEADERS core SOURCES a.cpp ... LINK Qt6::Core velquarin::Platform)
# A static library of one folder, with the alias velquarin::NAME.
function(add_module)
    cmake_parse_arguments(arg "" "NAME;HEADERS" "SOURCES;LINK" ${ARGN})
    add_library(velquarin_${arg_NAME} STATIC ${arg_SOURCES})
    add_library(velquarin::${arg_NAME} ALIAS velquarin_${arg_NAME})
    target_link_libraries(velquarin_${arg_NAME} PUBLIC ${arg_LINK} PRIVATE velquarin_flags)
    share_headers(velquarin_${arg_NAME} ${arg_HEADERS})
endfunction()
