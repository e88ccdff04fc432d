# Fails when a source includes what its layer may not see.
#
#     cmake -D ROOT=<source tree> -P CheckLayers.cmake
#
# A quoted include is written from a root (of the tree, or of Contract) and names a file that
# exists; which layer it reaches is read from where that file lies. Each directory below Tools is a
# layer of its own, and what lies in Tools itself is one more.

cmake_minimum_required(VERSION 3.25)

# Each layer with the layers that it may include.
set(DIRECTORIES Foundation Contract Classes Host Tools)
set(SEEN_BY_Foundation Foundation)
set(SEEN_BY_Contract Contract Foundation)
set(SEEN_BY_Classes Classes Contract Foundation)
set(SEEN_BY_Host Host Contract Foundation)
set(BELOW_TOOLS Tools/Provider Host Contract Foundation)
set(SEEN_BY_Tools/Provider ${BELOW_TOOLS})
set(SEEN_BY_Tools/Terminal Tools/Terminal Host Contract Foundation)
set(SEEN_BY_Tools/Console Tools/Console ${BELOW_TOOLS})
set(SEEN_BY_Tools/Server Tools/Server Tools/Console ${BELOW_TOOLS})
set(SEEN_BY_Tools/Tour Tools/Tour Tools/Console Tools/Terminal ${BELOW_TOOLS})
set(SEEN_BY_Tools/Commands Tools/Commands
    Tools/Tour Tools/Server Tools/Console Tools/Terminal ${BELOW_TOOLS})
set(SEEN_BY_Tools Tools/Commands Tools/Terminal ${BELOW_TOOLS})

# Libraries that one place alone includes, as a pattern of the include and one of the sources.
set(ENGINES
    "^expat.*=^Foundation/XML[A-Za-z]*\\.(h|cpp)$"
    "^md5.*=^Host/Credentials/"
    "^utf8proc.*=^(Classes|Host|Tools|Foundation)/"
    "^nlohmann/.*=^Tools/(Console|Server)/"
    "^CLI/.*=^Tools/Commands/CommandLine/")

set(FAULTS "")

function(add_fault source line text)
    set(FAULTS "${FAULTS}${source}:${line}: ${text}\n" PARENT_SCOPE)
endfunction()

# Sets `layer` to the one in which a path from the tree's root lies.
function(layer_of path layer)
    string(REGEX MATCH "^Tools/[^/]*/|^[^/]*/" first "${path}")
    string(REGEX REPLACE "/$" "" first "${first}")
    set(${layer} "${first}" PARENT_SCOPE)
endfunction()

# Sets `layer` to the one in which a quoted include lies, to nothing where there is no such file.
function(find_layer include layer)
    set(${layer} "" PARENT_SCOPE)
    if(EXISTS "${ROOT}/Contract/${include}")
        set(${layer} Contract PARENT_SCOPE)
    elseif(EXISTS "${ROOT}/${include}")
        layer_of("${include}" first)
        set(${layer} "${first}" PARENT_SCOPE)
    endif()
endfunction()

function(check_quoted source line include)
    layer_of("${source}" own)
    find_layer("${include}" reached)
    if(reached STREQUAL "" OR include MATCHES "(^|/)\\.\\.?/")
        add_fault("${source}" ${line} "\"${include}\" is not a file of the tree, written from its root")
    elseif(NOT reached IN_LIST SEEN_BY_${own})
        add_fault("${source}" ${line} "${own} must not include \"${include}\" of ${reached}")
    endif()
    set(FAULTS "${FAULTS}" PARENT_SCOPE)
endfunction()

function(check_engine source line include)
    foreach(engine IN LISTS ENGINES)
        string(REGEX REPLACE "=.*" "" name "${engine}")
        string(REGEX REPLACE "^[^=]*=" "" places "${engine}")
        if(include MATCHES "${name}" AND NOT source MATCHES "${places}")
            add_fault("${source}" ${line} "<${include}> has no business here")
        endif()
    endforeach()
    set(FAULTS "${FAULTS}" PARENT_SCOPE)
endfunction()

function(check_source source)
    # Brackets and semicolons would make one list element of several lines, or several of one.
    file(READ "${ROOT}/${source}" text)
    string(REGEX REPLACE "[][;]" " " text "${text}")
    string(REPLACE "\n" ";" lines "${text}")
    set(number 0)
    foreach(line IN LISTS lines)
        math(EXPR number "${number} + 1")
        if(line MATCHES "^[ \t]*#[ \t]*include[ \t]*\"([^\"]*)\"")
            set(include "${CMAKE_MATCH_1}")
            check_quoted("${source}" ${number} "${include}")
            check_engine("${source}" ${number} "${include}")
        elseif(line MATCHES "^[ \t]*#[ \t]*include[ \t]*<([^>]*)>")
            check_engine("${source}" ${number} "${CMAKE_MATCH_1}")
        endif()
    endforeach()
    set(FAULTS "${FAULTS}" PARENT_SCOPE)
endfunction()

set(COUNT 0)
foreach(directory IN LISTS DIRECTORIES)
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
    message(FATAL_ERROR "The layers are broken")
endif()
message(STATUS "The layers hold in ${COUNT} sources")
