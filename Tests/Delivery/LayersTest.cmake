# Proves that the check of the layers finds what it is there for: each case is a tree of one wrong
# source, and the complaint that must come.
#
#     cmake -D CHECK=<CheckLayers.cmake> -D SCRATCH=<directory> -P LayersTest.cmake

cmake_minimum_required(VERSION 3.25)

set(FAILURES "")

# A tree with one file in every layer, which `include` (as written after #include) of the file
# `source` joins.
function(make_tree source include)
    file(REMOVE_RECURSE "${SCRATCH}")
    foreach(header Foundation/String.h Contract/QuenFoundation/QuenRequest.h
            Classes/Controller.h Host/Loader.h
            Tools/Provider/Provider.h Tools/Console/Codec.h Tools/Server/Server.h
            Tools/Terminal/Table.h Tools/Tour/Tour.h Tools/Commands/Session/Session.h)
        file(WRITE "${SCRATCH}/${header}" "#pragma once\n#include <string>\n")
    endforeach()
    file(WRITE "${SCRATCH}/${source}" "int values[1];\n\n#  include ${include}\n")
endfunction()

function(run_check)
    execute_process(COMMAND "${CMAKE_COMMAND}" -D "ROOT=${SCRATCH}" -P "${CHECK}"
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(status "${status}" PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_fault source include complaint)
    make_tree("${source}" "${include}")
    run_check()
    string(FIND "${output}" "${source}:3: ${complaint}\n" found)
    if(status EQUAL 0 OR found EQUAL -1)
        set(FAILURES "${FAILURES}${source} with ${include}: status ${status}, said\n${output}\n"
            PARENT_SCOPE)
    endif()
endfunction()

function(expect_peace source include)
    make_tree("${source}" "${include}")
    run_check()
    if(NOT status EQUAL 0 OR NOT output MATCHES "The layers hold in 11 sources")
        set(FAILURES "${FAILURES}${source} with ${include}: status ${status}, said\n${output}\n"
            PARENT_SCOPE)
    endif()
endfunction()

expect_peace(Foundation/Date.cpp "\"Foundation/String.h\"")
expect_peace(Classes/Report.cpp "\"QuenFoundation/QuenRequest.h\"")
expect_peace(Host/Process/Pipe.cpp "\"Host/Loader.h\"")
expect_peace(Tools/Console/Json.cpp "<nlohmann/json.hpp>")
expect_peace(Tools/main.cpp "\"Tools/Commands/Session/Session.h\"")
expect_peace(Tools/Server/Loop.cpp "\"Tools/Console/Codec.h\"")
expect_peace(Tools/Tour/Stage.cpp "\"Tools/Terminal/Table.h\"")
expect_peace(Tools/Commands/CommandLine/Parser.cpp "<CLI/CLI.hpp>")
expect_peace(Tools/Commands/TourCommand.cpp "\"Tools/Tour/Tour.h\"")
expect_peace(Foundation/XMLReport.cpp "<expat.h>")

expect_fault(Foundation/Date.cpp "\"QuenFoundation/QuenRequest.h\""
    "Foundation must not include \"QuenFoundation/QuenRequest.h\" of Contract")
expect_fault(Contract/MarlFoundation/Log.h "\"Host/Loader.h\""
    "Contract must not include \"Host/Loader.h\" of Host")
expect_fault(Classes/Operations/Status.cpp "\"Host/Loader.h\""
    "Classes must not include \"Host/Loader.h\" of Host")
expect_fault(Host/Request.cpp "\"Classes/Controller.h\""
    "Host must not include \"Classes/Controller.h\" of Classes")
expect_fault(Tools/main.cpp "\"Classes/Controller.h\""
    "Tools must not include \"Classes/Controller.h\" of Classes")
expect_fault(Tools/Terminal/Style.cpp "\"Tools/Commands/Session/Session.h\""
    "Tools/Terminal must not include \"Tools/Commands/Session/Session.h\" of Tools/Commands")
expect_fault(Tools/Terminal/Style.cpp "\"Tools/Console/Codec.h\""
    "Tools/Terminal must not include \"Tools/Console/Codec.h\" of Tools/Console")
expect_fault(Tools/Console/Codec.cpp "\"Tools/Server/Server.h\""
    "Tools/Console must not include \"Tools/Server/Server.h\" of Tools/Server")
expect_fault(Tools/Console/Codec.cpp "\"Tools/Terminal/Table.h\""
    "Tools/Console must not include \"Tools/Terminal/Table.h\" of Tools/Terminal")
expect_fault(Tools/Server/Loop.cpp "\"Tools/Terminal/Table.h\""
    "Tools/Server must not include \"Tools/Terminal/Table.h\" of Tools/Terminal")
expect_fault(Tools/Provider/Path.cpp "\"Tools/Console/Codec.h\""
    "Tools/Provider must not include \"Tools/Console/Codec.h\" of Tools/Console")
expect_fault(Tools/Fresh/File.cpp "\"Host/Loader.h\""
    "Tools/Fresh must not include \"Host/Loader.h\" of Host")
expect_fault(Classes/Report.cpp "\"Controller.h\""
    "\"Controller.h\" is not a file of the tree, written from its root")
expect_fault(Classes/Report.cpp "\"Classes/../Classes/Controller.h\""
    "\"Classes/../Classes/Controller.h\" is not a file of the tree, written from its root")
expect_fault(Classes/Report.cpp "<expat.h>" "<expat.h> has no business here")
expect_fault(Foundation/XMLReport.h "\"expat.h\""
    "\"expat.h\" is not a file of the tree, written from its root")
expect_fault(Host/Request.cpp "<nlohmann/json.hpp>" "<nlohmann/json.hpp> has no business here")
expect_fault(Host/Request.cpp "<CLI/CLI.hpp>" "<CLI/CLI.hpp> has no business here")
expect_fault(Tools/Terminal/Style.cpp "<CLI/CLI.hpp>" "<CLI/CLI.hpp> has no business here")
expect_fault(Tools/Terminal/Style.cpp "<nlohmann/json.hpp>"
    "<nlohmann/json.hpp> has no business here")
expect_fault(Tools/Commands/LogCommand.cpp "<CLI/CLI.hpp>" "<CLI/CLI.hpp> has no business here")
expect_fault(Tools/Console/Codec.cpp "<CLI/CLI.hpp>" "<CLI/CLI.hpp> has no business here")

file(REMOVE_RECURSE "${SCRATCH}")
run_check()
if(status EQUAL 0 OR NOT output MATCHES "There are no sources below")
    string(APPEND FAILURES "an empty tree: status ${status}, said\n${output}\n")
endif()

if(NOT FAILURES STREQUAL "")
    message(NOTICE "${FAILURES}")
    message(FATAL_ERROR "The check of the layers does not do its work")
endif()
