# What every target of the project has in common.

function(quen_target target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual
        # Once calls are inlined, gcc finds null pointers in the standard library's own streams.
        $<$<NOT:$<CONFIG:Release>>:-Wnull-dereference>)
    # Nobody puts functions of the same name in the place of a library's own: calls within it can be
    # direct and be inlined. Reading a report takes 4 percent less time so.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    if(QUEN_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()
