# Debian packages, made by `cpack` in the build directory: `quen` (command line, server, module and
# libraries) and `libquen-dev` (headers and what finds them).

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quen)
set(CPACK_PACKAGE_VENDOR "the quen maintainers")
set(CPACK_PACKAGE_CONTACT "the quen maintainers <maintainers@quen.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Libraries of the same package are looked for where they were built.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME quen)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION vcs)
# expat is opened at run time, which no tool sees.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "subversion, libexpat1")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"Subversion for people, scripts and editors
A command line that shows what it is about to lose, a server that any editor
can use, and a source-control provider that a development environment loads.
All of them drive the svn command-line client.")
# The system's cache of libraries is brought up to date by its own trigger, without a script.
configure_file(cmake/package/shlibs.in ${PROJECT_BINARY_DIR}/package/shlibs @ONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${PROJECT_BINARY_DIR}/package/shlibs
    ${PROJECT_SOURCE_DIR}/cmake/package/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libquen-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "quen (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"headers of the reference host for source-control providers
What a development environment is built with that loads the Subversion
provider: the contract, value types and a complete reference host.")

include(CPack)

# What the policy asks of every package: whose it is, and what has changed.
string(TIMESTAMP QUEN_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/package/changelog.in ${PROJECT_BINARY_DIR}/package/changelog @ONLY)
find_program(QUEN_GZIP gzip)
if(QUEN_GZIP)
    set(QUEN_CHANGELOG ${PROJECT_BINARY_DIR}/package/changelog.gz)
    execute_process(COMMAND ${QUEN_GZIP} -9nc ${PROJECT_BINARY_DIR}/package/changelog
        OUTPUT_FILE ${QUEN_CHANGELOG} COMMAND_ERROR_IS_FATAL ANY)
    foreach(package quen libquen-dev)
        if(package STREQUAL quen)
            set(component runtime)
        else()
            set(component development)
        endif()
        install(FILES ${QUEN_CHANGELOG}
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
        install(FILES cmake/package/copyright
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
    endforeach()
endif()

install(FILES cmake/package/lintian-overrides
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides RENAME quen COMPONENT runtime)
