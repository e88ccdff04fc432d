# Writes the source file that holds the page of a report.
#
#     cmake -D DIRECTORY=<Page> -D SCRIPTS=<files> -D OUTPUT=<file> -P WritePage.cmake

cmake_minimum_required(VERSION 3.25)

# As a C++ function that answers the bytes of a file: numbers, which no byte of it can break.
function(quen_function_of name output)
    file(READ ${ARGN} bytes HEX)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    set(${output} "constexpr unsigned char ${name}[] = {${bytes}0};\n" PARENT_SCOPE)
endfunction()

file(READ ${DIRECTORY}/page.html page)
file(READ ${DIRECTORY}/style.css style)
set(script "")
foreach(part IN LISTS SCRIPTS)
    file(READ ${DIRECTORY}/${part} text)
    string(APPEND script "${text}\n")
endforeach()
string(REPLACE "@STYLE@" "${style}" page "${page}")
string(REPLACE "@SCRIPT@" "${script}" page "${page}")
file(WRITE ${OUTPUT}.html "${page}")

quen_function_of(page literal ${OUTPUT}.html)
file(WRITE ${OUTPUT}
    "#include \"Tools/Commands/Report/PageParts.h\"\n\nnamespace quen::tools {\n\nnamespace {\n\n"
    "${literal}\n} // namespace\n\nstd::string pageWithoutData() {\n"
    "    return {page, page + sizeof(page) - 1};\n}\n\n} // namespace quen::tools\n")
