# Installs the build, moves what was installed, builds a host of somebody else against it, and runs
# that host and the installed command line on a working copy.
#
#     cmake -D BUILD=<build directory> -D CONSUMER=<its sources> -D SCRATCH=<directory>
#           -D GENERATOR=... -D COMPILER=... -D FLAGS=... -P PackageTest.cmake

cmake_minimum_required(VERSION 3.25)

# Runs a command to success; its standard output becomes `output`.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output
        ERROR_VARIABLE problems)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${ARGV}\nended with ${status}:\n${output}${problems}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")
set(PREFIX "${SCRATCH}/moved here")

run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${SCRATCH}/installed")
file(RENAME "${SCRATCH}/installed" "${PREFIX}")

run("${CMAKE_COMMAND}" -S "${CONSUMER}" -B "${SCRATCH}/consumer" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${PREFIX}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run("${CMAKE_COMMAND}" --build "${SCRATCH}/consumer")

run(svnadmin create "${SCRATCH}/repository")
run(svn checkout --quiet "file://${SCRATCH}/repository" "${SCRATCH}/copy")
file(WRITE "${SCRATCH}/copy/new.txt" "new\n")

run("${SCRATCH}/consumer/foreign-host" "${SCRATCH}/copy")
set(expected "arguments: status --no-ignore --xml ${SCRATCH}/copy\n${SCRATCH}/copy/new.txt\n")
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "foreign-host wrote\n${output}instead of\n${expected}")
endif()

run("${PREFIX}/bin/quen" status "${SCRATCH}/copy")
if(NOT output MATCHES "new\\.txt")
    message(FATAL_ERROR "The installed quen wrote\n${output}")
endif()
