# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT

# add_test_program(engine_tests HEADERS core_test LINK velquarin::Services ...)
# A program that add_module_test() fills with test classes. They share it, since it is linked once and not for each.
function(add_test_program name)
    cmake_parse_arguments(arg "" "HEADERS" "LINK" ${ARGN})
    add_executable(${name} "${PROJECT_SOURCE_DIR}/tests/support/TestProgram.cpp")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
    target_compile_definitions(${name} PRIVATE VELQUARIN_TEST_FONTS="${TEST_FONTS}")
    target_link_libraries(${name} PRIVATE ${arg_LINK} velquarin::TestSupport velquarin::QtTest velquarin_flags)
    share_headers(${name} ${arg_HEADERS})
    add_dependencies(${name} ends_together)
endfunction()

# add_module_test(engine_tests Streak/tst_streak LABEL pure [SOURCES more.cpp] [DEFINITIONS FOLDER="..."] [TIMEOUT 300])
# One Qt Test class. Tests of one label can be run alone: ctest -L pure. A test of the label "dbus" gets a session bus
# of its own, which ends with it.
function(add_module_test program place)
    cmake_parse_arguments(arg "" "LABEL;TIMEOUT" "SOURCES;DEFINITIONS" ${ARGN})
    target_sources(${program} PRIVATE ${place}.cpp ${arg_SOURCES})
    cmake_path(GET place FILENAME name)
    set_property(SOURCE ${place}.cpp TARGET_DIRECTORY ${program} APPEND PROPERTY COMPILE_DEFINITIONS ${arg_DEFINITIONS})
    set(command $<TARGET_FILE:${program}> ${name})
    if(arg_LABEL STREQUAL "dbus")
        list(PREPEND command "${PROJECT_SOURCE_DIR}/tests/support/with-private-bus")
    endif()
    list(PREPEND command $<TARGET_FILE:ends_together>)
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    add_test(NAME ${name} COMMAND ${command})
    set_tests_properties(${name} PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT})
    if(arg_LABEL STREQUAL "pure")
        # Rules depend on the zone and locale they are given, never on those of the process.
        add_test(NAME ${name}_elsewhere COMMAND ${command})
        set_tests_properties(${name}_elsewhere PROPERTIES LABELS pure TIMEOUT ${arg_TIMEOUT}
            ENVIRONMENT "TZ=America/Havana;LANG=tr_TR.UTF-8;LC_ALL=tr_TR.UTF-8")
    endif()
endfunction()
