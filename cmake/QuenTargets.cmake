# What every target of the project has in common.

function(quen_target target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual
        # Once calls are inlined, gcc finds null pointers in the standard library's own streams.
        $<$<NOT:$<CONFIG:Release>>:-Wnull-dereference>
        # gcc 12 takes standard texts that are put together for copies onto themselves at -O3.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
    # Nobody puts functions of the same name in the place of a library's own: calls within it can be
    # direct and be inlined. Reading a report takes 4 percent less time so.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    # What a public header marks with QUEN_EXPORT leaves a library, a module or a program.
    set_target_properties(${target} PROPERTIES
        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    if(QUEN_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# Makes of the sources of the target <name>Objects
#   <name>Archive, linked as a whole into the tree's own programs and tests, internals included, and
#   <name>Library, which is installed: shared, where it shows what is marked with QUEN_EXPORT; or
#   an archive, with BUILD_SHARED_LIBS=OFF.
# Whoever links quen::<exported> gets the library as a whole, so that the module finds in a program
# what the program itself does not use.
function(quen_library name output exported)
    add_library(${name}Archive STATIC $<TARGET_OBJECTS:${name}Objects>)
    if(QUEN_SHARED)
        quen_shared_library(${name} ${output})
        add_library(quen::${exported} ALIAS ${name}Library)
        set_target_properties(${name}Library PROPERTIES EXPORT_NAME ${exported})
    else()
        add_library(${name}Library STATIC $<TARGET_OBJECTS:${name}Objects>)
        set_target_properties(${name}Library PROPERTIES
            OUTPUT_NAME ${output} EXPORT_NAME ${exported}Archive)
        add_library(${name}Whole INTERFACE)
        target_link_libraries(${name}Whole INTERFACE
            $<BUILD_INTERFACE:$<LINK_LIBRARY:WHOLE_ARCHIVE,${name}Library>>
            $<INSTALL_INTERFACE:$<LINK_LIBRARY:WHOLE_ARCHIVE,quen::${exported}Archive>>)
        target_link_options(${name}Whole INTERFACE -rdynamic)
        add_library(quen::${exported} ALIAS ${name}Whole)
        set_target_properties(${name}Whole PROPERTIES EXPORT_NAME ${exported})
    endif()
    quen_target(${name}Library)
    target_include_directories(${name}Library INTERFACE
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
        # For hosts that were written with "Host/..." and the like.
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include/quen>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/quen>)
endfunction()

function(quen_shared_library name output)
    add_library(${name}Library SHARED $<TARGET_OBJECTS:${name}Objects>)
    set(map ${PROJECT_BINARY_DIR}/${output}.map)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Library.map.in ${map} @ONLY)
    target_link_options(${name}Library PRIVATE
        LINKER:--no-undefined LINKER:-Bsymbolic-functions LINKER:--version-script=${map})
    set_target_properties(${name}Library PROPERTIES
        LINKER_LANGUAGE CXX OUTPUT_NAME ${output} LINK_DEPENDS ${map}
        VERSION ${PROJECT_VERSION} SOVERSION ${QUEN_SOVERSION})
endfunction()
