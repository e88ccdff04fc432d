# Libraries that a host may carry copies of its own of. Taken from archives and hidden, they are not
# replaced by the host's copies, and do not replace those; where there is no archive, the shared
# library has to do.
#
#   quen_private_library(TARGET NAME)   makes an interface target of lib<NAME>
function(quen_private_library target name)
    find_library(${target}_LIBRARY NAMES lib${name}.a ${name} REQUIRED)
    add_library(${target} INTERFACE)
    target_link_libraries(${target} INTERFACE ${${target}_LIBRARY})
    target_link_options(${target} INTERFACE "LINKER:--exclude-libs,lib${name}.a")
endfunction()

quen_private_library(QuenMd md)
quen_private_library(QuenUtf8proc utf8proc)

# The XML engine is opened at run time, under the name that its library has here.
find_package(EXPAT REQUIRED)
file(REAL_PATH "${EXPAT_LIBRARY}" QUEN_EXPAT_FILE)
if(NOT QUEN_EXPAT_FILE MATCHES "(libexpat\\.so\\.[0-9]+)")
    message(FATAL_ERROR "expat's shared library is needed; ${EXPAT_LIBRARY} is not one")
endif()
set(QUEN_EXPAT_NAME ${CMAKE_MATCH_1})
