# What the checks of the sources share: the walk over them, and how it ends.
#
# A check defines `check_source(source)`, which appends what is wrong to FAULTS and hands that to
# its caller, and calls `check_sources`. ROOT is the source tree.

# Sets `text` to what a source holds. Brackets and semicolons are blanks there: they would make one
# list element of several lines, or several of one.
function(read_source source text)
    file(READ "${ROOT}/${source}" read)
    string(REGEX REPLACE "[][;]" " " read "${read}")
    set(${text} "${read}" PARENT_SCOPE)
endfunction()

# Checks all sources of the directories. `rules` names what is checked, as in "layers".
function(check_sources rules)
    set(FAULTS "")
    set(count 0)
    foreach(directory IN LISTS ARGN)
        file(GLOB_RECURSE sources RELATIVE "${ROOT}"
            "${ROOT}/${directory}/*.h" "${ROOT}/${directory}/*.cpp")
        foreach(source IN LISTS sources)
            check_source("${source}")
            math(EXPR count "${count} + 1")
        endforeach()
    endforeach()
    if(count EQUAL 0)
        message(FATAL_ERROR "There are no sources below ${ROOT}")
    elseif(NOT FAULTS STREQUAL "")
        # Written as it is: a fault is one line, whatever its length.
        message(NOTICE "${FAULTS}")
        message(FATAL_ERROR "The ${rules} do not hold")
    endif()
    message(STATUS "The ${rules} hold in ${count} sources")
endfunction()
