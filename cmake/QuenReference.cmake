# The reference documentation, of the headers as they are installed and of the pages: the target
# QuenReference writes it to reference/html. A warning is an error.

find_package(Doxygen COMPONENTS dot)
if(DOXYGEN_FOUND)
    set(QUEN_REFERENCE_PAGES "")
    foreach(page README architecture first-host embedding requests maintaining console server reliability
            safety security servers performance commands scripting from-svn from-git exit-statuses
            working-day)
        string(APPEND QUEN_REFERENCE_PAGES " ${PROJECT_SOURCE_DIR}/Documentation/${page}.md")
    endforeach()
    string(APPEND QUEN_REFERENCE_PAGES " ${PROJECT_SOURCE_DIR}/Contract/README.md")
    configure_file(cmake/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
    add_custom_target(QuenReference
        COMMAND ${CMAKE_COMMAND}
            -D SOURCE=${PROJECT_SOURCE_DIR} -D DESTINATION=${PROJECT_BINARY_DIR}/include
            -P ${PROJECT_SOURCE_DIR}/cmake/QuenHeaders.cmake
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/reference
        COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/Doxyfile
        COMMENT "Writing the reference documentation" VERBATIM)
endif()
