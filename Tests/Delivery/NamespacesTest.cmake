# Proves that the check of the namespaces finds what it is there for: each case is a source, and
# whether it is complained of.
#
#     cmake -D CHECK=<CheckNamespaces.cmake> -D SCRATCH=<directory> -P NamespacesTest.cmake

cmake_minimum_required(VERSION 3.25)

set(FAILURES "")

function(expect complaint source text)
    file(REMOVE_RECURSE "${SCRATCH}")
    file(WRITE "${SCRATCH}/Foundation/String.h" "#pragma once\nnamespace quen {\nclass String {\n}\n}\n")
    file(WRITE "${SCRATCH}/${source}" "int values[1];\n${text}\n")
    execute_process(COMMAND "${CMAKE_COMMAND}" -D "ROOT=${SCRATCH}" -P "${CHECK}"
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(complaint STREQUAL "")
        set(isRight FALSE)
        if(status EQUAL 0 AND output MATCHES "The namespaces hold in 2 sources")
            set(isRight TRUE)
        endif()
    else()
        string(FIND "${output}" "${source}:${complaint}\n" found)
        set(isRight TRUE)
        if(status EQUAL 0 OR found EQUAL -1)
            set(isRight FALSE)
        endif()
    endif()
    if(NOT isRight)
        set(FAILURES "${FAILURES}${source} with ${text}: status ${status}, said\n${output}\n"
            PARENT_SCOPE)
    endif()
endfunction()

expect("" Host/Request.cpp "namespace quen {")
expect("" Foundation/Bytes.h "namespace quen::bytes {")
expect("" Tools/Terminal/Style.cpp "namespace quen::tools {")
expect("" Tools/Server/Loop.cpp "namespace quen::tools::server {")
expect("" Tools/Commands/Session.h "\nnamespace quen {\nclass StreamingRunner;\n}")
expect("" Tests/Host/RequestTest.cpp "namespace quen::test {")
expect("" Tests/Support/Printers.h "namespace quen {")
expect("" Fuzz/LogFuzzer.cpp "namespace quen::fuzz {")
expect("" Benchmarks/Runs/Timing.cpp "namespace quen::benchmarks {")

expect("2: namespace quen::tools, not quen" Host/Request.cpp "namespace quen::tools {")
expect("2: namespace quen, not quen::tools" Tools/Terminal/Style.cpp "namespace quen {")
expect("2: namespace quen::tools, not quen::tools::server" Tools/Server/Loop.cpp
    "namespace quen::tools {")
expect("2: namespace quen, not quen::tools" Tools/Commands/Session.h
    "namespace quen {\nclass StreamingRunner {}\n}")
expect("2: namespace quen, not quen::test" Tests/Host/RequestTest.cpp "namespace quen {")
expect("2: namespace quen, not quen::fuzz" Fuzz/LogFuzzer.cpp "namespace quen {")
expect("2: namespace quen::test, not quen::benchmarks" Benchmarks/Runs/Timing.cpp
    "namespace quen::test {")

expect("" Tools/Text.h "namespace quen::tools {\nclass String {\n}")
expect("3: quen::String is also defined in Foundation/String.h" Host/Text.h
    "namespace quen {\nclass String {\n}")

if(NOT FAILURES STREQUAL "")
    message(NOTICE "${FAILURES}")
    message(FATAL_ERROR "The check of the namespaces does not do its work")
endif()
