# Installs the build, moves what was installed, builds hosts of somebody else and the examples
# against it, and runs them and the installed command line on a working copy.
#
#     cmake -D BUILD=<build directory> -D CONSUMER=<its sources> -D README=<the project's>
#           -D SCRATCH=<directory> -D GENERATOR=... -D COMPILER=... -D FLAGS=... -P PackageTest.cmake

cmake_minimum_required(VERSION 3.25)

# Runs a command to its end: `status`, and `output` of both streams.
function(try)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output
        ERROR_VARIABLE output)
    set(status "${status}" PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

# The same to success.
function(run)
    try(${ARGV})
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${ARGV}\nended with ${status}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# The last output must be that text.
function(expect text)
    if(NOT output STREQUAL text)
        message(FATAL_ERROR "There was\n${output}instead of\n${text}")
    endif()
endfunction()

function(expect_part part)
    string(FIND "${output}" "${part}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "There was\n${output}without\n${part}")
    endif()
endfunction()

file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")
set(PREFIX "${SCRATCH}/moved here")
set(COPY "${SCRATCH}/copy")
set(HOSTS "${SCRATCH}/consumer")
set(EXAMPLES "${PREFIX}/share/doc/libquen-dev/examples")

run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${SCRATCH}/installed")
file(RENAME "${SCRATCH}/installed" "${PREFIX}")

run("${CMAKE_COMMAND}" -S "${CONSUMER}" -B "${HOSTS}" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DEXAMPLES=${EXAMPLES}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS} -Wall -Wextra -Werror")
run("${CMAKE_COMMAND}" --build "${HOSTS}")

# Two revisions and a change.
run(svnadmin create "${SCRATCH}/repository")
run(svn mkdir --quiet -m "Begin" "file://${SCRATCH}/repository/trunk")
run(svn checkout --quiet "file://${SCRATCH}/repository/trunk" "${COPY}")
file(WRITE "${COPY}/a.txt" "a\n")
run(svn add --quiet "${COPY}/a.txt")
run(svn commit --quiet -m "Add a" "${COPY}")
run(svn update --quiet "${COPY}")
file(WRITE "${COPY}/new.txt" "new\n")

run("${HOSTS}/foreign-host" "${COPY}")
expect("arguments: status --no-ignore --xml ${COPY}\n${COPY}/new.txt\n")

# A report that breaks off is the engine's to read.
file(MAKE_DIRECTORY "${SCRATCH}/plain")
foreach(host foreign-host own-engine-host)
    try("${HOSTS}/${host}" "${SCRATCH}/plain")
    expect_part("is not under version control")
endforeach()
run("${HOSTS}/own-engine-host" "${COPY}")
expect_part("${COPY}/new.txt")

# Python shows the names of what it loads to nobody.
find_program(PYTHON python3)
if(PYTHON)
    run("${PYTHON}" -c "import ctypes
print(ctypes.CDLL(r'${HOSTS}/plug-in-host.so').showChanges(rb'${COPY}'))")
    expect("${COPY}/new.txt\n1\n")
else()
    message(FATAL_ERROR "python3 is needed to load a host without showing its names")
endif()

run("${HOSTS}/examples/first-host" "${COPY}")
expect("new      ${COPY}/new.txt\n")
file(READ "${EXAMPLES}/first_host.cpp" output)
file(READ "${README}" readme)
string(FIND "${readme}" "${output}" at)
if(at EQUAL -1)
    message(FATAL_ERROR "The README's example is another one than Examples/first_host.cpp")
endif()

run("${HOSTS}/examples/own-host" "${PREFIX}/lib/quen/quen-svn.so" "${COPY}")
expect("256 ${COPY}/new.txt\n")

file(MAKE_DIRECTORY "${SCRATCH}/other")
run(svn checkout --quiet "file://${SCRATCH}/repository/trunk" "${SCRATCH}/other/copy")
run("${HOSTS}/examples/environment" "${COPY}" "${SCRATCH}/other/copy")
expect("changes in ${COPY}
  new ${COPY}/new.txt
changes in ${SCRATCH}/other/copy
  r2 Add a
  r1 Begin
  r2 Add a
  r1 Begin
  cancelled
  cancelled
")

run("${HOSTS}/examples/server-client" "${PREFIX}/bin/quen" "${COPY}")
expect("unversioned ${COPY}/new.txt\n")

run("${PYTHON}" "${EXAMPLES}/editor_client.py"
    --server "'${PREFIX}/bin/quen' serve" "${COPY}" INPUT_FILE /dev/null)
expect_part("unversioned  ${COPY}/new.txt\n")

run("${PYTHON}" "${CONSUMER}/sign_in.py" "${HOSTS}/examples/environment" "${SCRATCH}/sign in")

# What the builder of requests refuses, the compiler says.
foreach(case RANGE 4)
    try("${COMPILER}" -std=c++20 -fsyntax-only "-DCASE=${case}" -isystem "${PREFIX}/include"
        "${CONSUMER}/refused_requests.cpp")
    if((status EQUAL 0) EQUAL (case GREATER 0))
        message(FATAL_ERROR "Case ${case} of refused_requests.cpp: ${output}")
    endif()
endforeach()

run("${PREFIX}/bin/quen" status "${COPY}")
expect_part("new.txt")
