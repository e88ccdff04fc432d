# Fails when a source declares something in another namespace than that of its directory, or one
# within it that is nobody's own, and when two headers define a class of one name: a program that
# links both has one of the two at random.
#
#     cmake -D ROOT=<source tree> -P CheckNamespaces.cmake
#
# A name of another directory's may be declared in advance: a namespace that holds nothing but one
# `class Name;` or `struct Name;`.

cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/CheckSources.cmake")

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
    read_source("${source}" text)
    string(REGEX REPLACE "\nnamespace [a-z:]+ {\n(class|struct) [A-Za-z]+ \n}" "\n\n\n" text
        "${text}")
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

check_sources(namespaces Foundation Contract Classes Host Tools Tests Fuzz Benchmarks)
