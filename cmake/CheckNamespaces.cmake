# Fails when a source declares something in another namespace than that of its directory, or one
# within it that is nobody's own, and when two headers define a class of one name: a program that
# links both has one of the two at random.
#
#     cmake -D ROOT=<source tree> -P CheckNamespaces.cmake
#
# A name of another directory's may be declared in advance: a namespace that holds nothing but one
# `class Name;` or `struct Name;`.

cmake_minimum_required(VERSION 3.25)

# Each directory with its namespace; the first pattern that fits a path decides.
set(NAMESPACES
    "^(Foundation|Contract|Classes|Host)/=quen"
    "^Tools/Server/=quen::tools::server"
    "^Tools/=quen::tools"
    # How a failed test shows the library's values is found beside their classes.
    "^Tests/Support/Printers\\.=quen"
    # Stands for what the library no longer has.
    "^Tests/Host/Modules/NeedsMore\\.cpp=quen"
    "^Tests/=quen::test"
    "^Fuzz/=quen::fuzz"
    "^Benchmarks/=quen::benchmarks")

set(OWNED "^quen::(tools|test|fuzz|benchmarks)(::|$)")

set(FAULTS "")
set(COUNT 0)

function(namespace_of source namespace)
    foreach(rule IN LISTS NAMESPACES)
        string(REGEX REPLACE "=.*" "" path "${rule}")
        if(source MATCHES "${path}")
            string(REGEX REPLACE ".*=" "" found "${rule}")
            set(${namespace} "${found}" PARENT_SCOPE)
            return()
        endif()
    endforeach()
endfunction()

function(check_source source)
    # Brackets and semicolons would make one list element of several lines, or several of one.
    file(READ "${ROOT}/${source}" text)
    string(REGEX REPLACE "[][]" " " text "${text}")
    string(REGEX REPLACE "\nnamespace [a-z:]+ {\n(class|struct) [A-Za-z]+;\n}" "\n\n\n" text
        "${text}")
    string(REPLACE ";" " " text "${text}")
    string(REPLACE "\n" ";" lines "${text}")
    namespace_of("${source}" wanted)
    set(number 0)
    set(namespace "")
    foreach(line IN LISTS lines)
        math(EXPR number "${number} + 1")
        if(line MATCHES "^namespace (quen[A-Za-z_:]*) {")
            set(found "${CMAKE_MATCH_1}")
            set(namespace "${found}")
            if(found STREQUAL wanted OR (found MATCHES "^${wanted}::" AND NOT found MATCHES "${OWNED}"))
                continue()
            endif()
            string(APPEND FAULTS "${source}:${number}: namespace ${found}, not ${wanted}\n")
        elseif(source MATCHES "\\.h$" AND
                line MATCHES "^(class|struct) (QUEN_EXPORT )?([A-Za-z]+)( final)?( :.*)? {")
            set(class "${namespace}::${CMAKE_MATCH_3}")
            if(DEFINED "PLACE_${class}")
                string(APPEND FAULTS
                    "${source}:${number}: ${class} is also defined in ${PLACE_${class}}\n")
            endif()
            set("PLACE_${class}" "${source}" PARENT_SCOPE)
        endif()
    endforeach()
    set(FAULTS "${FAULTS}" PARENT_SCOPE)
endfunction()

foreach(directory Foundation Contract Classes Host Tools Tests Fuzz Benchmarks)
    file(GLOB_RECURSE sources RELATIVE "${ROOT}"
        "${ROOT}/${directory}/*.h" "${ROOT}/${directory}/*.cpp")
    foreach(source IN LISTS sources)
        check_source("${source}")
        math(EXPR COUNT "${COUNT} + 1")
    endforeach()
endforeach()

if(COUNT EQUAL 0)
    message(FATAL_ERROR "There are no sources below ${ROOT}")
elseif(NOT FAULTS STREQUAL "")
    # Written as it is: a fault is one line, whatever its length.
    message(NOTICE "${FAULTS}")
    message(FATAL_ERROR "Names are declared where they do not belong")
endif()
message(STATUS "The namespaces hold in ${COUNT} sources")
