# Makes a manual page from its template: @VERSION@ becomes the version, @ARGUMENTS@ the arguments in
# the program's help.
#
#   cmake -DPROGRAM=... -DVERSION=... -DTEMPLATE=... -DPAGE=... -P make_page.cmake
#
# PROGRAM is empty for a page without arguments. @BODY@ becomes what the program BODY prints with
# --manual.
set(ARGUMENTS "")
if(BODY)
    execute_process(COMMAND ${BODY} --manual OUTPUT_VARIABLE BODY COMMAND_ERROR_IS_FATAL ANY
        OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
if(PROGRAM)
    execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE "[\\]" "\\\\e" help "${help}")
    string(REGEX REPLACE "-" "\\\\-" help "${help}")
    string(REPLACE ";" "\t" help "${help}")  # a semicolon would end a list element
    string(REGEX MATCHALL "\n  [A-Za-z0-9_]+ +[^\n]+(\n   +[^\n]+)*" arguments "\n${help}")
    foreach(argument IN LISTS arguments)
        string(REGEX MATCH "^\n  ([A-Za-z0-9_]+) +([^\n]+)(.*)$" matched "${argument}")
        set(name ${CMAKE_MATCH_1})
        set(details "${CMAKE_MATCH_3}")
        string(SUBSTRING "${CMAKE_MATCH_2}" 0 1 first)
        string(SUBSTRING "${CMAKE_MATCH_2}" 1 -1 rest)
        if(NOT rest MATCHES "^uon")  # the name of the program stands as it is
            string(TOUPPER "${first}" first)
        endif()
        string(REGEX REPLACE "\n +" "\n" details "${details}")
        string(REGEX REPLACE "\\. " ".\n" details "${details}")
        string(APPEND ARGUMENTS ".TP\n.BI ${name}= value\n${first}${rest}.${details}\n")
    endforeach()
    string(REPLACE "\t" ";" ARGUMENTS "${ARGUMENTS}")
    string(STRIP "${ARGUMENTS}" ARGUMENTS)
endif()
configure_file(${TEMPLATE} ${PAGE} @ONLY)
