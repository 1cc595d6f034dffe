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

# add_module(NAME Models SOURCES a.cpp ... LINK Qt6::Core velquarin::Platform)
# A static library of one folder, with the alias velquarin::NAME.
function(add_module)
    cmake_parse_arguments(arg "" "NAME" "SOURCES;LINK" ${ARGN})
    add_library(velquarin_${arg_NAME} STATIC ${arg_SOURCES})
    add_library(velquarin::${arg_NAME} ALIAS velquarin_${arg_NAME})
    target_link_libraries(velquarin_${arg_NAME} PUBLIC ${arg_LINK} PRIVATE velquarin_flags)
endfunction()

# add_module_test(tst_streak LABEL pure LINK velquarin::Services [SOURCES more.cpp])
# One Qt Test program. Tests of one label can be run alone: ctest -L pure. A test of the label "dbus" gets a
# session bus of its own, which ends with it.
function(add_module_test name)
    cmake_parse_arguments(arg "" "LABEL;TIMEOUT" "LINK;SOURCES" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINK} velquarin::TestSupport Qt6::Test velquarin_flags)
    if(arg_LABEL STREQUAL "dbus")
        add_test(NAME ${name} COMMAND "${PROJECT_SOURCE_DIR}/tests/support/with-private-bus" $<TARGET_FILE:${name}>)
    else()
        add_test(NAME ${name} COMMAND ${name})
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
    if(arg_LABEL STREQUAL "pure")
        # Rules depend on the zone and locale they are given, never on those of the process.
        add_test(NAME ${name}_elsewhere COMMAND ${name})
        set_tests_properties(${name}_elsewhere PROPERTIES LABELS pure TIMEOUT ${arg_TIMEOUT}
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TZ=America/Havana;LANG=tr_TR.UTF-8;LC_ALL=tr_TR.UTF-8")
    endif()
endfunction()
