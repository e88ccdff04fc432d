# What is installed, and how another project finds it: find_package(quen CONFIG) brings
# quen::Foundation, quen::Contract and quen::Host, and quen::SVN, the module that a host loads.
#
# The installed tree may be moved: programs and libraries find each other from where they lie.
#
# Two components: `runtime` is what a person needs, `development` what a host is built with. Beside
# them `server`, never installed unasked: what the extension of an editor carries.

include(CMakePackageConfigHelpers)

set(QUEN_PACKAGE_DIRECTORY ${CMAKE_INSTALL_LIBDIR}/cmake/quen)
set(QUEN_INSTALLED_MODULE_DIRECTORY ${CMAKE_INSTALL_LIBDIR}/${QUEN_MODULE_DIRECTORY})

# Makes a target installed in `directory` look for the libraries where they are installed.
function(quen_find_libraries_from directory)
    file(RELATIVE_PATH way /prefix/${directory} /prefix/${CMAKE_INSTALL_LIBDIR})
    string(REGEX REPLACE "/$" "" origin "$ORIGIN/${way}")
    set_target_properties(${ARGN} PROPERTIES INSTALL_RPATH "${origin}")
endfunction()

if(QUEN_SHARED)
    quen_find_libraries_from(${CMAKE_INSTALL_LIBDIR} QuenFoundationLibrary QuenHostLibrary)
else()
    set(QUEN_WHOLE_ARCHIVES QuenFoundationWhole QuenHostWhole)
endif()
set_target_properties(QuenSVN PROPERTIES EXPORT_NAME SVN)

if(QUEN_BUILD_TOOLS)
    install(TARGETS quen RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
endif()
install(TARGETS QuenFoundationLibrary QuenContractLibrary QuenHostLibrary ${QUEN_WHOLE_ARCHIVES}
    EXPORT quen-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(TARGETS quen-askpass
    RUNTIME DESTINATION ${QUEN_INSTALLED_MODULE_DIRECTORY} COMPONENT runtime)
install(TARGETS QuenSVN EXPORT quen-targets
    LIBRARY DESTINATION ${QUEN_INSTALLED_MODULE_DIRECTORY} COMPONENT runtime)

# What an extension for an editor carries: the server, and what it needs beside it.
if(QUEN_BUILD_TOOLS)
    install(TARGETS quen
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT server EXCLUDE_FROM_ALL)
    install(TARGETS quen-askpass QuenSVN
        RUNTIME DESTINATION ${QUEN_INSTALLED_MODULE_DIRECTORY} COMPONENT server EXCLUDE_FROM_ALL
        LIBRARY DESTINATION ${QUEN_INSTALLED_MODULE_DIRECTORY} COMPONENT server EXCLUDE_FROM_ALL)
endif()

install(CODE "
    execute_process(COMMAND \"${CMAKE_COMMAND}\"
        -D \"SOURCE=${PROJECT_SOURCE_DIR}\" -D \"DESTINATION=${PROJECT_BINARY_DIR}/include\"
        -P \"${PROJECT_SOURCE_DIR}/cmake/QuenHeaders.cmake\" COMMAND_ERROR_IS_FATAL ANY)"
    COMPONENT development)
install(DIRECTORY ${PROJECT_BINARY_DIR}/include/quen
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

install(EXPORT quen-targets NAMESPACE quen:: DESTINATION ${QUEN_PACKAGE_DIRECTORY}
    COMPONENT development)
configure_package_config_file(cmake/quen-config.cmake.in
    ${PROJECT_BINARY_DIR}/quen-config.cmake
    INSTALL_DESTINATION ${QUEN_PACKAGE_DIRECTORY}
    NO_SET_AND_CHECK_MACRO)
# Before 1.0 a minor version may change the contract.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/quen-config-version.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/quen-config.cmake
    ${PROJECT_BINARY_DIR}/quen-config-version.cmake
    DESTINATION ${QUEN_PACKAGE_DIRECTORY} COMPONENT development)

# For builds without CMake. The paths follow the file, so that they hold in a moved tree too.
file(RELATIVE_PATH QUEN_WAY_TO_PREFIX
    /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" QUEN_WAY_TO_PREFIX "${QUEN_WAY_TO_PREFIX}")
set(QUEN_LIBS "-lquen-host -lquen-foundation")
if(NOT QUEN_SHARED)
    set(QUEN_LIBS "-Wl,--whole-archive -lquen-host -lquen-foundation -Wl,--no-whole-archive")
    string(APPEND QUEN_LIBS " -rdynamic -lmd -lutf8proc -ldl -pthread")
endif()
configure_file(cmake/quen.pc.in ${PROJECT_BINARY_DIR}/quen.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quen.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES README.md LICENSE NOTICE
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(DIRECTORY Documentation DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime
    FILES_MATCHING PATTERN "*.md")

# What a newcomer starts from.
install(DIRECTORY Examples/ DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/libquen-dev/examples
    COMPONENT development)

if(NOT QUEN_BUILD_TOOLS)
    return()
endif()
# What the JSON of the commands looks like.
install(DIRECTORY Tools/Schemas/ DESTINATION ${CMAKE_INSTALL_DATADIR}/quen/schemas
    COMPONENT runtime FILES_MATCHING PATTERN "*.schema.json")

# Manual pages, and completion where each shell looks for it.
install(DIRECTORY ${PROJECT_BINARY_DIR}/said/man1 DESTINATION ${CMAKE_INSTALL_MANDIR}
    COMPONENT runtime)
install(FILES ${PROJECT_BINARY_DIR}/said/bash
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions RENAME quen
    COMPONENT runtime)
install(FILES ${PROJECT_BINARY_DIR}/said/zsh
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zsh/vendor-completions RENAME _quen
    COMPONENT runtime)
install(FILES ${PROJECT_BINARY_DIR}/said/fish
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/fish/vendor_completions.d RENAME quen.fish
    COMPONENT runtime)
