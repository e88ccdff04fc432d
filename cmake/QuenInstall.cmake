# What is installed, and how another project finds it: find_package(quen CONFIG) brings
# quen::Foundation, quen::Contract and quen::Host, and quen::SVN, the module that a host loads.
#
# The installed tree may be moved: programs and libraries find each other from where they lie.
#
# Two components: `runtime` is what a person and an editor need, `development` what a host is built
# with.

include(CMakePackageConfigHelpers)

set(QUEN_PACKAGE_DIRECTORY ${CMAKE_INSTALL_LIBDIR}/cmake/quen)
set(QUEN_HEADER_DIRECTORY ${CMAKE_INSTALL_INCLUDEDIR}/quen)
set(QUEN_INSTALLED_MODULE_DIRECTORY ${CMAKE_INSTALL_LIBDIR}/${QUEN_MODULE_DIRECTORY})

# Makes a target installed in `directory` look for the libraries where they are installed.
function(quen_find_libraries_from directory)
    file(RELATIVE_PATH way /prefix/${directory} /prefix/${CMAKE_INSTALL_LIBDIR})
    string(REGEX REPLACE "/$" "" origin "$ORIGIN/${way}")
    set_target_properties(${ARGN} PROPERTIES INSTALL_RPATH "${origin}")
endfunction()

quen_find_libraries_from(${CMAKE_INSTALL_BINDIR} quen)
quen_find_libraries_from(${CMAKE_INSTALL_LIBDIR} QuenFoundation QuenHost)
quen_find_libraries_from(${QUEN_INSTALLED_MODULE_DIRECTORY} QuenSVN)
set_target_properties(QuenSVN PROPERTIES EXPORT_NAME SVN)

install(TARGETS quen RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
install(TARGETS QuenFoundation QuenContract QuenHost EXPORT quen-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT runtime NAMELINK_COMPONENT development
    INCLUDES DESTINATION ${QUEN_HEADER_DIRECTORY})
install(TARGETS quen-askpass
    RUNTIME DESTINATION ${QUEN_INSTALLED_MODULE_DIRECTORY} COMPONENT runtime)
install(TARGETS QuenSVN EXPORT quen-targets
    LIBRARY DESTINATION ${QUEN_INSTALLED_MODULE_DIRECTORY} COMPONENT runtime)

install(DIRECTORY Foundation DESTINATION ${QUEN_HEADER_DIRECTORY} COMPONENT development
    FILES_MATCHING PATTERN "*.h"
    PATTERN XMLBytes.h EXCLUDE
    PATTERN XMLCharacters.h EXCLUDE
    PATTERN XMLEngines.h EXCLUDE
    PATTERN XMLEntities.h EXCLUDE
    PATTERN XMLExpatReader.h EXCLUDE
    PATTERN XMLHandlers.h EXCLUDE
    PATTERN XMLLiteral.h EXCLUDE
    PATTERN XMLPlace.h EXCLUDE
    PATTERN XMLPlainReader.h EXCLUDE
    PATTERN XMLPlainScanner.h EXCLUDE
    PATTERN XMLRecordPath.h EXCLUDE
    PATTERN XMLTree.h EXCLUDE)
install(DIRECTORY Contract/QuenFoundation Contract/MarlFoundation
    DESTINATION ${QUEN_HEADER_DIRECTORY} COMPONENT development
    FILES_MATCHING PATTERN "*.h")
# The rest of the host's headers are its own.
install(FILES
    Host/ClientQuery.h
    Host/ClientRunner.h
    Host/RunContext.h
    Host/RunSettings.h
    Host/HostSourceTrees.h
    Host/PlugInLoader.h
    Host/TaskFailure.h
    Host/ToolRunner.h
    Host/WorkingCopyCleanup.h
    DESTINATION ${QUEN_HEADER_DIRECTORY}/Host COMPONENT development)

install(FILES
    Host/Credentials/Credentials.h
    Host/Credentials/CredentialSource.h
    Host/Credentials/Secret.h
    Host/Credentials/SignInFailure.h
    DESTINATION ${QUEN_HEADER_DIRECTORY}/Host/Credentials COMPONENT development)

install(FILES
    Host/Facts/ChangeFacts.h
    Host/Facts/InfoFacts.h
    Host/Facts/ListFacts.h
    Host/Facts/ReportFacts.h
    Host/Facts/StatusFacts.h
    Host/Facts/UnreadableNames.h
    DESTINATION ${QUEN_HEADER_DIRECTORY}/Host/Facts COMPONENT development)
install(FILES
    Host/Keeping/FileErrors.h
    Host/Keeping/FileWriter.h
    Host/Keeping/FreeName.h
    Host/Keeping/TheirsKeeper.h
    Host/Keeping/UndoStore.h
    DESTINATION ${QUEN_HEADER_DIRECTORY}/Host/Keeping COMPONENT development)
install(FILES
    Host/Plans/Plans.h
    DESTINATION ${QUEN_HEADER_DIRECTORY}/Host/Plans COMPONENT development)
install(FILES
    Host/Process/FileDescriptor.h
    DESTINATION ${QUEN_HEADER_DIRECTORY}/Host/Process COMPONENT development)

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
configure_file(cmake/quen.pc.in ${PROJECT_BINARY_DIR}/quen.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quen.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES README.md LICENSE NOTICE
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(DIRECTORY Documentation DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime
    FILES_MATCHING PATTERN "*.md")

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
