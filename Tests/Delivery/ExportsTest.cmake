# The module shows the loader one name and keeps the rest to itself.
#
#     cmake -D NM=<nm> -D MODULE=<quen-svn.so> -P ExportsTest.cmake

cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${NM}" --dynamic --defined-only --format=posix "${MODULE}"
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE " [^\n]*\n" ";" names "${symbols}")
list(REMOVE_ITEM names "")
if(NOT names STREQUAL "quenSourceControlPlugInEntryPoint")
    message(FATAL_ERROR "${MODULE} exports: ${names}")
endif()
