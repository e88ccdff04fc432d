# One GoogleTest program whose tests ctest knows one by one.
#
#   quen_test(NAME SOURCES file... LIBRARIES target... [LABELS label...])

include(GoogleTest)

# What every program's own files are compiled with. A release does not optimise them: they take half
# the time to compile so, and hardly more to run, for what they test is optimised.
function(quen_test_target name)
    quen_target(${name})
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O0>)
endfunction()

# One precompiled header for all programs; it holds nothing of the project. It belongs to a program,
# since libraries are compiled for other addresses.
file(CONFIGURE OUTPUT QuenTestHeaders.cpp CONTENT "int main() {}\n")
add_executable(QuenTestHeaders ${CMAKE_CURRENT_BINARY_DIR}/QuenTestHeaders.cpp)
quen_test_target(QuenTestHeaders)
target_link_libraries(QuenTestHeaders PRIVATE GTest::gmock)
target_precompile_headers(QuenTestHeaders PRIVATE <gmock/gmock.h> <gtest/gtest.h>)

function(quen_test name)
    cmake_parse_arguments(PARSE_ARGV 1 test "" "" "SOURCES;LIBRARIES;LABELS")
    if(test_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "quen_test(${name}): what is ${test_UNPARSED_ARGUMENTS}?")
    endif()
    add_executable(${name} ${test_SOURCES})
    quen_test_target(${name})
    target_link_libraries(${name} PRIVATE ${test_LIBRARIES} GTest::gmock_main)
    target_precompile_headers(${name} REUSE_FROM QuenTestHeaders)
    gtest_discover_tests(${name} PROPERTIES TIMEOUT 60 DISCOVERY_TIMEOUT 60)
    quen_label_tests(${name} ${test_LABELS})
endfunction()

# gtest_discover_tests passes only the first of several labels on, so they are set by a script that
# ctest reads after the program's list of tests.
function(quen_label_tests name)
    if(ARGN)
        set(script ${CMAKE_CURRENT_BINARY_DIR}/${name}_labels.cmake)
        file(WRITE ${script}
            "foreach(test IN LISTS ${name}_TESTS)\n"
            "    set_tests_properties(\"\${test}\" PROPERTIES LABELS \"${ARGN}\")\n"
            "endforeach()\n")
        set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${script})
    endif()
endfunction()

# Runs a program's tests, or those that the arguments choose, once more, with its reports read by
# the engine alone. The program holds Tests/Support/ExpatAlone.cpp.
function(quen_test_expat_alone name)
    add_test(NAME ${name}.ExpatAlone COMMAND ${name} ${ARGN})
    set_tests_properties(${name}.ExpatAlone PROPERTIES
        ENVIRONMENT QUEN_TEST_EXPAT_ALONE=1 TIMEOUT 600)
endfunction()
