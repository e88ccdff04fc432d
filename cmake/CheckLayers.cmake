# Fails when a source includes what its layer may not see.
#
#     cmake -D ROOT=<source tree> -P CheckLayers.cmake
#
# A quoted include is written from a root (of the tree, or of Contract) and names a file that
# exists; which layer it reaches is read from where that file lies. Each directory below Tools is a
# layer of its own, and what lies in Tools itself is one more.

cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/CheckSources.cmake")

# Each layer with the layers that it may include.
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
    read_source("${source}" text)
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

check_sources(layers Foundation Contract Classes Host Tools)
