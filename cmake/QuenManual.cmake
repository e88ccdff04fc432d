# Writes what the program says of itself: manual pages, and what the shells need for completion.
#
#     cmake -D QUEN=<program> -D DIRECTORY=<directory> -D GZIP=<gzip or nothing> -P QuenManual.cmake

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${DIRECTORY})
file(MAKE_DIRECTORY ${DIRECTORY}/man1)
execute_process(COMMAND ${QUEN} manual ${DIRECTORY}/man1 COMMAND_ERROR_IS_FATAL ANY)
if(GZIP)
    file(GLOB pages ${DIRECTORY}/man1/*.1)
    execute_process(COMMAND ${GZIP} -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
endif()
foreach(shell bash zsh fish)
    execute_process(COMMAND ${QUEN} complete ${shell}
        OUTPUT_FILE ${DIRECTORY}/${shell} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
file(TOUCH ${DIRECTORY}/stamp)
