# Stands for the top of a tree in the test of ./quen: the same targets, made by copying.
cmake_minimum_required(VERSION 3.25)
project(SmallTree LANGUAGES NONE)

add_custom_target(quen
    COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/Tools/program bin/quen)
add_custom_target(QuenSVN
    COMMAND ${CMAKE_COMMAND} -E make_directory lib/quen
    COMMAND ${CMAKE_COMMAND} -E touch lib/quen/quen-svn.so)
